// Runs of the unchanged program that end within seconds.
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"

namespace sentiq {

// A run that ends before it begins leaves no file and does not touch the crash client.
TEST(ShortRuns, ExitCodesOfTheCommandLine) {
  const RunFolder run;
  const std::pair<std::wstring, DWORD> cases[] = {{L"", 0},
                                                  {L"--help" + run.options(), 0},
                                                  {run.options(), 1},
                                                  {L"--pid abc" + run.options(), 0},
                                                  {L"stray --pid 5" + run.options(), 0}};
  for (const auto& [arguments, code] : cases) {
    EXPECT_EQ(ChildProcess(program, arguments).wait(60s), code) << std::filesystem::path(arguments);
  }
  EXPECT_TRUE(std::filesystem::is_empty(run.folder / ""));
}

// The crash client is initialised first and terminated last, after a refusal too, but not after an exception. The last
// figure is the error mode that it finds: neither of the system's boxes. Its filter ends the process with 137.
TEST(ShortRuns, CallsOfTheCrashClient) {
  const std::string initialize = "CrashReporterInitialize 0 CanvixSentiq 29.5 137 0 0 0 0 0 0 0 1 0 0 3";
  const std::string filter = "filter", terminate = "VexaCrashReporterTerminate 0";
  const std::tuple<const wchar_t*, const wchar_t*, Lines, DWORD> cases[] = {
      {L"", L"", {initialize, terminate}, 0},
      {L" --cr-detached-mode", L"", {"SetDetachedMode", initialize, terminate}, 0},
      {L"", L"refuse", {initialize, "GetCRLastErrorCode", terminate}, 0},
      {L"", L"throw", {initialize}, 0},
      {L"", L"0xE06D7363", {initialize}, 0},            // As Visual C++ throws.
      {L"", L"0xC0000005", {initialize, filter}, 137},  // An access violation is the system's.
      {L"", L"later", {initialize, filter}, 137},       // And what leaves the entry and is no std::exception.
  };
  for (const auto& [option, fault, calls, code] : cases) {
    const RunFolder run;
    SetEnvironmentVariableW(L"TARNWICK_FAULT", fault);
    const ChildProcess canvix(L"Canvix.exe", L"2");
    EXPECT_EQ(ChildProcess(program, pidOption(canvix) + option).wait(60s), code);
    EXPECT_EQ(linesOf(readFile(run.folder / "calls.txt")), calls);
  }
  SetEnvironmentVariableW(L"TARNWICK_FAULT", nullptr);
}

// A file of that name in the current folder is anybody's.
TEST(ShortRuns, TheCrashClientComesFromBesideTheProgram) {
  const RunFolder run;
  const std::filesystem::path alone = run.folder / program;
  std::filesystem::copy_file(programFolder() / program, alone);
  std::filesystem::current_path(programFolder());
  SetErrorMode(SEM_FAILCRITICALERRORS);  // No box of the loader: children inherit that.
  EXPECT_EQ(ChildProcess(alone.c_str(), L"--help").wait(60s), 0xC0000135);
  std::filesystem::copy_file("Tarnwick.dll", run.folder / "Tarnwick.dll");
  EXPECT_EQ(ChildProcess(alone.c_str(), L"--help").wait(60s), 0u);
}

// Without the watchdog only the session log is written, at a path of 400 characters, too; when it cannot be, nothing
// is. The test itself does not tell the system that it can handle such paths, the program does.
TEST(ShortRuns, TheSessionLogAlone) {
  const RunFolder run;
  std::filesystem::path deep = run.folder / L"";
  while (deep.wstring().size() < 390) {
    deep /= L"a folder with \u00FC and \U0001F600 in its name";
    CreateDirectoryW((L"\\\\?\\" + deep.wstring()).c_str(), nullptr);
  }
  deep /= L"session.log";
  const ChildProcess canvix(L"Canvix.exe", L"4");
  ChildProcess noFolder(program, pidOption(canvix) + L" --sentiq-logs-path Z:\\nowhere\\at\\all.log");
  ChildProcess sentiq(program, pidOption(canvix) + L" --last-abnormal-session-id x --encode-logs off" +
                                   L" --sentiq-logs-path \"" + deep.wstring() + L"\" --watchdog-initial-logs-path \"" +
                                   run.initial.wstring() + L"\"");
  EXPECT_TRUE(noFolder.wait(60s) == 0 && sentiq.wait(60s) == 0);
  EXPECT_FALSE(std::filesystem::exists(run.initial));
  const Lines lines = linesOf(readFile(L"\\\\?\\" + deep.wstring()));
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(masked(lines[3]), exitLine);
  const auto sample = nlohmann::json::parse(lines[2]);
  EXPECT_EQ(sample.size(), sample.contains("gpuInfo") ? 15u : 14u);
  EXPECT_EQ(sample["status"], "Running");
}

// A process that cannot be opened ends the run with 0 and at once, whatever the threads are at, exceptions at events
// that are no text included; the watchdog was started and is not stopped. Lines are whole or not there.
TEST(ShortRuns, AProcessThatDoesNotExist) {
  for (int i = 0; i < 6; ++i) {
    const RunFolder run;
    std::ofstream(run.folder / "Application.xml") << "<Event xmlns='x'>{LONE}</Event>";
    SetEnvironmentVariableW(L"SENTIQ_EVENTS", (run.folder / "").c_str());
    EXPECT_EQ(ChildProcess(program, L"--pid 999999" + run.options()).wait(3s), 0u);
    EXPECT_TRUE(("\n" + readFile(run.session)).ends_with('\n') && readFile(run.watchdog).ends_with('\n'));
    EXPECT_THAT(readFile(run.folder / "calls.txt"), Not(HasSubstr("Terminate")));
    EXPECT_THAT(readLog(run.watchdog), AllOf(Contains("[SYSTEM] Starting Watchdog application"),
                                             Not(Contains("[SYSTEM] Attempting to stop Watchdog."))));
  }
}

}  // namespace sentiq
