// Runs of the unchanged program that end within seconds.
#include <windows.h>

#include <chrono>
#include <list>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr auto program = L"CanvixSentiq.exe";
const std::string system = stamp + " [SYSTEM] [INFO]: ";
const std::string process = stamp + " [PROCESS] [INFO]: ";

TEST(ShortRuns, ExitCodesOfTheCommandLine) {
  const struct {
    const wchar_t* arguments;
    DWORD code;
  } cases[] = {
      {L"", 0},          {L"--help", 0},        {L"--pid 5 --help", 0}, {L"--logs-path x --watchdog-logs-path y", 1},
      {L"--pid abc", 0}, {L"stray --pid 5", 0}, {L"--pid 5 \"\"", 0},   {L"--encode-logs 0", 1},
  };
  for (const auto& [arguments, code] : cases) {
    EXPECT_EQ(ChildProcess(program, arguments).wait(60s), code) << std::filesystem::path(arguments);
  }
}

// The crash client is initialised first and terminated last, after a refusal too, but not after an exception.
TEST(ShortRuns, CallsOfTheCrashClient) {
  const std::string initialize = "CrashReporterInitialize 0 CanvixSentiq 29.5 137 0 0 0 0 0 0 0 true 0 false";
  const std::string terminate = "VexaCrashReporterTerminate 0";
  const struct {
    const wchar_t* option;
    const wchar_t* fault;
    std::vector<std::string> calls;
  } cases[] = {
      {L"", L"", {initialize, terminate}},
      {L" --cr-detached-mode", L"", {"SetDetachedMode", initialize, terminate}},
      {L"", L"refuse", {initialize, "GetCRLastErrorCode", terminate}},
      {L"", L"throw", {initialize}},
  };
  for (const auto& [option, fault, calls] : cases) {
    const RunFolder run;
    const auto record = run.folder / "calls.txt";
    SetEnvironmentVariableW(L"TARNWICK_RECORD", record.c_str());
    SetEnvironmentVariableW(L"TARNWICK_FAULT", fault);
    const ChildProcess canvix(L"Canvix.exe", L"2");
    EXPECT_EQ(ChildProcess(program, pidOption(canvix) + option).wait(60s), 0u);
    EXPECT_EQ(linesOf(readFile(record)), calls);
  }
  SetEnvironmentVariableW(L"TARNWICK_RECORD", nullptr);
  SetEnvironmentVariableW(L"TARNWICK_FAULT", nullptr);
}

TEST(ShortRuns, WithoutTheWatchdogOnlyTheSessionLogIsWritten) {
  for (const bool encode : {false, true}) {
    const RunFolder run;
    const ChildProcess canvix(L"Canvix.exe", L"3");
    ChildProcess sentiq(program, pidOption(canvix) + run.sessionOption() + L" --last-abnormal-session-id x" +
                                     L" --watchdog-initial-logs-path \"" + run.initial.wstring() + L"\"" +
                                     (encode ? L"" : L" --encode-logs off"));
    EXPECT_EQ(sentiq.wait(60s), 0u);
    EXPECT_FALSE(std::filesystem::exists(run.initial));
    const auto raw = linesOf(readFile(run.session));
    const auto lines = readLog(run.session);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(raw[0], "OrbelSessionID: session-\u00FC");
    EXPECT_EQ(raw[1], "ProcessID: " + std::to_string(canvix.pid()));
    EXPECT_EQ(raw[2][0] != '{', encode);
    const auto sample = nlohmann::json::parse(lines[2]);
    std::vector<std::string> keys;
    for (const auto& [key, value] : sample.items()) {
      keys.push_back(key);
    }
    EXPECT_THAT(keys, ElementsAre("appStartTime", "batteryPercentage", "fgProcessName", "freeDiskSpace",
                                  "freeSwapMemory", "gpuInfo", "processId", "status", "systemStartTime", "systemUpTime",
                                  "timestamp", "totalDiskSpace", "totalSwapMemory", "usedDiskSpace", "usedSwapMemory"));
    EXPECT_EQ(sample["processId"], canvix.pid());
    EXPECT_EQ(sample["status"], "Running");
    EXPECT_EQ(lines[3], stamp + " Exit Status - Canvix is no longer alive");
    EXPECT_THAT(readerReport(run),
                AllOf(HasSubstr(">Canvix ended at "), HasSubstr("<dd>session-\u00FC</dd>"),
                      HasSubstr("CanvixSentiqSession \u00FC\u65E5\U0001F600.log (session log, 4 lines)"),
                      HasSubstr("<li>No watchdog log</li>")));
  }
}

// A process that cannot be opened ends the run with 0; the watchdog was started and is not stopped.
TEST(ShortRuns, AProcessThatDoesNotExist) {
  const RunFolder run;
  ChildProcess sentiq(program, L"--pid 999999 --encode-logs 0" + run.sessionOption() + run.watchdogOptions());
  EXPECT_EQ(sentiq.wait(60s), 0u);
  const auto session = readLog(run.session);
  ASSERT_GE(session.size(), 3u);
  EXPECT_EQ(session[1], "ProcessID: 999999");
  EXPECT_EQ(nlohmann::json::parse(session[2])["status"], "Process does not exist");
  for (const std::string& line : readLog(run.watchdog)) {
    EXPECT_EQ(line.find("Attempting to stop"), std::string::npos);
  }
}

}  // namespace
}  // namespace sentiq::test
