#include "watchdog/AppExitMonitor.h"

#include <chrono>

#include "logging/LogGrammar.h"
#include "logging/WatchdogLog.h"
#include "watchdog/EventLogReader.h"
#include "watchdog/WatchdogState.h"

namespace sentiq {
namespace {

constexpr std::chrono::seconds pollInterval(1);

// Windows writes some entries well after an exit. A stop does not cut this short.
constexpr std::chrono::seconds secondDumpAfter(120);

// False when the watchdog is stopped first.
bool waitForExit() {
  while (!watchdogState().stopRequested) {
    sleepAtLeast(pollInterval);
    if (!monitoredProcessRuns()) {
      return true;
    }
  }
  return false;
}

}  // namespace

void monitorAppExit() {
  try {
    writeProcessLine("Inside  monitor app exit");
    if (waitForExit()) {
      writeProcessLine(grammar::exitSeen);
      dumpEventLogs();
      sleepAtLeast(secondDumpAfter);
      dumpEventLogs();
    }
    writeProcessLine(grammar::exitDone);
  } catch (...) {  // NOLINT(bugprone-empty-catch): only the log itself can fail here.
  }
}

}  // namespace sentiq
