// On real processes; system calls are replaced to make them fail.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <ctime>

#include "capture/TargetProcessWindows.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"

namespace {

using sentiq::test::real;

std::string failing;  // The name of a call.
DWORD failure = ERROR_INVALID_PARAMETER;
std::vector<DWORD> rights;  // Asked for since the last look.
int handles = 0;            // Opened and not closed.
DWORD openedPid = 0;
int threadsTold = 0;

template <typename Call, typename... Arguments>
auto call(const char* name, Arguments... arguments) {
  const auto system = real<Call>(L"kernel32", name);
  SetLastError(failure);
  return failing == name ? decltype(system(arguments...)){} : system(arguments...);
}

}  // namespace

extern "C" {
decltype(&OpenProcess) __imp_OpenProcess = [](DWORD access, BOOL inherit, DWORD pid) {
  rights.push_back(access);
  openedPid = pid;
  EXPECT_FALSE(inherit);
  const HANDLE process = call<decltype(&OpenProcess)>("OpenProcess", access, inherit, pid);
  handles += process != nullptr;
  return process;
};
decltype(&CloseHandle) __imp_CloseHandle = [](HANDLE handle) {
  --handles;
  return call<decltype(&CloseHandle)>("CloseHandle", handle);
};
decltype(&GetExitCodeProcess) __imp_GetExitCodeProcess = [](HANDLE process, DWORD* code) {
  return call<decltype(&GetExitCodeProcess)>("GetExitCodeProcess", process, code);
};
decltype(&GetProcessTimes) __imp_GetProcessTimes = [](HANDLE process, FILETIME* created, FILETIME* exited,
                                                      FILETIME* kernel, FILETIME* user) {
  return call<decltype(&GetProcessTimes)>("GetProcessTimes", process, created, exited, kernel, user);
};
BOOL WINAPI K32GetProcessMemoryInfo(HANDLE process, PROCESS_MEMORY_COUNTERS* counters, DWORD size) {
  EXPECT_EQ(size, 80u);
  counters->WorkingSetSize = 4711;
  return failing != "K32GetProcessMemoryInfo" && process != nullptr;
}
// The system answers only who may also read the process's memory, and that right is not asked for.
DWORD WINAPI K32GetModuleBaseNameA(HANDLE, HMODULE module, char* name, DWORD size) {
  EXPECT_EQ(module, nullptr);
  EXPECT_EQ(size, 260u);
  return failing == "K32GetModuleBaseNameA" ? 0 : static_cast<DWORD>(std::string("Canvix.exe").copy(name, size));
}
HANDLE WINAPI CreateToolhelp32Snapshot(DWORD flags, DWORD) {
  EXPECT_EQ(flags, 4u);
  ++handles;
  return CreateEventW(nullptr, FALSE, FALSE, nullptr);
}
// Of five threads the first, the third and the fifth are those of the process that was opened last.
BOOL WINAPI Thread32Next(HANDLE, THREADENTRY32* entry) {
  entry->th32OwnerProcessID = ++threadsTold % 2 == 0 ? 0 : openedPid;
  return threadsTold <= 5;
}
BOOL WINAPI Thread32First(HANDLE snapshot, THREADENTRY32* entry) {
  EXPECT_EQ(entry->dwSize, 28u);
  threadsTold = 0;
  return Thread32Next(snapshot, entry) && failing != "Thread32First";
}
}

namespace sentiq {
namespace {

using test::ChildProcess;

// What can be told of a process: texts and figures as they are, of the start whether there was one.
std::string ask(TargetProcessWindows& process) {
  EXPECT_EQ(process.getCpuUsage(), 0.0);
  EXPECT_EQ(process.getFileDescriptorCount(), -1);
  const std::int64_t start = process.getStartTime();
  EXPECT_TRUE(start == 0 || std::abs(std::time(nullptr) - start) < 300) << start;
  return process.getProcessName() + ", " + process.getStatus() + (start != 0 ? ", start, " : ", ") +
         std::to_string(process.getMemoryUsage()) + ", " + std::to_string(process.getThreadCount());
}

TEST(TargetProcessWindows, FollowsAProcessFromItsStartToItsEnd) {
  TargetProcessWindows process;
  EXPECT_EQ(process.getProcessId(), 0xFFFFFFFFu);
  EXPECT_EQ(ask(process), "Unknown, Invalid process ID, 0, 0");
  {
    ChildProcess canvix(L"Canvix.exe");
    process.setProcessId(canvix.pid());
    EXPECT_EQ(process.getProcessId(), canvix.pid());
    rights.clear();
    EXPECT_EQ(ask(process), "Canvix.exe, Running, start, 4711, 3");
    EXPECT_THAT(rights, testing::UnorderedElementsAre(0x400, 0x400, 0x400, 0x400, 0x410));
    canvix.end();  // Its handle is still held.
    EXPECT_EQ(ask(process), "Canvix.exe, Terminated, start, 4711, 3");
  }
  EXPECT_TRUE(test::eventually([&] { return process.getStatus() == "Process does not exist"; }));
  EXPECT_EQ(ask(process), "Unknown, Process does not exist, 0, 0");
}

TEST(TargetProcessWindows, EachFailingCallCostsItsOwnFigureOnly) {
  ChildProcess canvix(L"Canvix.exe");
  canvix.end(STILL_ACTIVE);  // Reads as running.
  TargetProcessWindows process;
  process.setProcessId(GetCurrentProcessId());
  const struct {
    const char* call;
    std::string left;
  } cases[] = {
      {"OpenProcess", "Unknown, Access denied to process, 0, 0"},
      {"GetExitCodeProcess", "Canvix.exe, Unable to query process status, start, 4711, 3"},
      {"GetProcessTimes", "Canvix.exe, Running, 4711, 3"},
      {"K32GetProcessMemoryInfo", "Canvix.exe, Running, start, 0, 3"},
      {"K32GetModuleBaseNameA", "Unknown, Running, start, 4711, 3"},
      {"Thread32First", "Canvix.exe, Running, start, 4711, 0"},
  };
  failure = ERROR_ACCESS_DENIED;
  const int before = handles;
  for (const auto& [call, left] : cases) {
    failing = call;
    EXPECT_EQ(ask(process), left) << call;
  }
  failing = "";
  EXPECT_EQ(handles, before);
  process.setProcessId(canvix.pid());
  EXPECT_EQ(process.getStatus(), "Running");
}

}  // namespace
}  // namespace sentiq
