// Work on all processor cores.
#pragma once

#include <functional>

namespace sentiq {

/// Calls the function on so many threads as there are cores, this one among them, and returns once all are done.
/// @param work throws nothing, and shares out among its calls what there is to do.
void onAllCores(const std::function<void()>& work);

}  // namespace sentiq
