#include "watchdog/Watchdog.h"

#include <chrono>
#include <cstdint>
#include <mutex>
#include <thread>

#include "logging/LogGrammar.h"
#include "logging/WatchdogLog.h"
#include "watchdog/AppExitMonitor.h"
#include "watchdog/EventLogReader.h"
#include "watchdog/PowerEventListener.h"
#include "watchdog/WatchdogState.h"

namespace sentiq {
namespace {

// What happens in the last moments is to reach the logs before anything is stopped.
constexpr std::chrono::seconds pauseBeforeStop(5);

}  // namespace

void startWatchdog(const WatchdogSettings& settings) {
  WatchdogState& state = watchdogState();
  state.monitoredPid = settings.processId;
  state.sessionId = settings.sessionId;
  configureWatchdogLog(static_cast<std::int32_t>(settings.processId), settings.watchdogLogPath,
                       settings.initialWatchdogLogPath, settings.encodeLogs);
  writeWatchdogHeader(settings.sessionId, LogTarget::WatchdogLog);
  writeSystemLine("Starting Watchdog application");
  {
    const std::lock_guard lock(state.threadsMutex);
    if (!settings.lastAbnormalSessionId.empty()) {
      state.threads.emplace_back(runInitialMetricCollection, settings.lastAbnormalSessionId);
    }
    state.threads.emplace_back(monitorAppExit);
    state.threads.emplace_back(runPowerThread);
  }
  writeSystemLine("Done with start of Watchdog application");
}

void stopWatchdog() {
  WatchdogState& state = watchdogState();
  writeSystemLine(grammar::stopBegun);
  sleepAtLeast(pauseBeforeStop);
  state.stopRequested.exchange(true);
  {
    const std::lock_guard lock(state.threadsMutex);
    for (std::thread& thread : state.threads) {
      if (thread.joinable()) {
        thread.join();
      }
    }
    state.threads.clear();
  }
  writeSystemLine(grammar::stopDone);
}

void runInitialMetricCollection(const std::string& lastAbnormalSessionId) {
  constexpr LogTarget log = LogTarget::WatchdogInitialLog;
  constexpr const char* done = "Initial metric collection done.";
  try {
    try {
      writeWatchdogHeader(lastAbnormalSessionId, log);
      writeSystemLine(grammar::initialBegun, log);
      writeProcessLine("Reading last shutdown details", log);
      readShutdownEvents(L"System", log);
      writeProcessLine("Reading last app termination details in Application logs", log);
      readAppTerminationEvents(L"Application", log);
      writeProcessLine("Reading last app termination details in System logs", log);
      readAppTerminationEvents(L"System", log);  // Of the application, on purpose: it normally finds nothing.
      writeSystemLine(done, log);
      writeSeparator(log);
    } catch (...) {
      writeSystemLine(done, log);  // Without the separator: it says that everything was collected.
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch): the log itself failed.
  }
}

}  // namespace sentiq
