// The events that tell why an application or a machine went down: what each id means, and in which words it is shown.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "reader/events/EventHead.h"
#include "reader/events/EventRecord.h"

namespace sentiq {

enum class Severity : std::uint8_t { Info, Notice, Warning, Error };

/// What an entry of a log means for the session.
enum class Meaning : std::uint8_t {
  Other,
  Crash,      // Or the error report of one, which most often stands beside it.
  Hang,       // So here.
  Recovered,  // A hang that ended by itself.
  Leak,
  Exit,
  PowerLoss,      // The machine went down without shutting down.
  SystemCrash,    // A blue screen.
  ShutdownBegun,  // Somebody asked for it.
  ShutdownDone,
  Boot,
  Sleep,
  Resume,
  Standby,
  Clock,
  Display,  // Trouble with the graphics driver; so with memory, disks and the rest of the hardware.
  Memory,
  Disk,
  Hardware,
  Battery,  // On it, not on mains.
};

struct EventWords {
  Meaning meaning;
  Severity severity;
  std::string words;  // One line, clean.
};

/// Events that the table does not know are shown with provider, id and fields.
/// @param offset of the local time in which times within the event are shown.
EventWords describeEvent(const EventRecord& event, std::chrono::minutes offset);

/// Whether describeEvent() may know such an event. The others need not be parsed to judge a session.
bool mayMatter(const EventHead& event);

/// That of an event which the table does not know.
Severity severityOfLevel(int level);

bool isFailure(Meaning meaning);

/// Whether a field holds more than nothing, 0 or false.
bool isSet(const EventRecord& event, std::string_view field);

std::string_view severityName(Severity severity);

}  // namespace sentiq
