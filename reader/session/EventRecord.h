// One record of the Windows event log, as the XML text says it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/session/LogTime.h"

namespace sentiq {

struct EventRecord {
  std::optional<Instant> time;  // The event's own.
  std::string channel;
  std::string provider;
  int id = 0;
  int level = 0;  // 1 critical, 2 error, 3 warning, others information.
  std::uint64_t recordId = 0;
  std::vector<std::pair<std::string, std::string>> data;  // Name (may be empty) and value, in the event's order.

  /// The value of a data field: by name, or by place when the name is a number (from 0). Empty when there is none.
  std::string field(std::string_view nameOrPlace) const;

  /// Whether a field holds Canvix's file name, however written: only then is a crash or hang one of Canvix.
  bool namesCanvix() const;

  /// Equal for all copies of one event.
  std::string key() const;
};

/// Nothing when the text is not an event. Never throws for any bytes.
std::optional<EventRecord> parseEvent(std::string_view xml);

}  // namespace sentiq
