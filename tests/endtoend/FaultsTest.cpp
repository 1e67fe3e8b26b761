// Faults that the unchanged program must survive: exit code 0, no line lost that could be written, no hang.
#include <cstdlib>
#include <functional>
#include <list>

#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"
#include "tests/support/Test.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr auto program = L"CanvixSentiq.exe";
const std::string dumped = systemHead + "Done dumping event logs";

void resume(const ChildProcess& sentiq) {
  SendMessageW(powerWindowOf(sentiq.pid()), WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
}

std::ptrdiff_t countEvents(const Lines& lines, const std::string& head) {
  return std::count_if(lines.begin(), lines.end(), [&](const std::string& line) { return line.rfind(head, 0) == 0; });
}

// Every line of the file is whole: a time stamp and tags, a record, a header line or the separator.
void expectWholeLines(const fs::path& log) {
  for (const std::string& line : readLog(log)) {
    const bool whole = line.rfind(systemHead, 0) == 0 || line.rfind(processHead, 0) == 0 || line == exitLine ||
                       line == separatorLine || line.rfind("OrbelSessionID: ", 0) == 0 ||
                       line.rfind("ProcessID: ", 0) == 0 || nlohmann::json::accept(line);
    EXPECT_TRUE(whole) << log.filename() << ": " << line;
  }
}

// The moments are nine times since the start (before it, one that leaves no process to open) and two dumps of the event
// log. The runs go side by side: each may take the two minutes.
TEST(Faults, CanvixIsKilledAtTenMoments) {
  useSampleEvents();
  struct Run {
    RunFolder folder;
    std::unique_ptr<ChildProcess> canvix = std::make_unique<ChildProcess>(L"Canvix.exe");
    std::unique_ptr<ChildProcess> sentiq;
  };
  std::list<Run> runs;
  constexpr std::chrono::milliseconds goneBefore(-1);
  const struct {
    std::chrono::milliseconds after;
    WPARAM during;  // A power message whose handling is under way.
  } moments[] = {{goneBefore, 0},
                 {0ms, 0},
                 {30ms, 0},
                 {80ms, 0},
                 {150ms, 0},
                 {300ms, 0},
                 {600ms, 0},
                 {2000ms, 0},
                 {50ms, PBT_APMRESUMESUSPEND},
                 {50ms, PBT_APMSUSPEND}};
  for (const auto& [after, during] : moments) {
    Run& run = runs.emplace_back();
    const std::wstring options = pidOption(*run.canvix) + L" --last-abnormal-session-id before" +
                                 run.folder.sessionOption() + run.folder.watchdogOptions();
    if (after == goneBefore) {
      const DWORD pid = run.canvix->pid();
      run.canvix.reset();
      // An ended process can be opened for as long as anything still holds it.
      ASSERT_TRUE(eventually([&] { return !KernelHandle(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, pid)); }));
    }
    run.sentiq = std::make_unique<ChildProcess>(program, options);
    if (during != 0) {
      ASSERT_TRUE(watchdogRuns(run.folder, *run.sentiq));
      PostMessageW(powerWindowOf(run.sentiq->pid()), WM_POWERBROADCAST, during, 0);
    }
    std::this_thread::sleep_for(std::max(after, 0ms));
    if (run.canvix) {
      run.canvix->end();
    }
  }
  for (Run& run : runs) {
    EXPECT_EQ(run.sentiq->wait(220s), 0u);
    for (const fs::path& log : {run.folder.session, run.folder.watchdog, run.folder.initial}) {
      expectWholeLines(log);
    }
    const fs::path& log = run.folder.watchdog;
    const bool recorded = run.canvix != nullptr;
    EXPECT_EQ(count(run.folder.session, exitLine), recorded);
    EXPECT_EQ(count(log, systemHead + "Attempting to stop Watchdog."), recorded);
    EXPECT_EQ(count(log, systemHead + "Watchdog stopped cleanly."), recorded);
    if (recorded) {
      const Lines lines = readLog(log);
      const auto exit = std::find(lines.begin(), lines.end(), processHead + "App has exited");
      EXPECT_GE(std::count(exit, lines.end(), processHead + "App dumping System log:"), 2);
    }
  }
}

