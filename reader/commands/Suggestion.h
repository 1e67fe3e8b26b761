// What the user may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sentiq {

/// "; did you mean 'summary'?", or nothing when no candidate is near the word, in any case.
std::string suggestionFor(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace sentiq
