// One run of the program beside one process of Canvix: what its logs hold, in one order.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "reader/events/EventRecord.h"
#include "reader/events/Meaning.h"
#include "reader/input/LogTime.h"
#include "reader/session/MetricSample.h"

namespace sentiq {

/// Which of the logs a file is follows from what it holds, not from its name.
enum class LogRole : std::uint8_t { Unknown, Session, Watchdog, Initial };

/// A line of the program, an event or a record.
struct LogEntry {
  std::optional<Instant> time;  // A line without one takes its neighbour's.
  std::chrono::minutes offset{};
  LogRole role = LogRole::Unknown;  // Of the log that it stands in.
  Severity severity = Severity::Info;
  Meaning meaning = Meaning::Other;
  std::uint32_t file = 0;  // Index into the files of the set.
  std::uint64_t line = 0;
  std::string text;                     // Of a line, UTF-8, clean; empty for an event and a record.
  bool borrowed = false;                // From another session's copies of the event log, which shows it, too.
  std::optional<std::uint32_t> event;   // Index into the events.
  std::optional<std::uint32_t> metric;  // Index into the metrics.
};

/// One copy of a channel of the event log in the watchdog log.
struct ChannelCopy {
  std::string channel;
  Instant made;                   // Of its title line.
  std::optional<Instant> oldest;  // Event in it; nothing in a copy without events.
  std::uint64_t firstRecord = 0;  // Record numbers, both within it; 0 when unknown.
  std::uint64_t lastRecord = 0;
  std::size_t events = 0;
  std::optional<Instant> lostBefore;  // Older events than this could not be rendered, or are damaged.
  bool afterExit = false;  // One of the two that follow Canvix's exit; the others go with sleep and the display.
};

struct CountedEvent {
  std::uint64_t hash = 0;  // Of its text.
  Severity severity = Severity::Info;
};

/// What is worth knowing of the session before.
struct EarlierSession {
  LogTime end;
  std::vector<std::string> adapters;
  std::string canvixVersion;  // Empty when its logs do not tell.
};

struct Session {
  std::string id;                 // From its header; empty when none was read. UTF-8, clean, as all texts here.
  std::string processId;          // Of Canvix, decimal; empty when no header was read.
  std::string abnormalSessionId;  // The session before, which its initial log is about; empty without such a log.
  std::string folder;             // In which its logs lie; not clean.
  std::string computer;           // As its events name it; empty without any.
  std::string timeZone;
  std::string bootText;             // As the header says it.
  std::optional<Instant> booted;    // The same as a time; exact to a second or two.
  std::vector<Instant> laterBoots;  // Starts of Windows after it, as the headers of other sessions' logs tell.
  // In time order, and in the order of the files where times are equal. Those of an initial log are of the session that
  // wrote it (before its begin) and of the one that it is about (after its end).
  std::vector<LogEntry> entries;
  std::vector<EventRecord> events;  // Distinct.
  std::vector<MetricSample> metrics;
  std::vector<ChannelCopy> copies;        // In the order of time.
  std::vector<CountedEvent> counted;      // Distinct events that were not kept.
  std::uint64_t eventCopies = 0;          // Events that were in the logs more than once.
  std::vector<std::string> repeated;      // Files that hold the same of it once more; names as given.
  std::vector<Instant> otherExits;        // Of the sessions beside it on the same machine.
  std::optional<EarlierSession> earlier;  // The one before it on the same machine, if its logs are there.

  /// @param entry one that is an event; so of the other one a record.
  const EventRecord& eventOf(const LogEntry& entry) const { return events[*entry.event]; }
  const MetricSample& recordOf(const LogEntry& entry) const { return metrics[*entry.metric]; }
};

/// What a log holds of one session: what follows a header, up to the next one, but the records of another process. Of
/// an initial log, `session.id` is the id that its header names: that of the session before.
struct SessionPart {
  Session session;
  LogRole role = LogRole::Unknown;
  std::size_t origin = 0;              // Its file, or set of logs: within one, lines that are alike are several.
  std::string name;                    // Of that.
  std::optional<std::size_t> above{};  // The session under whose header it stands, of a part without a session id.
};

/// From Canvix's start, as far as records tell it, to the last line of the session and watchdog logs; the initial log
/// tells of the time before.
struct SessionSpan {
  std::optional<Instant> begin;
  std::optional<Instant> end;
  std::chrono::minutes offset{};

  /// The second copy of the event log follows the exit by two minutes: some time after the end counts.
  bool contains(Instant time) const;
};
SessionSpan sessionSpan(const Session& session);

/// Indexes of the wanted entries in the order in which they were written: the clock may have been set back meanwhile.
std::vector<std::size_t> asWritten(const Session& session, bool (*isWanted)(const LogEntry&));

/// Indexes of the sessions in each folder.
std::map<std::string, std::vector<std::size_t>> byFolder(const std::vector<Session>& sessions);

/// "session", "watchdog", "initial" or "unknown"; for an event its channel.
std::string sourceOf(const Session& session, const LogEntry& entry);

std::string roleName(LogRole role);

/// The entry in words: the line itself, the event's words, or the record's figures.
std::string wordsOf(const Session& session, const LogEntry& entry);

}  // namespace sentiq