// What is done to the watchdog log while the program runs, and undone again.
TEST(Faults, LogsThatGoAwayAndComeBack) {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", L"Z:\\nowhere");
  using Step = std::function<void(const RunFolder&)>;
  FileHandle lock;
  const struct {
    const char* name;
    Step fault, cure;
    int starts;        // How many lines of the start are left.
    int fewest, most;  // Of three resumes: before, during and after the fault.
  } cases[] = {
      {"folder removed and made again", [](const RunFolder& run) { fs::remove_all(run.watchdog.parent_path()); },
       [](const RunFolder& run) { fs::create_directories(run.watchdog.parent_path()); }, 0, 1, 1},
      {"replaced by a folder",
       [](const RunFolder& run) { fs::remove(run.watchdog), fs::create_directory(run.watchdog); },
       [](const RunFolder& run) { fs::remove(run.watchdog); }, 0, 1, 1},
      {"locked without sharing",
       [&](const RunFolder& run) {
         lock = FileHandle(CreateFileW(run.watchdog.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
         ASSERT_TRUE(lock);
       },
       [&](const RunFolder&) { lock.reset(); }, 1, 2, 2},
      // Root writes a read-only file all the same under Wine, others do not.
      {"read-only", [](const RunFolder& run) { SetFileAttributesW(run.watchdog.c_str(), FILE_ATTRIBUTE_READONLY); },
       [](const RunFolder& run) { SetFileAttributesW(run.watchdog.c_str(), FILE_ATTRIBUTE_NORMAL); }, 1, 2, 3},
  };
  for (const auto& [name, fault, cure, starts, fewest, most] : cases) {
    RunFolder run;
    run.watchdog = run.folder / L"below" / L"watchdog \U0001F600.log";
    fs::create_directories(run.watchdog.parent_path());
    const ChildProcess canvix(L"Canvix.exe");
    const ChildProcess sentiq(program, pidOption(canvix) + run.watchdogOptions());
    ASSERT_TRUE(watchdogRuns(run, sentiq)) << name;
    resume(sentiq);
    fault(run);
    resume(sentiq);
    cure(run);
    resume(sentiq);
    const auto resumes = count(run.watchdog, systemHead + "System Resume");
    EXPECT_GE(resumes, fewest) << name;
    EXPECT_LE(resumes, most) << name;
    EXPECT_EQ(count(run.watchdog, dumped), resumes) << name;
    EXPECT_EQ(count(run.watchdog, systemHead + "Starting Watchdog application"), starts) << name;
    expectWholeLines(run.watchdog);
  }
}

TEST(Faults, PathsOf400CharactersAndLogsThatCannotBeMade) {
  RunFolder run;
  const ChildProcess canvix(L"Canvix.exe", L"3");
  fs::path deep = run.folder / L"";
  while (deep.wstring().size() < 390) {
    deep /= L"a folder with \u00FC and \U0001F600 in its name";
    CreateDirectoryW((L"\\\\?\\" + deep.wstring()).c_str(), nullptr);
  }
  run.session = deep / L"session.log";
  ChildProcess longPath(program, pidOption(canvix) + run.sessionOption());
  ChildProcess noFolder(program, pidOption(canvix) + L" --sentiq-logs-path Z:\\nowhere\\at\\all.log");
  EXPECT_EQ(longPath.wait(60s), 0u);
  EXPECT_EQ(noFolder.wait(60s), 0u);
  EXPECT_EQ(count(run.session, exitLine), 1);
}

// The event log fails in every way; the lines around it are all there.
TEST(Faults, EventLogThatFails) {
  useSampleEvents();
  for (const std::wstring fault : {L"EvtQuery:0:1722", L"EvtNext:1:1734", L"EvtNext:2:15011", L"EvtRender:4:122"}) {
    SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", fault.c_str());
    const RunFolder run;
    const ChildProcess canvix(L"Canvix.exe");
    const ChildProcess sentiq(program,
                              pidOption(canvix) + L" --last-abnormal-session-id before" + run.watchdogOptions());
    SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", nullptr);
    ASSERT_TRUE(watchdogRuns(run, sentiq));
    EXPECT_TRUE(eventually([&] { return count(run.initial, separatorLine) == 1; }));
    resume(sentiq);
    EXPECT_EQ(count(run.watchdog, dumped), 1);
    EXPECT_EQ(count(run.initial, processHead + "EvtQuery failed"), fault.find(L"EvtQuery") == 0 ? 3 : 0);
  }
}

// Two programs that were given the same files. They take turns here: Wine, unlike Windows, appends in two steps, so
// that lines of two programs at one moment could overwrite each other.
TEST(Faults, TwoInstancesOnTheSameLogs) {
  useSampleEvents();
  const RunFolder run;
  const ChildProcess canvix(L"Canvix.exe");
  const std::wstring options =
      pidOption(canvix) + L" --last-abnormal-session-id before" + run.sessionOption() + run.watchdogOptions();
  std::list<ChildProcess> both;
  for (const std::ptrdiff_t number : {1, 2}) {
    const ChildProcess& sentiq = both.emplace_back(program, options);
    ASSERT_TRUE(watchdogRuns(run, sentiq));
    ASSERT_TRUE(eventually([&] { return count(run.initial, separatorLine) == number; }));
  }
  for (const ChildProcess& sentiq : both) {
    resume(sentiq);
  }
  for (const fs::path& log : {run.session, run.watchdog, run.initial}) {
    expectWholeLines(log);
  }
  EXPECT_EQ(count(run.watchdog, systemHead + "Starting Watchdog application"), 2);
  EXPECT_EQ(count(run.watchdog, dumped), 2);
  std::ptrdiff_t sampleEvents = 0;
  for (const char* channel : {"Application.xml", "System.xml"}) {
    sampleEvents += countEvents(linesOf(readFile(programFolder() / "events" / channel)), "<Event ");
  }
  EXPECT_EQ(countEvents(readLog(run.watchdog), processHead + "{\"xmlData\""), 2 * sampleEvents);
}

// What comes once there is room again is all there, and what was there before is untouched.
TEST(Faults, DiskThatFillsUp) {
  const char* const disk = std::getenv("SENTIQ_SMALL_DISK");
  ASSERT_NE(disk, nullptr) << "small-disk.sh sets it";
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", L"Z:\\nowhere");
  RunFolder run;
  run.watchdog = fs::path(disk) / "watchdog.log";
  const fs::path filler = fs::path(disk) / "filler";
  const ChildProcess canvix(L"Canvix.exe");
  const ChildProcess sentiq(program, pidOption(canvix) + run.watchdogOptions());
  ASSERT_TRUE(watchdogRuns(run, sentiq));
  const Lines before = readLog(run.watchdog);
  for (std::ofstream file(filler, std::ios::binary); file;) {
    file << std::string(1000, 'x') << std::flush;
  }
  // Each may take the second that the program waits between two looks at its messages.
  constexpr int resumes = 20;
  for (int i = 0; i < resumes; ++i) {
    resume(sentiq);
  }
  EXPECT_LT(count(run.watchdog, dumped), resumes);  // The disk was full indeed.
  fs::remove(filler);
  resume(sentiq);
  resume(sentiq);
  const Lines lines = readLog(run.watchdog);
  EXPECT_TRUE(std::equal(before.begin(), before.end(), lines.begin()));
  // The first line of the two dumps may follow on one that the full disk cut off.
  const Lines last = {processHead + "App dumping Application log:",
                      processHead + "App dumping System log:",
                      dumped,
                      systemHead + "System Resume",
                      processHead + "App dumping Application log:",
                      processHead + "App dumping System log:",
                      dumped};
  ASSERT_GE(lines.size(), before.size() + last.size());
  EXPECT_TRUE(std::equal(last.begin(), last.end(), lines.end() - 7));
}

TEST(Faults, WithoutTheCrashClientTheProgramDoesNotStart) {
  SetErrorMode(SEM_FAILCRITICALERRORS);  // Inherited: no message box that waits for somebody.
  const TempFolder folder;
  fs::copy_file(programFolder() / program, folder / program);
  EXPECT_EQ(ChildProcess(program, L"--help", folder / "").wait(60s), DWORD{0xC0000135});
}

}  // namespace
}  // namespace sentiq::test
