// On real processes; system calls are replaced to make them fail.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <ctime>

#include "capture/TargetProcessWindows.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"

static std::string failing;  // The name of a call.
static DWORD failure = ERROR_INVALID_PARAMETER;
static std::vector<DWORD> rights;  // Asked for since the last look.
static int handles = 0;            // Opened and not closed.
static DWORD openedPid = 0, threadsTold = 0;

// The system's call, unless it is to fail.
template <typename Call, typename... Arguments>
static auto call(const char* name, Arguments... arguments) {
  SetLastError(failure);
  const auto system = sentiq::test::real<Call>(L"kernel32", name);
  return failing == name ? decltype(system(arguments...)){} : system(arguments...);
}

extern "C" {
decltype(&OpenProcess) __imp_OpenProcess = [](DWORD access, BOOL inherit, DWORD pid) {
  rights.push_back(access + (inherit ? 1 : 0));
  openedPid = pid;
  const HANDLE process = call<decltype(&OpenProcess)>("OpenProcess", access, inherit, pid);
  handles += process != nullptr;
  return process;
};
decltype(&CloseHandle) __imp_CloseHandle = [](HANDLE handle) {
  --handles;
  return call<decltype(&CloseHandle)>("CloseHandle", handle);
};
decltype(&GetExitCodeProcess) __imp_GetExitCodeProcess = [](auto... arguments) {
  return call<decltype(&GetExitCodeProcess)>("GetExitCodeProcess", arguments...);
};
decltype(&GetProcessTimes) __imp_GetProcessTimes = [](auto... arguments) {
  return call<decltype(&GetProcessTimes)>("GetProcessTimes", arguments...);
};
BOOL WINAPI K32GetProcessMemoryInfo(HANDLE, PROCESS_MEMORY_COUNTERS* counters, DWORD size) {
  counters->WorkingSetSize = size;
  counters->PeakWorkingSetSize = counters->PagefileUsage = 1;
  return failing != "K32GetProcessMemoryInfo";
}
// The system answers only who may also read the process's memory, and that right is not asked for.
DWORD WINAPI K32GetModuleBaseNameA(HANDLE, HMODULE module, char* name, DWORD size) {
  const bool fails = failing == "K32GetModuleBaseNameA" || module != nullptr || size != 260;
  return fails ? 0 : static_cast<DWORD>(std::string("Canvix.exe").copy(name, size));
}
HANDLE WINAPI CreateToolhelp32Snapshot(DWORD flags, DWORD) {
  ++handles;
  return flags == 4 ? CreateEventW(nullptr, FALSE, FALSE, nullptr) : INVALID_HANDLE_VALUE;
}
// Of five threads the first, the third and the fifth are those of the process that was opened last.
BOOL WINAPI Thread32Next(HANDLE, THREADENTRY32* entry) {
  entry->th32OwnerProcessID = ++threadsTold % 2 == 0 ? 0 : openedPid;
  return threadsTold <= 5;
}
BOOL WINAPI Thread32First(HANDLE snapshot, THREADENTRY32* entry) {
  threadsTold = 0;
  return Thread32Next(snapshot, entry) && entry->dwSize == 28 && failing != "Thread32First";
}
}

namespace sentiq {

// What can be told of a process: texts and figures as they are, of the start whether there was one.
static std::string ask(TargetProcessWindows& process) {
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
    EXPECT_EQ(ask(process), "Canvix.exe, Running, start, 80, 3");
    EXPECT_THAT(rights, UnorderedElementsAre(0x400, 0x400, 0x400, 0x400, 0x410));
    canvix.end(7);  // Its handle is still held.
    EXPECT_EQ(ask(process), "Canvix.exe, Terminated, start, 80, 3");
  }
  EXPECT_TRUE(eventually([&] { return process.getStatus() == "Process does not exist"; }));
  EXPECT_EQ(ask(process), "Unknown, Process does not exist, 0, 0");
}

TEST(TargetProcessWindows, EachFailingCallCostsItsOwnFigureOnly) {
  ChildProcess canvix(L"Canvix.exe");
  canvix.end(STILL_ACTIVE);  // Reads as running.
  TargetProcessWindows process;
  process.setProcessId(canvix.pid());
  failure = ERROR_ACCESS_DENIED;
  const int before = handles;
  const std::pair<const char*, const char*> cases[] = {
      {"OpenProcess", "Unknown, Access denied to process, 0, 0"},
      {"GetExitCodeProcess", "Canvix.exe, Unable to query process status, start, 80, 3"},
      {"GetProcessTimes", "Canvix.exe, Running, 80, 3"},
      {"K32GetProcessMemoryInfo", "Canvix.exe, Running, start, 0, 3"},
      {"K32GetModuleBaseNameA", "Unknown, Running, start, 80, 3"},
      {"Thread32First", "Canvix.exe, Running, start, 80, 0"},
  };
  for (const auto& [name, left] : cases) {
    failing = name;
    EXPECT_EQ(ask(process), left) << name;
  }
  failing = "";
  EXPECT_EQ(handles, before);
}

}  // namespace sentiq
