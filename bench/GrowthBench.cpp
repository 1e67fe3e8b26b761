// Whether ten thousand samples and a thousand dumps of the event log leave anything behind in the process.
#include <windows.h>

#include <psapi.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include <winternl.h>

#include "bench/MemoryEventLog.h"
#include "capture/CaptureSettings.h"
#include "capture/DataCapture.h"
#include "capture/MetricCode.h"
#include "capture/SystemInfoWindows.h"
#include "capture/TargetProcessWindows.h"
#include "logging/WatchdogLog.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/TestFiles.h"
#include "watchdog/EventLogReader.h"

namespace {

// How many handles this process holds. Not GetProcessHandleCount: Wine's always says 0.
std::size_t openHandles() {
  struct Entry {
    void* object;
    ULONG_PTR processId, handle;
    ULONG access;
    USHORT backTraceIndex, typeIndex;
    ULONG attributes, reserved;
  };
  struct Handles {
    ULONG_PTR count, reserved;
    Entry entries[1];
  };
  using Query = NTSTATUS(NTAPI*)(int kind, void* buffer, ULONG size, ULONG* needed);
  constexpr int extendedHandleInformation = 64;
  static const auto query = sentiq::test::real<Query>(L"ntdll", "NtQuerySystemInformation");
  std::vector<std::byte> buffer(std::size_t{1} << 22);
  query(extendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr);
  const auto* const handles = reinterpret_cast<const Handles*>(buffer.data());
  std::size_t own = 0;
  for (ULONG_PTR i = 0; i < handles->count; ++i) {
    own += handles->entries[i].processId == GetCurrentProcessId();
  }
  return own;
}

struct Holdings {
  std::size_t handles = 0;
  unsigned threads = 0;
  double privateMebibytes = 0;
};

Holdings holdings() {
  Holdings now;
  now.handles = openHandles();
  PROCESS_MEMORY_COUNTERS memory{};
  GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
  now.privateMebibytes = static_cast<double>(memory.PagefileUsage) / 1048576;  // Wine leaves PrivateUsage at 0.
  sentiq::TargetProcessWindows self;
  self.setProcessId(GetCurrentProcessId());
  now.threads = self.getThreadCount();
  return now;
}

// Adapters apart: under Wine each look at them starts a graphics library.
class SystemWithoutAdapters : public sentiq::SystemInfoWindows {
 public:
  explicit SystemWithoutAdapters(std::atomic<int>& samples) : samples_(samples) {}
  void getGpuInfo(std::vector<sentiq::GpuInfo>& /*adapters*/) override { ++samples_; }

 private:
  std::atomic<int>& samples_;
};

// Through the capture loop, without its pauses, into a session log; the program watches itself.
void takeSamples(int count, const std::filesystem::path& log) {
  std::atomic<int> samples = 0;
  sentiq::DataCapture capture(std::make_unique<SystemWithoutAdapters>(samples),
                              std::make_unique<sentiq::TargetProcessWindows>(), std::chrono::milliseconds(0));
  sentiq::CaptureSettings settings;
  settings.processId = GetCurrentProcessId();
  settings.sessionLogPath = log.wstring();
  settings.metrics = sentiq::defaultMetricSelection();
  capture.start(settings);
  while (samples < count) {
    Sleep(10);
  }
  capture.stop(/*processGone=*/false);
}

void lookAtAdapters(int times) {
  for (int i = 0; i < times; ++i) {
    std::vector<sentiq::GpuInfo> adapters;
    sentiq::SystemInfoWindows().getGpuInfo(adapters);
  }
}

void dump(int times) {
  for (int i = 0; i < times; ++i) {
    sentiq::dumpEventLogs();
    sentiq::truncateLog(sentiq::LogTarget::WatchdogLog);
  }
}

// The first tenth warms up what the system and the runtime library keep.
void measure(const char* what, int times, const std::function<void(int)>& work) {
  work(times / 10);
  const Holdings before = holdings();
  work(times);
  const Holdings after = holdings();
  std::printf("growth over %s|-|%+ld handles, %+d threads, %+.2f MiB private|none|\n", what,
              static_cast<long>(after.handles) - static_cast<long>(before.handles),
              static_cast<int>(after.threads) - static_cast<int>(before.threads),
              after.privateMebibytes - before.privateMebibytes);
}

}  // namespace

int main() {
  const sentiq::test::TempFolder folder;
  sentiq::configureWatchdogLog(1, (folder / "watchdog.log").wstring(), L"", true);
  measure("10,000 samples without adapters", 10'000, [&](int times) { takeSamples(times, folder / "session.log"); });
  measure("200 looks at the adapters", 200, lookAtAdapters);
  sentiq::bench::fillEventLog(20);
  measure("1,000 dumps of 40 events", 1'000, dump);
}
