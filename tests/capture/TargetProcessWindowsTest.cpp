// On real processes; system calls are replaced to make them fail.
#include <windows.h>

#include <psapi.h>
#include <sddl.h>
#include <tlhelp32.h>

#include <atomic>
#include <ctime>
#include <set>

#include "capture/CaptureSettings.h"
#include "capture/DataCapture.h"
#include "capture/MetricCode.h"
#include "capture/SystemInfoWindows.h"
#include "capture/TargetProcessWindows.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace {

std::vector<DWORD> rights;      // Asked for since the last look.
std::set<std::string> failing;  // Names of calls.
std::atomic<bool> allFail = false;

bool fails(const char* name) {
  SetLastError(ERROR_INVALID_PARAMETER);
  return allFail || failing.count(name) != 0;
}

template <typename Call, typename... Arguments>
auto callUnlessFailing(const char* name, Arguments... arguments) {
  const auto call = sentiq::test::real<Call>(L"kernel32", name);
  using Result = decltype(call(arguments...));
  return fails(name) ? Result{} : call(arguments...);
}

}  // namespace

// The program calls the first three through a pointer and the others directly: either way these take the system's
// place.
extern "C" {
decltype(&OpenProcess) __imp_OpenProcess = [](DWORD access, BOOL inherit, DWORD pid) {
  rights.push_back(access);
  return callUnlessFailing<decltype(&OpenProcess)>("OpenProcess", access, inherit, pid);
};
decltype(&GetExitCodeProcess) __imp_GetExitCodeProcess = [](HANDLE process, DWORD* code) {
  return callUnlessFailing<decltype(&GetExitCodeProcess)>("GetExitCodeProcess", process, code);
};
decltype(&GetProcessTimes) __imp_GetProcessTimes = [](HANDLE process, FILETIME* created, FILETIME* exited,
                                                      FILETIME* kernel, FILETIME* user) {
  return callUnlessFailing<decltype(&GetProcessTimes)>("GetProcessTimes", process, created, exited, kernel, user);
};
BOOL WINAPI K32GetProcessMemoryInfo(HANDLE process, PROCESS_MEMORY_COUNTERS* counters, DWORD size) {
  return callUnlessFailing<decltype(&K32GetProcessMemoryInfo)>("K32GetProcessMemoryInfo", process, counters, size);
}
// The system answers only who may also read the process's memory, and that right is not asked for.
DWORD WINAPI K32GetModuleBaseNameA(HANDLE, HMODULE module, char* name, DWORD size) {
  EXPECT_EQ(module, nullptr);
  return fails("K32GetModuleBaseNameA") ? 0 : static_cast<DWORD>(std::string("Canvix.exe").copy(name, size));
}
HANDLE WINAPI CreateToolhelp32Snapshot(DWORD flags, DWORD pid) {
  return fails("CreateToolhelp32Snapshot")
             ? INVALID_HANDLE_VALUE
             : callUnlessFailing<decltype(&CreateToolhelp32Snapshot)>("CreateToolhelp32Snapshot", flags, pid);
}
BOOL WINAPI Thread32First(HANDLE snapshot, THREADENTRY32* entry) {
  return callUnlessFailing<decltype(&Thread32First)>("Thread32First", snapshot, entry);
}
}

