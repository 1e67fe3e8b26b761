#include "reader/events/Meaning.h"

#include <array>
#include <cstddef>

namespace sentiq {

bool isFailure(Meaning meaning) {
  return meaning == Meaning::Crash || meaning == Meaning::Hang;
}

std::string_view severityName(Severity severity) {
  constexpr std::array<std::string_view, 4> names{"info", "notice", "warning", "error"};
  return names[static_cast<std::size_t>(severity)];
}

}  // namespace sentiq
