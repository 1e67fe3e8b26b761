// Whether ten thousand samples and a thousand dumps of the event log leave anything behind in the process.
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "capture/MetricCode.h"
#include "capture/MetricRecord.h"
#include "capture/SystemInfoWindows.h"
#include "capture/TargetProcessWindows.h"
#include "logging/UniqueHandle.h"
#include "logging/WatchdogLog.h"
#include "watchdog/EventLogReader.h"

namespace {

struct Holdings {
  DWORD handles = 0;
  unsigned threads = 0;
  double privateMebibytes = 0;
};

Holdings holdings() {
  Holdings now;
  GetProcessHandleCount(GetCurrentProcess(), &now.handles);
  PROCESS_MEMORY_COUNTERS_EX memory{};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
  now.privateMebibytes = static_cast<double>(memory.PrivateUsage) / 1048576;
  const sentiq::FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Thread32First(snapshot.get(), &entry); more; more = Thread32Next(snapshot.get(), &entry)) {
    now.threads += entry.th32OwnerProcessID == GetCurrentProcessId();
  }
  return now;
}

void sample() {
  sentiq::SystemInfoWindows system;
  sentiq::TargetProcessWindows process;
  process.setProcessId(GetCurrentProcessId());
  sentiq::SystemMetrics systemMetrics;
  sentiq::ProcessMetrics processMetrics;
  system.getDiskSpace(systemMetrics.totalDiskSpace, systemMetrics.usedDiskSpace, systemMetrics.freeDiskSpace);
  system.getSwapMemory(systemMetrics.totalSwapMemory, systemMetrics.usedSwapMemory, systemMetrics.freeSwapMemory);
  systemMetrics.batteryPercentage = system.getBatteryPercentage();
  processMetrics.status = process.getStatus();
  processMetrics.processName = process.getProcessName();
  std::string record;
  sentiq::buildMetricRecord(systemMetrics, processMetrics, record, sentiq::defaultMetricSelection());
}

// The first tenth warms up what the system and the runtime library keep.
template <typename Work>
void measure(const char* what, int times, Work work) {
  for (int i = 0; i < times / 10; ++i) {
    work();
  }
  const Holdings before = holdings();
  for (int i = 0; i < times; ++i) {
    work();
  }
  const Holdings after = holdings();
  std::printf("growth over %s|-|%+ld handles, %+d threads, %+.2f MiB private|none|\n", what,
              static_cast<long>(after.handles) - static_cast<long>(before.handles),
              static_cast<int>(after.threads) - static_cast<int>(before.threads),
              after.privateMebibytes - before.privateMebibytes);
}

}  // namespace

int main() {
  const auto log = std::filesystem::temp_directory_path() / "sentiq-growth.log";
  sentiq::configureWatchdogLog(1, log.wstring(), L"", true);
  // Adapters apart: under Wine each look at them starts a graphics library.
  measure("10,000 samples without adapters", 10'000, sample);
  measure("200 looks at the adapters", 200, [] {
    std::vector<sentiq::GpuInfo> adapters;
    sentiq::SystemInfoWindows().getGpuInfo(adapters);
  });
  measure("1,000 dumps of the event log", 1'000, [&] {
    sentiq::dumpEventLogs();
    sentiq::truncateLog(sentiq::LogTarget::WatchdogLog);
  });
  std::filesystem::remove(log);
}
