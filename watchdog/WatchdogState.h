// What the watchdog's threads share. Process-wide: startWatchdog writes the monitored process and the session
// id before any of those threads exists, stopWatchdog sets the stop flag, and nothing else changes it.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sentiq {

struct WatchdogState {
  std::uint32_t monitoredPid = 0;
  std::string sessionId;  // UTF-8.
  std::atomic<bool> stopRequested = false;
  std::mutex threadsMutex;  // Guards threads; held while they are made and while they are joined.
  std::vector<std::thread> threads;
};

/// Never destroyed: the process ends while threads of the watchdog may still run.
WatchdogState& watchdogState();

/// Whether the monitored process still runs. One that cannot be opened counts as gone. Callable on any thread.
bool monitoredProcessRuns();

/// Until a deadline on the steady clock: a plain sleep may end a clock tick early.
void sleepAtLeast(std::chrono::steady_clock::duration time);

}  // namespace sentiq
