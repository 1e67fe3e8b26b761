// What an entry of a log, an event or a line of the program, means for a session, and how serious it is.
#pragma once

#include <cstdint>
#include <string_view>

namespace sentiq {

enum class Severity : std::uint8_t { Info, Notice, Warning, Error };

enum class Meaning : std::uint8_t {
  Other,
  Crash,      // Of Canvix, as are the next three; told by an event, a report or the system's pop-up.
  Hang,       // It did not answer and was closed.
  Recovered,  // A hang that ended by itself.
  Leak,
  Exit,           // Canvix has ended.
  PowerLoss,      // The machine went down without shutting down.
  BlueScreen,     // So, with a stop code.
  ShutdownBegun,  // Somebody asked for it.
  ShutdownDone,
  Boot,
  Sleep,  // Or hibernation.
  Resume,
  StandbyBegun,  // Modern standby.
  StandbyEnded,
  DisplayChange,  // The display went on or off, or standby began or ended: the program cannot tell which.
  Clock,          // Was set.
  Display,        // Trouble with the graphics driver; so with memory, disks and the rest of the hardware.
  Memory,
  Disk,
  Hardware,
  Battery,  // On it, not on mains.
  Change,   // Of the machine: an update, a driver, a program.
};

// What the meaning of an event leaves open.

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

/// A crash or a hang of Canvix.
bool isFailure(Meaning meaning);

/// What the power thread tells: sleep, resume, a display change.
bool isPower(Meaning meaning);

/// "info", "notice", "warning", "error".
std::string_view severityName(Severity severity);

/// Of an event's level: 1 critical, 2 error, 3 warning, others information.
Severity severityOfLevel(int level);

}  // namespace sentiq
