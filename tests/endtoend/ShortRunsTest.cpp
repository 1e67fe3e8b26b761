// Runs of the unchanged program that end within seconds.
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"
#include "tests/support/Test.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;

constexpr auto program = L"CanvixSentiq.exe";

/// Every call of the crash client goes to the file while this lives.
struct CrashClientRecord {
  explicit CrashClientRecord(const std::filesystem::path& file, const wchar_t* fault = L"") {
    SetEnvironmentVariableW(L"TARNWICK_RECORD", file.c_str());
    SetEnvironmentVariableW(L"TARNWICK_FAULT", fault);
  }
  ~CrashClientRecord() {
    SetEnvironmentVariableW(L"TARNWICK_RECORD", nullptr);
    SetEnvironmentVariableW(L"TARNWICK_FAULT", nullptr);
  }
};

// A run that ends before it begins leaves no file and does not touch the crash client.
TEST(ShortRuns, ExitCodesOfTheCommandLine) {
  const RunFolder run;
  const CrashClientRecord record(run.folder / "calls.txt");
  const std::wstring paths = run.sessionOption() + run.watchdogOptions();
  const struct {
    std::wstring arguments;
    DWORD code;
  } cases[] = {
      {L"", 0},
      {L"--help", 0},
      {L"--pid 5 --help" + paths, 0},
      {paths, 1},
      {L"--pid abc", 0},
      {L"stray --pid 5", 0},
      {L"--pid 5 \"\"" + paths, 0},
      {L"--encode-logs 0", 1},
      {L"--pid", 0},
      {L"--unknown --pid 5", 0},
      {L"--encode-logs --pid 5" + paths, 0},
  };
  for (const auto& [arguments, code] : cases) {
    EXPECT_EQ(ChildProcess(program, arguments).wait(60s), code) << std::filesystem::path(arguments);
  }
  EXPECT_TRUE(std::filesystem::is_empty(run.folder / ""));
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
    const RunFolder run;
    const CrashClientRecord record(run.folder / "calls.txt", fault);
    const ChildProcess canvix(L"Canvix.exe", L"2");
    EXPECT_EQ(ChildProcess(program, pidOption(canvix) + option).wait(60s), 0u);
    EXPECT_EQ(linesOf(readFile(run.folder / "calls.txt")), calls);
  }
}

TEST(ShortRuns, WithoutTheWatchdogOnlyTheSessionLogIsWritten) {
  for (const bool encode : {false, true}) {
    const RunFolder run;
    ChildProcess canvix(L"Canvix.exe");
    ChildProcess sentiq(program, pidOption(canvix) + run.sessionOption() + L" --last-abnormal-session-id x" +
                                     L" --watchdog-initial-logs-path \"" + run.initial.wstring() + L"\"" +
                                     (encode ? L"" : L" --encode-logs off"));
    ASSERT_TRUE(eventually([&] { return readLog(run.session).size() == 3; }));
    canvix.end();
    EXPECT_EQ(sentiq.wait(60s), 0u);
    EXPECT_FALSE(std::filesystem::exists(run.initial));
    const Lines lines = readLog(run.session);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(linesOf(readFile(run.session))[2][0] != '{', encode);
    const auto sample = nlohmann::json::parse(lines[2]);
    EXPECT_EQ(sample.size(), 15u);
    EXPECT_TRUE(sample.contains("gpuInfo"));  // There is one adapter under Wine, and its key comes only with one.
    EXPECT_EQ(sample["processId"], canvix.pid());
    EXPECT_EQ(sample["status"], "Running");
    EXPECT_EQ(lines[3], exitLine);
    EXPECT_THAT(readerReport(run),
                AllOf(HasSubstr(">Canvix ended at "), HasSubstr("<dd>session-\u00FC</dd>"),
                      HasSubstr("CanvixSentiqSession \u00FC\u65E5\U0001F600.log (session log, 4 lines)"),
                      HasSubstr("<li>No watchdog log</li>")));
  }
}

// A process that cannot be opened ends the run with 0; the watchdog was started and is not stopped. What its threads do
// meanwhile, exceptions at events that are no text included, must not bring the ending process down.
TEST(ShortRuns, AProcessThatDoesNotExist) {
  const RunFolder run;
  std::ofstream(run.folder / "Application.xml") << "<Event xmlns='x'>{LONE}</Event>";
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (run.folder / "").c_str());
  ChildProcess sentiq(program, L"--pid 999999 --encode-logs 0" + run.sessionOption() + run.watchdogOptions());
  EXPECT_EQ(sentiq.wait(60s), 0u);
  const Lines session = readLog(run.session);
  ASSERT_GE(session.size(), 2u);
  EXPECT_EQ(session[1], "ProcessID: 999999");
  for (std::size_t i = 2; i < session.size(); ++i) {  // The end may come before the first record.
    EXPECT_EQ(nlohmann::json::parse(session[i])["status"], "Process does not exist");
  }
  EXPECT_EQ(count(run.watchdog, systemHead + "Starting Watchdog application"), 1);
  EXPECT_EQ(count(run.watchdog, systemHead + "Attempting to stop Watchdog."), 0);
}

}  // namespace
}  // namespace sentiq::test
