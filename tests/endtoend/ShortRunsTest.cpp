// Runs of the unchanged program that end within seconds.
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"
#include "tests/support/Test.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;

/// Makes every call of the crash client go to the file, which it reads when destroyed.
struct CrashClientRecord {
  explicit CrashClientRecord(const wchar_t* fault = L"") {
    SetEnvironmentVariableW(L"TARNWICK_RECORD", file.c_str());
    SetEnvironmentVariableW(L"TARNWICK_FAULT", fault);
  }
  ~CrashClientRecord() { SetEnvironmentVariableW(L"TARNWICK_RECORD", nullptr); }
  TempFolder folder;
  std::filesystem::path file = folder / "calls.txt";
};

// A run that ends before it begins leaves no file and does not touch the crash client.
TEST(ShortRuns, ExitCodesOfTheCommandLine) {
  const RunFolder run;
  const CrashClientRecord record;
  const std::pair<std::wstring, DWORD> cases[] = {
      {L"", 0},
      {L"--help" + run.options(), 0},
      {run.options(), 1},
      {L"--pid abc" + run.options(), 0},
      {L"stray --pid 5" + run.options(), 0},
      {L"--encode-logs --pid 5" + run.options(), 0},
  };
  for (const auto& [arguments, code] : cases) {
    EXPECT_EQ(ChildProcess(program, arguments).wait(60s), code) << std::filesystem::path(arguments);
  }
  EXPECT_TRUE(std::filesystem::is_empty(run.folder / "") && std::filesystem::is_empty(record.folder / ""));
}

// The crash client is initialised first and terminated last, after a refusal too, but not after an exception.
TEST(ShortRuns, CallsOfTheCrashClient) {
  const std::string initialize = "CrashReporterInitialize 0 CanvixSentiq 29.5 137 0 0 0 0 0 0 0 true 0 false";
  const std::string terminate = "VexaCrashReporterTerminate 0";
  const struct {
    const wchar_t* option;
    const wchar_t* fault;
    Lines calls;
  } cases[] = {
      {L"", L"", {initialize, terminate}},
      {L" --cr-detached-mode", L"", {"SetDetachedMode", initialize, terminate}},
      {L"", L"refuse", {initialize, "GetCRLastErrorCode", terminate}},
      {L"", L"throw", {initialize}},
  };
  for (const auto& [option, fault, calls] : cases) {
    const CrashClientRecord record(fault);
    const ChildProcess canvix(L"Canvix.exe", L"2");
    EXPECT_EQ(ChildProcess(program, pidOption(canvix) + option).wait(60s), 0u);
    EXPECT_EQ(linesOf(readFile(record.file)), calls);
  }
}

// Without the watchdog only the session log is written, at whatever path; when it cannot be, nothing is.
TEST(ShortRuns, TheSessionLogAlone) {
  RunFolder run;
  const ChildProcess canvix(L"Canvix.exe", L"4");
  ChildProcess noFolder(program, pidOption(canvix) + L" --sentiq-logs-path Z:\\nowhere\\at\\all.log");
  ChildProcess sentiq(program, pidOption(canvix) + L" --last-abnormal-session-id x --encode-logs off" +
                                   L" --sentiq-logs-path \"" + run.session.wstring() +
                                   L"\" --watchdog-initial-logs-path \"" + run.initial.wstring() + L"\"");
  EXPECT_EQ(noFolder.wait(60s), 0u);
  EXPECT_EQ(sentiq.wait(60s), 0u);
  EXPECT_FALSE(std::filesystem::exists(run.initial));
  const Lines lines = linesOf(readFile(run.session));
  ASSERT_EQ(lines.size(), 4u);
  const auto sample = nlohmann::json::parse(lines[2]);
  EXPECT_EQ(sample.size(), sample.contains("gpuInfo") ? 15u : 14u);
  EXPECT_EQ(sample["status"], "Running");
  EXPECT_EQ(masked(lines[3]), exitLine);
}

// A process that cannot be opened ends the run with 0; the watchdog was started and is not stopped. What its threads do
// meanwhile, exceptions at events that are no text included, must not bring the ending process down.
TEST(ShortRuns, AProcessThatDoesNotExist) {
  const RunFolder run;
  std::ofstream(run.folder / "Application.xml") << "<Event xmlns='x'>{LONE}</Event>";
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (run.folder / "").c_str());
  ChildProcess sentiq(program, L"--pid 999999 --encode-logs 0" + run.options());
  EXPECT_EQ(sentiq.wait(60s), 0u);
  EXPECT_EQ(linesOf(readFile(run.session)).at(1), "ProcessID: 999999");
  EXPECT_EQ(count(run.watchdog, "[SYSTEM] Starting Watchdog application"), 1);
  EXPECT_EQ(count(run.watchdog, "[SYSTEM] Attempting to stop Watchdog."), 0);
}

// The reports with which a machine refuses a path of 400 characters come where a program does not say that it can
// handle them; the test itself does not say so.
TEST(ShortRuns, APathOf400Characters) {
  const RunFolder run;
  const ChildProcess canvix(L"Canvix.exe", L"3");
  std::filesystem::path deep = run.folder / L"";
  while (deep.wstring().size() < 390) {
    deep /= L"a folder with \u00FC and \U0001F600 in its name";
    CreateDirectoryW((L"\\\\?\\" + deep.wstring()).c_str(), nullptr);
  }
  deep /= L"session.log";
  ChildProcess sentiq(program, pidOption(canvix) + L" --sentiq-logs-path \"" + deep.wstring() + L"\"");
  EXPECT_EQ(sentiq.wait(60s), 0u);
  EXPECT_EQ(count(L"\\\\?\\" + deep.wstring(), exitLine), 1);
}

}  // namespace
}  // namespace sentiq::test
