// Providers with figures that the test chooses.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "capture/DataCapture.h"
#include "capture/SentiqSystem.h"
#include "capture/TargetProcess.h"

namespace sentiq::test {

/// What both providers answer, and what they were asked. Must outlive them.
struct FakeFigures {
  std::vector<GpuInfo> adapters;
  std::int64_t startSeconds = 1'600'000'000;
  int failures = 0;                // So many samples fail before the first good one.
  std::vector<std::string> calls;  // Written by the capture thread; only filled when wanted.
  bool keepCalls = false;
  std::atomic<std::uint32_t> pid = 0;
  std::atomic<int> samples = 0;  // Counted at the last question of each.

  void called(const char* what) {
    if (keepCalls) {
      calls.emplace_back(what);
    }
  }
  void waitForSamples(int count) const {
    for (int now = samples; now < count; now = samples) {
      samples.wait(now);
    }
  }
};

class FakeSystem : public SentiqSystem {
 public:
  explicit FakeSystem(FakeFigures& figures) : figures_(figures) {}
  bool getDiskSpace(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) override {
    figures_.called("disk");
    total = 3 << 20;
    used = 2 << 20;
    free = 1 << 20;
    return true;
  }
  void getGpuInfo(std::vector<GpuInfo>& adapters) override {
    figures_.called("gpu");
    adapters = figures_.adapters;
  }
  std::int32_t getBatteryPercentage() override {
    figures_.called("battery");
    return 57;
  }
  bool getSwapMemory(std::uint64_t& /*total*/, std::uint64_t& /*used*/, std::uint64_t& /*free*/) override {
    figures_.called("swap");
    return false;
  }
  std::int64_t getSystemStartTime() override {
    figures_.called("system start");
    return figures_.startSeconds;
  }

 private:
  FakeFigures& figures_;
};

class FakeProcess : public TargetProcess {
 public:
  explicit FakeProcess(FakeFigures& figures) : figures_(figures) {}
  void setProcessId(std::uint32_t pid) override { figures_.pid = pid; }
  std::string getProcessName() override { return figures_.called("name"), "Canvix.exe"; }
  std::uint32_t getProcessId() override { return figures_.called("id"), figures_.pid.load(); }
  std::uint64_t getMemoryUsage() override { return figures_.called("memory"), 5 << 20; }
  double getCpuUsage() override { return figures_.called("cpu"), 0.0; }
  std::int64_t getStartTime() override { return figures_.called("start"), figures_.startSeconds; }
  std::int32_t getFileDescriptorCount() override { return figures_.called("descriptors"), -1; }
  std::uint32_t getThreadCount() override { return figures_.called("threads"), 9; }
  std::string getStatus() override {
    figures_.called("status");
    const bool fails = figures_.samples < figures_.failures;
    ++figures_.samples;
    figures_.samples.notify_all();
    if (fails) {
      throw std::runtime_error("no figures");
    }
    return "Running";
  }

 private:
  FakeFigures& figures_;
};

inline std::unique_ptr<DataCapture> fakeCapture(FakeFigures& figures, std::chrono::milliseconds interval) {
  return std::make_unique<DataCapture>(std::make_unique<FakeSystem>(figures), std::make_unique<FakeProcess>(figures),
                                       interval);
}

}  // namespace sentiq::test
