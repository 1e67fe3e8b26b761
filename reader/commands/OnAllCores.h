// Work on all processor cores.
#pragma once

#include <cstddef>
#include <functional>

namespace sentiq {

/// Calls the function for each number below the count, on so many threads as there are cores, this one among them, and
/// returns once all are done. Of what it throws one comes out, once all threads have ended.
void onAllCores(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace sentiq
