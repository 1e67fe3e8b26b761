// All logs of a session, read and put into one order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "reader/input/Progress.h"
#include "reader/session/EventRecord.h"
#include "reader/session/EventTable.h"
#include "reader/session/LogTime.h"
#include "reader/session/MetricSample.h"

namespace sentiq {

/// Which of the logs a file is follows from what it holds, not from its name.
enum class LogRole : std::uint8_t { Unknown, Session, Watchdog, Initial };

struct LogFileInfo {
  std::string name;  // As given, UTF-8.
  LogRole role = LogRole::Unknown;
  bool readable = true;
  std::uint64_t lines = 0;
  std::uint64_t damagedLines = 0;
  std::string sessionId;                // The last one.
  std::vector<std::string> sessionIds;  // All that it names: several sessions may have appended to one file.
  std::string processId;
  std::string timeZone;
  std::string bootTime;
  std::deque<std::string> rawLines;  // Decoded; the last ones, when asked for.
  std::uint64_t rawLeftOut = 0;
};

struct LogEntry {
  std::optional<Instant> time;  // A line without one takes its neighbour's.
  std::chrono::minutes offset{};
  std::size_t file = 0;
  std::uint64_t line = 0;
  Severity severity = Severity::Info;
  Meaning meaning = Meaning::Other;
  std::string what;                   // UTF-8, clean.
  std::optional<std::size_t> event;   // Index into the events.
  std::optional<std::size_t> metric;  // Index into the metrics.
};

struct LogSet {
  std::vector<LogFileInfo> files;
  std::vector<LogEntry> entries;    // In time order, and in the order of the files where times are equal.
  std::vector<EventRecord> events;  // Distinct.
  std::vector<MetricSample> metrics;
  std::uint64_t eventCopies = 0;             // Events that were in the logs more than once.
  std::optional<Instant> applicationCopied;  // When the Application channel was last copied.
  std::vector<std::string> leftOut;          // Files of a folder that are no logs of this program.

  /// "session", "watchdog", "initial" or "unknown"; for an event its channel.
  std::string sourceOf(const LogEntry& entry) const;
};

std::string roleName(LogRole role);

/// @param inputs files, "-" or folders, whose "*.log" files count when they hold log lines.
/// Files that cannot be read are in the result, marked so. Memory is proportional to what is distinct in the logs:
/// copies of events, runs of damaged lines and what goes beyond 64 KB of one message are counted or cut, visibly.
LogSet readLogs(const std::vector<std::string>& inputs, std::istream& standardInput, Progress& progress,
                bool keepRawLines = false);

}  // namespace sentiq
