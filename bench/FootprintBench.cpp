// What a running watch takes of the machine, beside a program that does nothing.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "bench/Median.h"
#include "capture/TargetProcessWindows.h"
#include "logging/UniqueHandle.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"

namespace {

using namespace std::chrono_literals;
using sentiq::test::ChildProcess;
using Clock = std::chrono::steady_clock;

struct Watch {
  sentiq::test::TempFolder folder;
  std::filesystem::path session = folder / "session.log";
  ChildProcess sentiq;

  explicit Watch(DWORD pid)
      : sentiq(L"CanvixSentiq.exe", L"--encode-logs 0 --pid " + std::to_wstring(pid) + L" --sentiq-logs-path " +
                                        session.wstring() + L" --watchdog-logs-path " +
                                        (folder / "watchdog.log").wstring()) {}

  void waitForLines(std::size_t lines) const {
    while (sentiq::test::linesOf(sentiq::test::readFile(session)).size() < lines) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
};

unsigned threadsOf(DWORD pid) {
  sentiq::TargetProcessWindows process;
  process.setProcessId(pid);
  return process.getThreadCount();
}

std::wstring modulesOf(DWORD pid) {
  const sentiq::FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, pid));
  MODULEENTRY32W entry{};
  entry.dwSize = sizeof entry;
  std::wstring names;
  for (BOOL more = Module32FirstW(snapshot.get(), &entry); more; more = Module32NextW(snapshot.get(), &entry)) {
    const std::wstring name = entry.szModule;
    if (name.find(L".exe") == std::wstring::npos) {
      names += L" " + name;
    }
  }
  return names;
}

double millisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double peakMebibytes(const ChildProcess& process) {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(process.handle(), &counters, sizeof counters);
  return static_cast<double>(counters.PeakWorkingSetSize) / 1048576;
}

// Under Wine a look at the adapters loads the host's graphics driver into the process, in this program as in any.
void peakWorkingSet() {
  const ChildProcess canvix(L"Canvix.exe");
  const Watch watch(canvix.pid());
  watch.waitForLines(4);
  const DWORD pid = watch.sentiq.pid();
  for (const bool looks : {false, true}) {
    const ChildProcess empty(L"EmptyProgram.exe",
                             std::to_wstring(threadsOf(pid) - 1) + (looks ? L" looks" : L" stays") + modulesOf(pid));
    std::this_thread::sleep_for(5s);
    const double own = peakMebibytes(watch.sentiq);
    const double beside = peakMebibytes(empty);
    std::printf(
        "peak working set of a running watch (%u threads)|empty windowed program, same DLLs and threads%s|"
        "%.2f times|at most 1.3 times|%.1f MiB beside %.1f MiB\n",
        threadsOf(pid), looks ? ", one look at the adapters" : "", own / beside, own, beside);
  }
}

void processorTime() {
  const ChildProcess canvix(L"Canvix.exe");
  const Watch watch(canvix.pid());
  std::this_thread::sleep_for(2min);
  FILETIME creation, exit, kernel, user;
  GetProcessTimes(watch.sentiq.handle(), &creation, &exit, &kernel, &user);
  const auto seconds = [](const FILETIME& time) {
    return static_cast<double>(static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime) / 1e7;
  };
  const double used = seconds(kernel) + seconds(user);
  std::printf(
      "processor time of an hour of watching (30 times that of two minutes, start included)|-|%.2f s|"
      "below 1 s|%.0f ms in two minutes\n",
      used * 30, used * 1000);
}

void startUp() {
  const ChildProcess canvix(L"Canvix.exe");
  std::this_thread::sleep_for(3s);
  std::vector<double> ratios, header, empty;
  for (int round = 0; round < 21; ++round) {
    auto start = Clock::now();
    ChildProcess(L"EmptyProgram.exe").wait(1min);
    empty.push_back(millisecondsSince(start));
    start = Clock::now();
    const Watch watch(canvix.pid());
    watch.waitForLines(1);
    header.push_back(millisecondsSince(start));
    ratios.push_back(header.back() / empty.back());
  }
  using sentiq::bench::median;
  std::printf(
      "start to the first header line|an empty windowed program's start to end|%.2f times|at most 1.5 times|%.0f ms "
      "beside %.0f ms\n",
      median(ratios), median(header), median(empty));
}

}  // namespace

int main(int argc, char**) {
  startUp();
  peakWorkingSet();
  if (argc == 1) {  // Any argument leaves the two minutes out.
    processorTime();
  }
}
