#pragma once

#include <chrono>

namespace sentiq {

/// Body of a watchdog thread: polls the monitored process, and when it has gone copies the event log, twice.
/// Ends without a copy when the watchdog is stopped first. Throws nothing.
/// @param secondDumpAfter the pause between the two copies, in which the stop is not looked at: Windows
/// writes some entries well after an exit.
void monitorAppExit(std::chrono::seconds secondDumpAfter = std::chrono::seconds(120));

}  // namespace sentiq
