// What tells whether an event can matter for a session, read from its line without parsing it.
#pragma once

#include <optional>
#include <string_view>

namespace sentiq {

struct EventHead {
  std::string_view provider;  // As it stands in the line.
  std::string_view channel;
  int id = 0;
  int level = 0;
};

/// @param json the event as the log has it: {"xmlData":"<Event …"}.
/// Nothing when it does not begin and end as an event does, or its provider is written with escapes: then it has to be
/// parsed. What stands between is not looked at.
std::optional<EventHead> readEventHead(std::string_view json);

}  // namespace sentiq
