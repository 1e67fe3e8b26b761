#include "watchdog/PowerEvent.h"

#include <windows.h>

#include <exception>
#include <string_view>

#include "logging/LogGrammar.h"
#include "logging/WatchdogLog.h"
#include "watchdog/EventLogReader.h"
#include "watchdog/WatchdogState.h"

namespace sentiq {
namespace {

void record(std::string_view title) {
  writeSystemLine(title);
  dumpEventLogs();
  writeSystemLine("Done dumping event logs");
}

// The log begins anew: what led to the sleep is what will be asked for.
void onSystemWillSleep() {
  try {
    truncateLog(LogTarget::WatchdogLog);
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): then the log goes on where it is.
  }
  writeWatchdogHeader(watchdogState().sessionId, LogTarget::WatchdogLog);
  record(grammar::willSleep);
}

}  // namespace

PowerEvent powerEventOf(std::uintptr_t code) {
  switch (code) {
    case PBT_APMSUSPEND:
      return PowerEvent::WillSleep;
    case PBT_APMRESUMESUSPEND:
      return PowerEvent::Resume;
    case PBT_POWERSETTINGCHANGE:
      return PowerEvent::Standby;
    default:
      return PowerEvent::None;
  }
}

void recordPowerEvent(PowerEvent event) {
  switch (event) {
    case PowerEvent::WillSleep:
      onSystemWillSleep();
      break;
    case PowerEvent::Resume:
      record(grammar::resumed);
      break;
    case PowerEvent::Standby:
      record(grammar::displayChanged);
      break;
    case PowerEvent::None:
      break;
  }
}

}  // namespace sentiq