namespace sentiq {
namespace {

using test::ChildProcess;

const std::time_t begun = std::time(nullptr);  // No process that is asked about is older than this program.

// What can be told of a process: texts as they are, figures as whether there is one.
std::string ask(TargetProcessWindows& process) {
  EXPECT_EQ(process.getCpuUsage(), 0.0);
  EXPECT_EQ(process.getFileDescriptorCount(), -1);
  const std::int64_t start = process.getStartTime();
  EXPECT_TRUE(start == 0 || (start >= begun - 60 && start <= std::time(nullptr))) << start;
  return process.getProcessName() + ", " + process.getStatus() + (start != 0 ? ", start" : "") +
         (process.getMemoryUsage() != 0 ? ", memory" : "") + (process.getThreadCount() != 0 ? ", threads" : "");
}

const std::string everything = "Canvix.exe, Running, start, memory, threads";

TEST(TargetProcessWindows, FollowsAProcessFromItsStartToItsEnd) {
  TargetProcessWindows process;
  EXPECT_EQ(process.getProcessId(), 0xFFFFFFFFu);
  EXPECT_EQ(ask(process), "Unknown, Invalid process ID");
  {
    ChildProcess canvix(L"Canvix.exe");
    process.setProcessId(canvix.pid());
    EXPECT_EQ(process.getProcessId(), canvix.pid());
    rights.clear();
    EXPECT_EQ(ask(process), everything);
    std::sort(rights.begin(), rights.end());
    EXPECT_EQ(rights, (std::vector<DWORD>{0x400, 0x400, 0x400, 0x400, 0x410}));
    canvix.end();  // The handle is still held.
    EXPECT_EQ(process.getStatus(), "Terminated");
    EXPECT_NE(process.getStartTime(), 0);
    EXPECT_EQ(process.getThreadCount(), 0u);
  }
  EXPECT_TRUE(test::eventually([&] { return process.getStatus() == "Process does not exist"; }));
  EXPECT_EQ(ask(process), "Unknown, Process does not exist");
  ChildProcess odd(L"Canvix.exe");
  odd.end(STILL_ACTIVE);
  process.setProcessId(odd.pid());
  EXPECT_EQ(process.getStatus(), "Running");
}

TEST(TargetProcessWindows, AProcessThatMayNotBeOpened) {
  SECURITY_ATTRIBUTES nobody{sizeof nobody, nullptr, FALSE};
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:", SDDL_REVISION_1, &nobody.lpSecurityDescriptor,
                                                                   nullptr));
  const ChildProcess canvix(L"Canvix.exe", L"", test::programFolder(), &nobody);
  LocalFree(nobody.lpSecurityDescriptor);
  TargetProcessWindows process;
  process.setProcessId(canvix.pid());
  EXPECT_EQ(ask(process), "Unknown, Access denied to process");
}

TEST(TargetProcessWindows, EachFailingCallCostsItsOwnFigureOnly) {
  TargetProcessWindows process;
  process.setProcessId(GetCurrentProcessId());
  const std::size_t handles = test::openHandles();
  const struct {
    const char* call;
    std::string left;
  } cases[] = {
      {"GetExitCodeProcess", "Canvix.exe, Unable to query process status, start, memory, threads"},
      {"GetProcessTimes", "Canvix.exe, Running, memory, threads"},
      {"K32GetProcessMemoryInfo", "Canvix.exe, Running, start, threads"},
      {"K32GetModuleBaseNameA", "Unknown, Running, start, memory, threads"},
      {"CreateToolhelp32Snapshot", "Canvix.exe, Running, start, memory"},
      {"Thread32First", "Canvix.exe, Running, start, memory"},
      {"none", everything},
  };
  for (const auto& [call, left] : cases) {
    failing = {call};
    EXPECT_EQ(ask(process), left) << call;
  }
  failing.clear();
  EXPECT_EQ(test::openHandles(), handles);
}

// While every call fails, records come with fall-back values, and with the figures again afterwards.
TEST(TargetProcessWindows, TheSessionLogCarriesOnWhateverFails) {
  const test::TempFolder folder;
  CaptureSettings settings;
  settings.processId = GetCurrentProcessId();
  settings.sessionLogPath = (folder / "session.log").wstring();
  settings.metrics = {MetricCode::StartTimesAndIdentity, MetricCode::MemoryUsage, MetricCode::ThreadCount};
  DataCapture capture(std::make_unique<SystemInfoWindows>(), std::make_unique<TargetProcessWindows>(),
                      std::chrono::milliseconds(1));
  const auto lastRecordHas = [&](const std::string& text) {
    const auto lines = test::linesOf(test::readFile(folder / "session.log"));
    return !lines.empty() && lines.back().find(text) != std::string::npos;
  };
  allFail = true;
  capture.start(settings);
  EXPECT_TRUE(test::eventually([&] { return lastRecordHas("\"status\":\"Process does not exist\""); }));
  allFail = false;
  EXPECT_TRUE(test::eventually([&] { return lastRecordHas("\"status\":\"Running\""); }));
  capture.stop(/*processGone=*/false);
}

TEST(TargetProcessWindows, AHundredThousandSamplesLeaveNoHandle) {
  SystemInfoWindows system;
  TargetProcessWindows process;
  process.setProcessId(GetCurrentProcessId());
  const auto sample = [&](int number) {
    std::uint64_t total = 0, used = 0, free = 0;
    EXPECT_EQ(process.getStatus(), "Running");
    EXPECT_TRUE(system.getSwapMemory(total, used, free));
    EXPECT_EQ(total, used + free);
    system.getBatteryPercentage();
    if (number % 100 == 0) {  // What takes longest under Wine.
      EXPECT_TRUE(system.getDiskSpace(total, used, free));
      ask(process);
    }
    rights.clear();
  };
  sample(0);
  const std::size_t before = test::openHandles();
  for (int i = 0; i < 100'000; ++i) {
    sample(i);
  }
  EXPECT_EQ(test::openHandles(), before);
}

}  // namespace
}  // namespace sentiq
