// How a session ended, judged from the entries of its logs.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/events/EventTable.h"
#include "reader/session/Session.h"

namespace sentiq {

/// From Canvix's start to the last line of the session and watchdog logs; the initial log tells of the time before.
struct SessionSpan {
  std::optional<Instant> begin;
  std::optional<Instant> end;
  std::chrono::minutes offset{};

  bool contains(Instant time) const;
};

SessionSpan sessionSpan(const Session& session);

/// What the events say about a failure, as far as they do; codes in one form (0xc0000005).
struct Evidence {
  /// Name and text: module, moduleVersion, exception, exceptionWords and offset of a crash, hangKind of a hang,
  /// canvixVersion, reportId, bucket and reportPath of both; stopCode and stopWords of a blue screen. None is empty.
  std::vector<std::pair<std::string, std::string>> texts;
  std::vector<std::string> dumps;

  /// The text of that name; the other one when there is none.
  std::string text(std::string_view name, const std::string& otherwise = {}) const;
};

/// Something within minutes before a crash, a hang or a power loss, which need not be its cause.
struct Before {
  std::string kind;  // For scripts: display, memory, disk, hardware, battery, leak, hang, resume, full.
  Instant time;
  std::chrono::minutes offset{};
  Ticks earlier{};  // How long before it.
  std::string text;
  std::optional<std::size_t> entry;  // Index into the session's entries; so below.
};

struct Statement {
  Severity severity = Severity::Info;
  std::string text;  // One line, UTF-8, clean.
  std::optional<std::size_t> entry{};
};

/// A plain value, which outlives the session.
struct Judgement {
  std::string outcome;          // One word: crashed, hung, bluescreen, power-loss, shutdown, ended, asleep or unknown.
  Statement verdict;            // What it rests on, when it is one entry.
  std::optional<LogTime> time;  // Of that entry.
  Evidence evidence;
  std::vector<Before> before;     // Oldest first.
  std::vector<Statement> others;  // What else there is to say: other instances, sleeps, the clock, the time before.
  std::vector<std::string> adapters;
  std::optional<std::int64_t> lowestDisk;      // MiB free, of the records.
  std::optional<std::int64_t> lowestPageFile;  // MiB.
};

Judgement judge(const Session& session);

/// How far an event of that kind has set the clock; nothing for others and where the clock was only read anew after a
/// sleep.
std::optional<Ticks> clockChange(const EventRecord& event);

/// "Before it: the display driver … was restarted, 4 s earlier".
std::string beforeText(const Before& before);

}  // namespace sentiq
