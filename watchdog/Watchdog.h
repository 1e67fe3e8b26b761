// The half of the program that records why the monitored application or the machine stopped. Start and stop
// happen once each.
#pragma once

#include <string>

#include "watchdog/WatchdogSettings.h"

namespace sentiq {

/// Writes the header of the watchdog log and starts the watchdog's threads. Called on the main thread;
/// returns once they run. Throws std::system_error (resource_unavailable_try_again) when a thread cannot be made.
void startWatchdog(const WatchdogSettings& settings);

/// Asks the threads to end and joins them: at least 5 s, and over two minutes when the exit of the monitored
/// process is being recorded. Not to be called on a watchdog thread (std::system_error, resource_deadlock_would_occur).
void stopWatchdog();

/// Body of a watchdog thread: copies what the event log says of the last, abnormal session into the initial
/// log. Throws nothing.
void runInitialMetricCollection(const std::string& lastAbnormalSessionId);

}  // namespace sentiq
