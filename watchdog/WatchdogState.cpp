#include "watchdog/WatchdogState.h"

#include <windows.h>

#include "logging/UniqueHandle.h"

namespace sentiq {

WatchdogState& watchdogState() {
  static auto* const state = new WatchdogState;
  return *state;
}

bool monitoredProcessRuns() {
  const KernelHandle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ,
                                         /*bInheritHandle=*/FALSE, watchdogState().monitoredPid));
  DWORD exitCode = 0;
  return process && GetExitCodeProcess(process.get(), &exitCode) != FALSE && exitCode == STILL_ACTIVE;
}

void sleepAtLeast(std::chrono::steady_clock::duration time) {
  const auto deadline = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_until(deadline);
  }
}

}  // namespace sentiq
