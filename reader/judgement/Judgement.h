// How a session ended, judged from the entries of its logs: plain values, which outlive the session.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/events/EventFacts.h"
#include "reader/events/Meaning.h"
#include "reader/input/LogTime.h"
#include "reader/judgement/Outcome.h"
#include "reader/session/Session.h"

namespace sentiq {

struct Statement {
  Severity severity = Severity::Info;
  std::string text;                    // One line, UTF-8, clean.
  std::optional<std::size_t> entry{};  // Index into the session's entries; so below.
};

/// What the events say about the end, of one failure or one fall from all that tell of it.
struct Evidence {
  std::optional<ProgramFailure> failure;  // Of a crash or a hang.
  std::optional<MachineFall> fall;        // Of a blue screen or a loss of power.
  std::vector<std::size_t> entries;       // That it rests on.
};

/// When something happened, of which the events tell only the limits when both are not one.
struct TimeRange {
  Instant from;
  Instant to;
};

enum class BeforeKind : std::uint8_t { Display, Memory, Disk, Hardware, Battery, Leak, Hang, Resume, Full };

/// For scripts: "display", "memory", …
std::string_view beforeName(BeforeKind kind);

/// For people, where there is no more to say of it: "trouble with the graphics driver".
std::string_view beforeWords(BeforeKind kind);

/// Something within minutes before a crash, a hang or a fall of the machine, which need not be its cause.
struct Before {
  BeforeKind kind;
  Instant time;
  std::chrono::minutes offset{};
  Ticks earlier{};  // How long before it.
  std::string text;
  std::optional<std::size_t> entry;
};

/// A change of the machine, or of Canvix, in the days before the end.
struct Change {
  MachineChange change;
  Instant time;
  std::chrono::minutes offset{};
  Ticks earlier{};
  std::optional<std::size_t> entry;
};

struct Judgement {
  Outcome outcome = Outcome::Unknown;
  Statement verdict;              // With the entry that tells most of it, if any.
  std::optional<TimeRange> time;  // When Canvix or the machine ended, not when that was logged.
  std::chrono::minutes offset{};  // Of local time then.
  std::optional<Instant> back;    // When a machine that fell was up again.
  Evidence evidence;
  std::vector<Before> before;     // Oldest first.
  std::vector<Change> changes;    // Newest first, each once.
  std::vector<Statement> others;  // What else there is to say: other instances, sleeps, the clock, the time before.
  std::vector<std::string> adapters;
  std::optional<std::int64_t> lowestDisk;      // MiB free, of the records.
  std::optional<std::int64_t> lowestPageFile;  // MiB.
};

Judgement judge(const Session& session);

}  // namespace sentiq
