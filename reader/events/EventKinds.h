// What the meaning of an event leaves open: who tells of a failure, how the machine slept, what was changed.
#pragma once

#include <cstdint>

namespace sentiq {

/// Who tells of a failure, from the one that tells most.
enum class Teller : std::uint8_t {
  Event,    // Application Error, Application Hang: names module and process.
  Runtime,  // .NET Runtime.
  Popup,    // The box that the system showed.
  Report,   // An error report: names no process; may come later than the failure, and again.
};

enum class SleepKind : std::uint8_t { Sleep, Hibernation, Standby };

/// The last three no event tells alone: they show when two starts of Windows or two sessions are put side by side.
enum class ChangeKind : std::uint8_t { Update, Driver, ProgramInstalled, ProgramRemoved, Windows, Adapter, Canvix };

}  // namespace sentiq
