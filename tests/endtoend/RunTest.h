// What the end-to-end tests share: a run of the unchanged program in a folder of its own, and what it left behind.
#pragma once

#include "logging/LogEncoding.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Decode.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq::test {

using Lines = std::vector<std::string>;

inline const std::string exitLine = stamp + " Exit Status - Canvix is no longer alive";
inline const std::string separatorLine(39, '=');

inline void useSampleEvents() {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
}

/// The paths that Canvix hands over. Names with every kind of character, since they must all work.
struct RunFolder {
  TempFolder folder;
  std::filesystem::path session = folder / L"CanvixSentiqSession \u00FC\u65E5\U0001F600.log";
  std::filesystem::path watchdog = folder / L"CanvixWatchdogInfoSession \u00FC.log";
  std::filesystem::path initial = folder / L"CanvixWatchdogInfoInitialSession.log";

  std::wstring sessionOption() const { return L" --sentiq-logs-path \"" + session.wstring() + L"\""; }
  std::wstring watchdogOptions() const {
    return L" --watchdog-logs-path \"" + watchdog.wstring() + L"\" --watchdog-initial-logs-path \"" +
           initial.wstring() + L"\"";
  }
};

inline std::wstring pidOption(const ChildProcess& process) {
  return L"--analytics-identifier session-\u00FC --pid " + std::to_wstring(process.pid());
}

/// The file's lines, decoded where they are encoded, with masked time stamps.
inline Lines readLog(const std::filesystem::path& path) {
  Lines lines = linesOf(readFile(path));
  for (std::string& line : lines) {
    // No plain line of the program consists of base64 digits alone, and every encoded one does.
    if (line.find_first_not_of(std::string(base64Alphabet) + "=") == std::string::npos) {
      line = decodeLine(line);
    }
    line = masked(line);
  }
  return lines;
}

/// The page that the log reader makes of the run's folder; what it ended with when that is not 0.
inline std::string readerReport(const RunFolder& run) {
  const auto page = run.folder / L"report \u65E5\U0001F600.html";
  ChildProcess reader(L"sentiq-logs.exe",
                      L"report \"" + run.session.parent_path().wstring() + L"\" -o \"" + page.wstring() + L"\"");
  const auto code = reader.wait(std::chrono::seconds(60));
  return code == 0u ? readFile(page) : "exit code " + (code ? std::to_string(*code) : "missing");
}

/// How many lines of the log are this one.
inline std::ptrdiff_t count(const std::filesystem::path& log, const std::string& line) {
  const Lines lines = readLog(log);
  return std::count(lines.begin(), lines.end(), line);
}

/// Whether the watchdog has started all its threads and they have said so.
inline bool watchdogRuns(const RunFolder& run, const ChildProcess& sentiq) {
  return eventually([&] {
    return powerWindowOf(sentiq.pid()) != nullptr &&
           count(run.watchdog, processHead + "Inside  monitor app exit") > 0 &&
           count(run.watchdog, systemHead + "Done with start of Watchdog application") > 0;
  });
}

}  // namespace sentiq::test
