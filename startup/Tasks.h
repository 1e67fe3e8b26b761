// The two halves of the program, run side by side until the monitored process ends.
#pragma once

#include "startup/LaunchOptions.h"

namespace sentiq {

/// Returns when the monitored process has ended and everything is shut down. Called once, on the main thread.
/// Throws what ended the capture task (the monitored process cannot be opened, say) or what startWatchdog
/// throws; the threads that are running then are left to the process's end.
void runTasks(const LaunchOptions& options);

}  // namespace sentiq
