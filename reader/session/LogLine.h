// The grammar of one log: what a decoded line says.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "reader/events/Meaning.h"
#include "reader/input/LogTime.h"

namespace sentiq {

enum class LineSays : std::uint8_t {
  Nothing,  // An empty line, or the separator.
  SessionId,
  ProcessId,
  TimeZone,
  BootTime,
  InitialBegun,  // The log is an initial one.
  Event,
  LostEvent,  // One that the system did not render.
  Record,
  Message,
  Rest,  // Without a time stamp: of the message before it, or no line of a log.
};

struct LogLine {
  LineSays says = LineSays::Rest;
  bool tagged = false;          // As the watchdog writes its lines.
  bool known = false;           // Only a log of this program holds such a line.
  bool stamped = false;         // It begins with a time stamp, or says that there was none.
  std::optional<LogTime> time;  // Of its time stamp.
  std::string_view text;        // Without time stamp and tags.
  std::string_view value;       // Of a header's key.
  Meaning meaning = Meaning::Other;
  Severity severity = Severity::Info;

  bool isHeader() const { return says >= LineSays::SessionId && says <= LineSays::BootTime; }
};

/// The views are into the text. A record is told by its first characters only.
LogLine readLine(std::string_view text);

}  // namespace sentiq
