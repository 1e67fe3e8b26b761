#include "capture/TargetProcessWindows.h"

#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <array>

#include "logging/FileTime.h"
#include "logging/UniqueHandle.h"

namespace sentiq {
namespace {

KernelHandle openProcess(DWORD access, std::uint32_t pid) {
  return KernelHandle(OpenProcess(access, /*bInheritHandle=*/FALSE, pid));
}

}  // namespace

void TargetProcessWindows::setProcessId(std::uint32_t pid) {
  processId_ = pid;
}

std::string TargetProcessWindows::getProcessName() {
  const std::uint32_t pid = processId_;
  if (pid == noProcess) {
    return "Unknown";
  }
  const KernelHandle process = openProcess(PROCESS_QUERY_INFORMATION, pid);
  std::array<char, MAX_PATH> name = {};
  if (!process ||
      K32GetModuleBaseNameA(process.get(), /*hModule=*/nullptr, name.data(), static_cast<DWORD>(name.size())) == 0) {
    return "Unknown";
  }
  return name.data();
}

std::uint32_t TargetProcessWindows::getProcessId() {
  return processId_;
}

std::uint64_t TargetProcessWindows::getMemoryUsage() {
  const KernelHandle process = openProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, processId_);
  PROCESS_MEMORY_COUNTERS_EX counters = {};
  static_assert(sizeof counters == 80);
  if (!process || K32GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                                          sizeof counters) == FALSE) {
    return 0;
  }
  return counters.WorkingSetSize;
}

double TargetProcessWindows::getCpuUsage() {
  return 0.0;
}

std::string TargetProcessWindows::getStatus() {
  const std::uint32_t pid = processId_;
  if (pid == noProcess) {
    return "Invalid process ID";
  }
  KernelHandle process = openProcess(PROCESS_QUERY_INFORMATION, pid);
  if (!process) {
    return GetLastError() == ERROR_ACCESS_DENIED ? "Access denied to process" : "Process does not exist";
  }
  DWORD exitCode = 0;
  const bool answered = GetExitCodeProcess(process.get(), &exitCode) != FALSE;
  process.reset();
  if (!answered) {
    return "Unable to query process status";
  }
  return exitCode == STILL_ACTIVE ? "Running" : "Terminated";
}

std::int64_t TargetProcessWindows::getStartTime() {
  const std::uint32_t pid = processId_;
  if (pid == noProcess) {
    return 0;
  }
  const KernelHandle process = openProcess(PROCESS_QUERY_INFORMATION, pid);
  FILETIME created = {};
  FILETIME exited = {};
  FILETIME inKernel = {};
  FILETIME inUser = {};
  if (!process || GetProcessTimes(process.get(), &created, &exited, &inKernel, &inUser) == FALSE) {
    return 0;
  }
  return toSeconds(created);
}

std::int32_t TargetProcessWindows::getFileDescriptorCount() {
  return -1;
}

// A snapshot holds the threads of the whole system, whatever process it is asked for.
std::uint32_t TargetProcessWindows::getThreadCount() {
  const std::uint32_t pid = processId_;
  if (pid == noProcess) {
    return 0;
  }
  const KernelHandle process = openProcess(PROCESS_QUERY_INFORMATION, pid);
  if (!process) {
    return 0;
  }
  const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, pid));
  if (!snapshot) {
    return 0;
  }
  THREADENTRY32 thread = {};
  static_assert(sizeof thread == 28);
  thread.dwSize = sizeof thread;
  std::uint32_t count = 0;
  for (BOOL more = Thread32First(snapshot.get(), &thread); more != FALSE;
       more = Thread32Next(snapshot.get(), &thread)) {
    if (thread.th32OwnerProcessID == pid) {
      ++count;
    }
  }
  return count;
}

}  // namespace sentiq
