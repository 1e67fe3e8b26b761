#pragma once

namespace sentiq {

/// Body of a watchdog thread: polls the monitored process, and when it has gone copies the event log, twice.
/// Ends without a copy when the watchdog is stopped first. Throws nothing.
void monitorAppExit();

}  // namespace sentiq
