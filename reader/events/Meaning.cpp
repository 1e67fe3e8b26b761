#include "reader/events/Meaning.h"

#include <array>
#include <cstddef>

namespace sentiq {

bool isFailure(Meaning meaning) {
  return meaning == Meaning::Crash || meaning == Meaning::Hang;
}

bool isPower(Meaning meaning) {
  return meaning == Meaning::Sleep || meaning == Meaning::Resume || meaning == Meaning::DisplayChange;
}

std::string_view severityName(Severity severity) {
  constexpr std::array<std::string_view, 4> names{"info", "notice", "warning", "error"};
  return names[static_cast<std::size_t>(severity)];
}

Severity severityOfLevel(int level) {
  return level == 1 || level == 2 ? Severity::Error : level == 3 ? Severity::Warning : Severity::Info;
}

}  // namespace sentiq
