// The entries of sessions' logs, one readable line each, in time order.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "reader/events/Meaning.h"
#include "reader/session/LogSet.h"

namespace sentiq {

struct TimelineOptions {
  std::optional<Instant> since{};  // In the logs' local time, as if that were UTC; so is until, which is included.
  std::optional<Instant> until{};
  std::optional<Ticks> last{};         // Before the end of each session, and what came after it.
  std::vector<std::string> sources{};  // Roles or channels in any case; all when empty.
  Severity severity = Severity::Info;  // Nothing below it.
  std::string grep{};                  // In the words or an event's fields, in any case.
  bool records = false;  // Those of every ten seconds, too; they are also shown when their source is named.
  bool json = false;
  bool colour = false;
  std::size_t width = 0;  // Of a line; 0 breaks none.
};

/// With its line end; empty when the options leave the entry out. The last minutes are for whole sessions only.
std::string timelineLine(const LogFileInfo& file, const Session& session, const LogEntry& entry,
                         const TimelineOptions& options);

/// The oldest session first.
void writeTimeline(const LogSet& logs, const TimelineOptions& options, std::ostream& out);

/// A day or a day and time, as the user gives it: 2025-01-31, 2025-01-31T14:05, "2025-01-31 14:05:09".
std::optional<Instant> parseLocalTime(const std::string& text);

/// A time with its offset: 2025-01-31T14:05:09+01:00
std::optional<LogTime> parseWholeTime(const std::string& text);

/// 90s, 5m, 2h, 1d
std::optional<Ticks> parseDuration(const std::string& text);

}  // namespace sentiq
