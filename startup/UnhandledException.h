// What nobody handles is the system's: there the crash client's filter sees it.
#pragma once

namespace sentiq {

/// From then on std::terminate, on whichever thread, ends the process as an unhandled exception of the system's does.
/// The runtime library would abort: past that filter, and with a box that waits for a click. Built with Visual C++ this
/// does nothing, because there the system sees exceptions that leave the entry without it. Called once, on the main
/// thread.
void passUnhandledToSystem();

}  // namespace sentiq
