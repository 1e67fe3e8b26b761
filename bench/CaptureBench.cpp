// Processor time of the program's own work for one sample: the providers are fakes that answer at once.
#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>
#include <thread>

#include <benchmark/benchmark.h>

#include "bench/FakeProviders.h"
#include "capture/CaptureSettings.h"
#include "capture/DataCapture.h"
#include "capture/MetricCode.h"
#include "capture/MetricRecord.h"
#include "capture/ProcessMetrics.h"
#include "capture/SystemMetrics.h"
#include "tests/support/TestFiles.h"

namespace {

using namespace std::chrono_literals;

std::vector<sentiq::GpuInfo> twoAdapters() {
  sentiq::GpuInfo adapter;
  adapter.name = "Graphics Adapter 4000";
  adapter.dedicatedVideoMemory = 8ULL << 30;
  return {adapter, adapter};
}

void metricRecord(benchmark::State& state) {
  sentiq::SystemMetrics system;
  system.gpuInfo = twoAdapters();
  system.totalDiskSpace = 512ULL << 30;
  system.usedDiskSpace = 384ULL << 30;
  system.freeDiskSpace = 128ULL << 30;
  system.totalSwapMemory = 32ULL << 30;
  system.usedSwapMemory = 16ULL << 30;
  system.freeSwapMemory = 16ULL << 30;
  system.batteryPercentage = 57;
  system.systemStartTime = "Nov 16 02:13:25";
  system.systemUpTime = "2 03:04:05";
  sentiq::ProcessMetrics process;
  process.processId = 4242;
  process.status = "Running";
  process.appStartTime = "0 00:00:59";
  const sentiq::MetricSelection selection = sentiq::defaultMetricSelection();
  for (auto _ : state) {
    std::string text;
    sentiq::buildMetricRecord(system, process, text, selection);
    benchmark::DoNotOptimize(text);
  }
}

// The whole way through the capture loop: ask, build, encode, append to the file. A thousand samples at a time, so
// that starting and joining the thread does not count.
void wholeSample(benchmark::State& state) {
  const sentiq::test::TempFolder folder;
  sentiq::CaptureSettings settings;
  settings.processId = 4242;
  settings.sessionLogPath = (folder / "session.log").wstring();
  settings.encodeLogs = true;
  settings.metrics = sentiq::defaultMetricSelection();
  for (auto _ : state) {
    sentiq::test::FakeFigures figures;
    figures.adapters = twoAdapters();
    const auto capture = sentiq::test::fakeCapture(figures, 0ms);
    const std::clock_t before = std::clock();
    capture->start(settings);
    while (figures.samples < 1000) {
      std::this_thread::sleep_for(1ms);
    }
    capture->stop(/*processGone=*/true);
    state.SetIterationTime(static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / figures.samples);
  }
}

}  // namespace

BENCHMARK(metricRecord);
BENCHMARK(wholeSample)->UseManualTime()->Iterations(20);
