// What tells whether an event can matter for a session, read from its line without parsing it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "reader/input/LogTime.h"

namespace sentiq {

struct EventHead {
  std::string_view provider;  // As it stands in the line; so is the channel.
  std::string_view channel;
  int id = 0;
  int level = 0;  // 1 critical, 2 error, 3 warning, others information.
  std::uint64_t recordId = 0;
  std::optional<Instant> time;  // The event's own.
};

/// @param json the event as the log has it: {"xmlData":"<Event …"}.
/// Nothing when it does not begin and end as an event does, or its provider is written with escapes: then it has to be
/// parsed. What stands between is not looked at.
std::optional<EventHead> readEventHead(std::string_view json);

/// Whether the event, once parsed, may have a meaning for a session. The others need not be parsed to judge one.
/// @param json the whole event: what is only about another program than Canvix does not matter.
bool mayMatter(const EventHead& head, std::string_view json);

}  // namespace sentiq
