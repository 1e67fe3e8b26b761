// What the end-to-end tests share: a run of the unchanged program in a folder of its own, and what it left behind.
#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/Logs.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq::test {

using Lines = std::vector<std::string>;

constexpr auto program = L"CanvixSentiq.exe";
constexpr auto exitLine = "T Exit Status - Canvix is no longer alive";

inline void useSampleEvents() {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
}

/// The paths that Canvix hands over. Names with every kind of character, since they must all work.
struct RunFolder {
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

/// How many lines of the log are this one.
inline std::ptrdiff_t count(const std::filesystem::path& log, const std::string& line) {
  const Lines lines = readLog(log);
  return std::count(lines.begin(), lines.end(), line);
}

/// Whether the watchdog has started all its threads and they have said so.
inline bool watchdogRuns(const RunFolder& run, const ChildProcess& sentiq) {
  return eventually([&] {
    return powerWindowOf(sentiq.pid()) != nullptr && count(run.watchdog, "[PROCESS] Inside  monitor app exit") > 0 &&
           count(run.watchdog, "[SYSTEM] Done with start of Watchdog application") > 0;
  });
}

}  // namespace sentiq::test
