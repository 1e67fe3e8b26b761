// What the end-to-end tests share: a run of the unchanged program in a folder of its own.
#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

namespace sentiq {

constexpr auto program = L"CanvixSentiq.exe";
constexpr auto exitLine = "T Exit Status - Canvix is no longer alive";

inline void useSampleEvents() {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
}

/// The paths that Canvix hands over, with every kind of character in their names, since they must all work; and the
/// calls of the crash client.
struct RunFolder {
  RunFolder() { SetEnvironmentVariableW(L"TARNWICK_RECORD", (folder / "calls.txt").c_str()); }

  TempFolder folder;
  std::filesystem::path session = folder / L"CanvixSentiqSession \u00FC\u65E5\U0001F600.log";
  std::filesystem::path watchdog = folder / L"CanvixWatchdogInfoSession \u00FC.log";
  std::filesystem::path initial = folder / L"CanvixWatchdogInfoInitialSession.log";

  std::wstring options() const {
    return L" --sentiq-logs-path \"" + session.wstring() + L"\" --watchdog-logs-path \"" + watchdog.wstring() +
           L"\" --watchdog-initial-logs-path \"" + initial.wstring() + L"\"";
  }
};

inline std::wstring pidOption(const ChildProcess& process) {
  return L"--analytics-identifier session-\u00FC --pid " + std::to_wstring(process.pid());
}

}  // namespace sentiq
