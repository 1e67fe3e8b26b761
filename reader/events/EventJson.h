// The XML of an event, taken out of its line.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sentiq {

/// @param json {"xmlData":"…"}; nothing when it is not JSON, or holds no such text.
std::optional<std::string> xmlOfEvent(std::string_view json);

}  // namespace sentiq
