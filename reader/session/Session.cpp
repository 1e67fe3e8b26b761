#include "reader/session/Session.h"

#include <array>

#include "reader/input/CleanText.h"

namespace sentiq {

std::string Session::sourceOf(const LogEntry& entry) const {
  return entry.event ? cleanText(eventOf(entry).channel) : roleName(entry.role);
}

std::string roleName(LogRole role) {
  constexpr std::array<const char*, 4> names{"unknown", "session", "watchdog", "initial"};
  return names[static_cast<std::size_t>(role)];
}

}  // namespace sentiq
