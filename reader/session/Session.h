// One run of the program beside one process of Canvix: what its logs hold, in one order.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "reader/events/EventRecord.h"
#include "reader/events/EventTable.h"
#include "reader/input/LogTime.h"
#include "reader/session/MetricSample.h"

namespace sentiq {

/// Which of the logs a file is follows from what it holds, not from its name.
enum class LogRole : std::uint8_t { Unknown, Session, Watchdog, Initial };

struct LogEntry {
  std::optional<Instant> time;  // A line without one takes its neighbour's.
  std::chrono::minutes offset{};
  LogRole role = LogRole::Unknown;  // Of the log that it stands in.
  std::size_t file = 0;             // Index into the files of the set.
  std::uint64_t line = 0;
  Severity severity = Severity::Info;
  Meaning meaning = Meaning::Other;
  std::string what;                   // UTF-8, clean.
  std::optional<std::size_t> event;   // Index into the events.
  std::optional<std::size_t> metric;  // Index into the metrics.
};

struct Session {
  std::string id;                 // From its header; empty when none was read. UTF-8, clean, as all texts here.
  std::string processId;          // Of Canvix, decimal; empty when no header was read.
  std::string abnormalSessionId;  // The session before, which its initial log is about; empty without such a log.
  std::string folder;             // In which its logs lie; not clean.
  std::string timeZone;
  std::string bootTime;
  // In time order, and in the order of the files where times are equal. Those of an initial log are of the session that
  // wrote it (before its begin) and of the one that it is about (after its end).
  std::vector<LogEntry> entries;
  std::vector<EventRecord> events;  // Distinct.
  std::vector<MetricSample> metrics;
  std::unordered_map<std::size_t, Severity> counted;  // Distinct events that were not kept, by the hash of their text.
  std::uint64_t eventCopies = 0;                      // Events that were in the logs more than once.
  std::optional<Instant> applicationCopied;           // When the Application channel was last copied.

  /// @param entry one that is an event.
  const EventRecord& eventOf(const LogEntry& entry) const { return events[*entry.event]; }

  /// "session", "watchdog", "initial" or "unknown"; for an event its channel.
  std::string sourceOf(const LogEntry& entry) const;
};

std::string roleName(LogRole role);

}  // namespace sentiq
