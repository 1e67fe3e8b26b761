// What an event tells, typed: codes are numbers, times are times. Each function answers for the events of its meaning.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/events/EventRecord.h"
#include "reader/events/ToldTime.h"
#include "reader/input/LogTime.h"

namespace sentiq {

/// A crash, a hang, a hang that recovered or a leak of Canvix. Texts are empty where the event does not tell.
struct ProgramFailure {
  Teller teller = Teller::Event;
  std::string version;  // Of Canvix.
  std::string module;
  std::string moduleVersion;
  std::optional<std::uint64_t> exception;
  std::string exceptionName;  // Of the .NET runtime: System.NullReferenceException.
  std::optional<std::uint64_t> offset;
  std::string hangKind;
  std::int64_t processId = 0;      // 0 when the event does not tell.
  std::optional<Instant> created;  // The process, when the event tells.
  std::string reportId;
  std::string bucket;  // Of error reports; so are the next two.
  std::string reportPath;
  std::vector<std::string> dumps;
};
ProgramFailure programFailure(const EventRecord& event);

/// The machine went down without shutting down: a blue screen or a loss of power.
struct MachineFall {
  std::optional<std::uint64_t> stopCode;  // Of a blue screen.
  std::string dump;                       // Path. Texts are empty where the event does not tell.
  std::string reportId;
  bool isErrorReport = false;            // May be sent days later; the others are logged at the next start of Windows.
  bool asleep = false;                   // It fell while it slept.
  bool inStandby = false;                // It fell in modern standby.
  bool powerButton = false;              // Held until it went off.
  std::optional<Instant> buttonPressed;  // When, if the event tells.
  ToldTime told;                         // By the event about the unexpected shutdown.
};
MachineFall machineFall(const EventRecord& event);

struct ClockSet {
  Instant from;
  Instant to;
  bool readAnew = false;  // From the hardware's clock, after a sleep: nobody has set it.
};
/// Nothing when the event does not hold both times.
std::optional<ClockSet> clockSet(const EventRecord& event);

/// What one event tells of a sleep: its begin, its end, or both.
struct SleepTold {
  SleepKind kind = SleepKind::Sleep;
  std::optional<Instant> begin;
  std::optional<Instant> end;  // Of Kernel-Power 107 it may lie before the true one: the clock has not been read yet.
  bool batteryEmpty = false;   // That was the reason.
};
/// Of the meanings Sleep, Resume, StandbyBegun and StandbyEnded.
SleepTold sleepTold(const EventRecord& event);

/// When Windows came up: the event's own time where it tells no other. Of the meaning Boot.
std::optional<Instant> bootTime(const EventRecord& event);

/// "10.0.17134", "10.0.17134.137"; empty when the event does not tell. Of the meaning Boot.
std::string windowsBuild(const EventRecord& event);

/// Of the meaning Change.
struct MachineChange {
  ChangeKind kind = ChangeKind::Update;
  std::string name;
  std::string version;  // Empty when the event does not tell.
  bool failed = false;
};
MachineChange machineChange(const EventRecord& event);

/// For scripts and for people: "update", "driver", "program installed", "program removed", "Windows", "graphics
/// adapter", "Canvix".
std::string_view changeName(ChangeKind kind);

}  // namespace sentiq
