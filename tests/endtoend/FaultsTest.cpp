// Faults that the unchanged program must survive: exit code 0, no line lost that could be written, no hang.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

const std::string system = stamp + " [SYSTEM] [INFO]: ";
const std::string process = stamp + " [PROCESS] [INFO]: ";
const std::string exitLine = stamp + " Exit Status - Canvix is no longer alive";

std::ptrdiff_t count(const fs::path& log, const std::string& line) {
  const Lines lines = readLog(log);
  return std::count(lines.begin(), lines.end(), line);
}

void resume(const ChildProcess& sentiq) {
  SendMessageW(powerWindowOf(sentiq.pid()), WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
}

// Every line of the file is whole: a time stamp and tags, a record, a header line or the separator.
void expectWholeLines(const fs::path& log) {
  for (const std::string& line : readLog(log)) {
    const bool whole = line.rfind(system, 0) == 0 || line.rfind(process, 0) == 0 || line == exitLine ||
                       line == std::string(39, '=') || line.rfind("OrbelSessionID: ", 0) == 0 ||
                       line.rfind("ProcessID: ", 0) == 0 || nlohmann::json::accept(line);
    EXPECT_TRUE(whole) << log.filename() << ": " << line;
  }
}

// Canvix is ended at ten moments of the start and the run. The runs go side by side: each may take the two minutes.
TEST(Faults, CanvixIsKilledAtTenMoments) {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
  struct Run {
    RunFolder folder;
    ChildProcess canvix{L"Canvix.exe"};
    std::unique_ptr<ChildProcess> sentiq;
  };
  std::list<Run> runs;
  const std::chrono::milliseconds moments[] = {0ms, 20ms, 60ms, 120ms, 200ms, 350ms, 600ms, 1000ms, 2000ms};
  for (int i = 0; i < 10; ++i) {
    Run& run = runs.emplace_back();
    const auto start = [&] {
      run.sentiq = std::make_unique<ChildProcess>(L"CanvixSentiq.exe",
                                                  pidOption(run.canvix) + L" --last-abnormal-session-id before" +
                                                      run.folder.sessionOption() + run.folder.watchdogOptions());
    };
    if (i < 9) {
      start();
      std::this_thread::sleep_for(moments[i]);
    } else {  // While the program is busy with the machine's sleep.
      start();
      ASSERT_TRUE(eventually([&] { return powerWindowOf(run.sentiq->pid()) != nullptr; }));
      PostMessageW(powerWindowOf(run.sentiq->pid()), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
      std::this_thread::sleep_for(200ms);
    }
    run.canvix.end();
  }
  for (Run& run : runs) {
    EXPECT_EQ(run.sentiq->wait(220s), 0u);
    for (const fs::path& log : {run.folder.session, run.folder.watchdog, run.folder.initial}) {
      expectWholeLines(log);
    }
    const Lines lines = readLog(run.folder.watchdog);
    // Either the exit was recorded to the end, or Canvix was gone before it could be waited for.
    if (count(run.folder.session, exitLine) == 1) {
      EXPECT_EQ(lines.back(), system + "Watchdog stopped cleanly.");
    } else {
      EXPECT_EQ(count(run.folder.watchdog, system + "Attempting to stop Watchdog."), 0);
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
    int fewest, most;  // Of three resumes: before, during and after the fault.
  } cases[] = {
      {"folder removed and made again", [](const RunFolder& run) { fs::remove_all(run.watchdog.parent_path()); },
       [](const RunFolder& run) { fs::create_directories(run.watchdog.parent_path()); }, 1, 1},
      {"locked without sharing",
       [&](const RunFolder& run) {
         lock = FileHandle(CreateFileW(run.watchdog.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
         ASSERT_TRUE(lock);
       },
       [&](const RunFolder&) { lock.reset(); }, 2, 2},
      {"read-only", [](const RunFolder& run) { SetFileAttributesW(run.watchdog.c_str(), FILE_ATTRIBUTE_READONLY); },
       [](const RunFolder& run) {
         SetFileAttributesW(run.watchdog.c_str(), FILE_ATTRIBUTE_NORMAL);
       },  // The administrator writes all the same under Wine.
       2, 3},
      {"replaced by a folder",
       [](const RunFolder& run) {
         fs::remove(run.watchdog);
         fs::create_directory(run.watchdog);
       },
       [](const RunFolder& run) { fs::remove(run.watchdog); }, 1, 1},
  };
  for (const auto& [name, fault, cure, fewest, most] : cases) {
    RunFolder run;
    run.watchdog = run.folder / L"below" / L"watchdog \U0001F600.log";
    fs::create_directories(run.watchdog.parent_path());
    const ChildProcess canvix(L"Canvix.exe");
    const ChildProcess sentiq(L"CanvixSentiq.exe", pidOption(canvix) + run.watchdogOptions());
    ASSERT_TRUE(eventually([&] { return powerWindowOf(sentiq.pid()) != nullptr; })) << name;
    resume(sentiq);
    fault(run);
    resume(sentiq);
    cure(run);
    resume(sentiq);
    const auto resumes = count(run.watchdog, system + "System Resume");
    EXPECT_GE(resumes, fewest) << name;
    EXPECT_LE(resumes, most) << name;
    EXPECT_EQ(count(run.watchdog, system + "Done dumping event logs"), resumes) << name;
    EXPECT_EQ(count(run.watchdog, system + "Starting Watchdog application"), fewest - 1) << name;
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
  ChildProcess longPath(L"CanvixSentiq.exe", pidOption(canvix) + L" --encode-logs 0" + run.sessionOption());
  ChildProcess noFolder(L"CanvixSentiq.exe", pidOption(canvix) + L" --sentiq-logs-path Z:\\nowhere\\at\\all.log");
  EXPECT_EQ(longPath.wait(60s), 0u);
  EXPECT_EQ(noFolder.wait(60s), 0u);
  EXPECT_EQ(count(run.session, exitLine), 1);
}

// The event log fails in every way; the lines around it are all there.
TEST(Faults, EventLogThatFails) {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
  for (const wchar_t* fault : {L"EvtQuery:0:1722", L"EvtNext:1:1734", L"EvtNext:2:15011", L"EvtRender:4:122"}) {
    SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", fault);
    const RunFolder run;
    const ChildProcess canvix(L"Canvix.exe");
    const ChildProcess sentiq(L"CanvixSentiq.exe",
                              pidOption(canvix) + L" --last-abnormal-session-id before" + run.watchdogOptions());
    ASSERT_TRUE(eventually([&] { return powerWindowOf(sentiq.pid()) != nullptr; }));
    EXPECT_TRUE(eventually([&] { return count(run.initial, std::string(39, '=')) == 1; }));
    resume(sentiq);
    EXPECT_EQ(count(run.watchdog, system + "Done dumping event logs"), 1);
    const bool away = std::wstring(fault).find(L"EvtQuery") == 0;
    EXPECT_EQ(count(run.initial, process + "EvtQuery failed"), away ? 3 : 0);
  }
  SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", nullptr);
}

TEST(Faults, WithoutTheCrashClientTheProgramDoesNotStart) {
  const TempFolder folder;
  fs::copy_file(programFolder() / "CanvixSentiq.exe", folder / "CanvixSentiq.exe");
  EXPECT_EQ(ChildProcess(L"CanvixSentiq.exe", L"--help", folder / "").wait(60s), DWORD{0xC0000135});
}

}  // namespace
}  // namespace sentiq::test
