// With the system's answers replaced; that it answers so is seen in the records of the whole program.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include "capture/TargetProcessWindows.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"

static std::string failing;  // The name of a call.
static DWORD openError = 0, exitCode = STILL_ACTIVE, threadsTold = 0;
static std::vector<DWORD> rights;  // Asked for since the last look.
static int handles = 0;            // Opened and not closed.
static const auto opened = reinterpret_cast<HANDLE>(INT_PTR{0x5E1});

extern "C" {
constinit decltype(&OpenProcess) __imp_OpenProcess = [](DWORD access, BOOL inherit, DWORD) {
  rights.push_back(access + (inherit ? 1 : 0));
  SetLastError(openError);
  return openError == 0 ? (++handles, opened) : nullptr;
};
constinit decltype(&CloseHandle) __imp_CloseHandle = [](HANDLE handle) {
  const auto close = sentiq::test::real<decltype(&CloseHandle)>(L"kernel32", "CloseHandle");
  return handle == opened ? (--handles, TRUE) : close(handle);
};
constinit decltype(&GetExitCodeProcess) __imp_GetExitCodeProcess = [](HANDLE, DWORD* code) -> BOOL {
  *code = exitCode;
  return failing != "GetExitCodeProcess";
};
// The last moment of a second: 1'600'000'000 after 1970.
constinit decltype(&GetProcessTimes) __imp_GetProcessTimes = [](HANDLE, auto created, auto exited, auto kernel,
                                                                auto user) -> BOOL {
  constexpr std::uint64_t ticks = 13'244'473'601 * 10'000'000 - 1;
  *exited = *kernel = *user = {1, 2};
  *created = {static_cast<DWORD>(ticks), ticks >> 32};
  return failing != "GetProcessTimes";
};
BOOL WINAPI K32GetProcessMemoryInfo(HANDLE, PROCESS_MEMORY_COUNTERS* counters, DWORD size) {
  *counters = {size, 1, 1, size, 1, 1, 1, 1, 1, 1};
  return failing != "K32GetProcessMemoryInfo";
}
DWORD WINAPI K32GetModuleBaseNameA(HANDLE, HMODULE module, char* name, DWORD size) {
  const bool fails = failing == "K32GetModuleBaseNameA" || module != nullptr || size != 260;
  return fails ? 0 : static_cast<DWORD>(std::string("Canvix.exe").copy(name, size));
}
HANDLE WINAPI CreateToolhelp32Snapshot(DWORD flags, DWORD) {
  return flags == 4 && failing != "CreateToolhelp32Snapshot" ? (++handles, opened) : INVALID_HANDLE_VALUE;
}
// Of five threads the first, the third and the fifth are those of process 4242.
BOOL WINAPI Thread32Next(HANDLE, THREADENTRY32* entry) {
  entry->th32OwnerProcessID = ++threadsTold % 2 == 0 ? 0 : 4242;
  return threadsTold <= 5;
}
BOOL WINAPI Thread32First(HANDLE snapshot, THREADENTRY32* entry) {
  threadsTold = 0;
  return snapshot == opened && Thread32Next(snapshot, entry) && entry->dwSize == 28 && failing != "Thread32First";
}
}

namespace sentiq {

static std::string ask(TargetProcessWindows& process) {
  return process.getProcessName() + ", " + process.getStatus() +
         PrintToString(std::tuple(process.getStartTime(), process.getMemoryUsage(), process.getThreadCount(),
                                  process.getCpuUsage(), process.getFileDescriptorCount()));
}

TEST(TargetProcessWindows, EachFailingCallCostsItsOwnFigureOnly) {
  TargetProcessWindows process;
  EXPECT_EQ(process.getProcessId(), 0xFFFFFFFFu);
  openError = ERROR_INVALID_PARAMETER;
  EXPECT_EQ(ask(process), "Unknown, Invalid process ID(0, 0, 0, 0, -1)");
  process.setProcessId(4242);
  EXPECT_EQ(process.getProcessId(), 4242u);
  const std::tuple<std::string, DWORD, DWORD, std::string> cases[] = {
      {"", 0, STILL_ACTIVE, "Canvix.exe, Running(1600000000, 80, 3, 0, -1)"},
      {"", 0, 0, "Canvix.exe, Terminated(1600000000, 80, 3, 0, -1)"},
      {"", ERROR_ACCESS_DENIED, 0, "Unknown, Access denied to process(0, 0, 0, 0, -1)"},
      {"", ERROR_INVALID_PARAMETER, 0, "Unknown, Process does not exist(0, 0, 0, 0, -1)"},
      {"GetExitCodeProcess", 0, 0, "Canvix.exe, Unable to query process status(1600000000, 80, 3, 0, -1)"},
      {"GetProcessTimes", 0, 0, "Canvix.exe, Terminated(0, 80, 3, 0, -1)"},
      {"K32GetProcessMemoryInfo", 0, 0, "Canvix.exe, Terminated(1600000000, 0, 3, 0, -1)"},
      {"K32GetModuleBaseNameA", 0, 0, "Unknown, Terminated(1600000000, 80, 3, 0, -1)"},
      {"CreateToolhelp32Snapshot", 0, 0, "Canvix.exe, Terminated(1600000000, 80, 0, 0, -1)"},
      {"Thread32First", 0, 0, "Canvix.exe, Terminated(1600000000, 80, 0, 0, -1)"},
  };
  for (const auto& [call, error, code, expected] : cases) {
    failing = call;
    openError = error;
    exitCode = code;
    rights.clear();
    EXPECT_EQ(ask(process), expected) << call;
    EXPECT_THAT(rights, UnorderedElementsAre(0x400, 0x400, 0x400, 0x400, 0x410));
    EXPECT_EQ(handles, 0);
  }
}

}  // namespace sentiq
