// Copies entries of the Windows event log into the watchdog's logs: one line for each event, its XML as a
// JSON text, newest first. The readers keep no state and may run on several threads at once. What goes wrong with the
// events stands in a log, or on the standard output; they throw only what the log throws.
#pragma once

#include <cstdint>
#include <string>

#include "logging/WatchdogLog.h"

namespace sentiq {

/// Renders one event as {"xmlData":"<its XML>"}.
/// @param event an event handle (EVT_HANDLE) of the system's, not owned.
/// @param text receives the JSON as wide text; unchanged when the event cannot be rendered or is no text.
/// @return the system's error value as it stands after rendering, which is not zero after every success.
std::uint32_t renderEventAsJson(void* event, std::wstring& text);

/// Copies the newest crashes and error reports of the monitored application, 100 at most.
void readAppTerminationEvents(const std::wstring& channel, LogTarget target);

/// Copies the newest shutdowns and power losses of the machine, 100 at most.
void readShutdownEvents(const std::wstring& channel, LogTarget target);

/// Copies the newest 500 events of a channel into the watchdog log.
void dumpChannel(const std::wstring& channel);

/// Copies the Application and the System channel into the watchdog log, each under a title line.
void dumpEventLogs();

}  // namespace sentiq
