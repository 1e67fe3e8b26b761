#include "startup/Tasks.h"

#include <cstdint>
#include <future>
#include <memory>
#include <utility>

#include "capture/CaptureSettings.h"
#include "capture/DataCapture.h"
#include "capture/MetricCode.h"
#include "startup/ProcessExit.h"
#include "watchdog/Watchdog.h"
#include "watchdog/WatchdogSettings.h"

namespace sentiq {
namespace {

WatchdogSettings watchdogSettings(const LaunchOptions& options) {
  return {
      .processId = static_cast<std::uint32_t>(options.pid),
      .watchdogLogPath = options.watchdogLogPath,
      .sessionId = options.analyticsIdentifier,
      .initialWatchdogLogPath = options.initialWatchdogLogPath,
      .lastAbnormalSessionId = options.lastAbnormalSessionId,
      .encodeLogs = options.encodeLogs,
  };
}

CaptureSettings captureSettings(const LaunchOptions& options) {
  return {
      .analyticsIdentifier = options.analyticsIdentifier,
      .processId = static_cast<std::uint32_t>(options.pid),
      .logPath = options.logPath,
      .sessionLogPath = options.sessionLogPath,
      .forceQuitLogPath = options.forceQuitLogPath,
      .reservedPath = options.reservedPath,
      .encodeLogs = options.encodeLogs,
      .metrics = defaultMetricSelection(),
  };
}

void runCaptureTask(const LaunchOptions& options) {
  DataCapture::instance().start(captureSettings(options));
  std::uint32_t exitCode = 0;
  waitForProcessExit(static_cast<std::uint32_t>(options.pid), exitCode);
  DataCapture::instance().stop(/*processGone=*/true);
  if (!options.watchdogLogPath.empty()) {
    stopWatchdog();
  }
}

}  // namespace

// The capture task and the start of the watchdog are not ordered against each other: when the monitored
// process is already gone, stopWatchdog may come first, and the threads that startWatchdog then makes are never joined.
void runTasks(const LaunchOptions& options) {
  auto capture =
      std::make_unique<std::future<void>>(std::async(std::launch::async, [options] { runCaptureTask(options); }));
  if (!options.watchdogLogPath.empty()) {
    try {
      startWatchdog(watchdogSettings(options));
    } catch (...) {
      // Its destructor would wait for the monitored process; the exception is to pass at once.
      static_cast<void>(capture.release());
      throw;
    }
  }
  capture->get();
}

}  // namespace sentiq
