// One record of the Windows event log, as the XML text says it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/input/LogTime.h"

namespace sentiq {

/// The provider of error reports.
constexpr std::string_view errorReporting = "Windows Error Reporting";

/// All texts are clean and of limited length.
struct EventRecord {
  std::optional<Instant> time;  // The event's own.
  std::string channel;
  std::string provider;
  int id = 0;
  int level = 0;  // 1 critical, 2 error, 3 warning, others information.
  std::uint64_t recordId = 0;
  /// Name and value, in the event's order. Fields that the event leaves unnamed have the names that newer systems
  /// give them where those are known, else none; nested ones the names of all elements around them with dots between.
  std::vector<std::pair<std::string, std::string>> data;

  /// Empty when there is no such field. What a crash and its error report both have goes by the names of the crash.
  const std::string& field(std::string_view name) const;

  /// An error report: it names no process, and most often a crash or hang stands beside it.
  bool isReport() const;

  /// Whether a crash, a hang or an error report is about Canvix; others name it further back, which does not count.
  bool isOfCanvix() const;

  /// Equal for all copies of one event.
  std::string key() const;
};

/// Nothing when the text is not an event. Never throws for any bytes.
std::optional<EventRecord> parseEvent(std::string_view xml);

}  // namespace sentiq
