// Hears of sleep, resume and standby through a hidden window, and records them with a copy of the event log.
#pragma once

namespace sentiq {

/// Body of a watchdog thread: owns the window and its message loop; everything here, the event-log copies
/// too, runs on that thread. Ends when the monitored process is gone, on stop, or when the window or the
/// second registration cannot be made. Throws nothing.
void runPowerThread();

}  // namespace sentiq
