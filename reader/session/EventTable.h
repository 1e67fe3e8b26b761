// The events that tell why an application or a machine went down: what each id means, and in which words it is shown.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "reader/session/EventRecord.h"

namespace sentiq {

enum class Severity : std::uint8_t { Info, Notice, Warning, Error };

/// What an entry of a log means for the session.
enum class Meaning : std::uint8_t {
  Other,
  Crash,
  Hang,
  HangReport,  // An error report of a hang: names no process id, and most often a Hang stands beside it.
  Exit,
  PowerLoss,      // The machine went down without shutting down.
  SystemCrash,    // A bugcheck.
  ShutdownBegun,  // Somebody asked for it.
  ShutdownDone,
  Boot,
  Sleep,
  Resume,
  Standby,
};

struct EventWords {
  Meaning meaning;
  Severity severity;
  std::string words;  // One line, UTF-8 as the event has it.
};

/// Events that the table does not know are shown with provider, id and fields.
EventWords describeEvent(const EventRecord& event);

/// A crash, a hang or the report of one.
bool isFailure(Meaning meaning);

std::string_view severityName(Severity severity);

}  // namespace sentiq
