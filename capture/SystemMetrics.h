#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "capture/SentiqSystem.h"

namespace sentiq {

/// One sample of the machine. What was not collected keeps the value that stands here.
struct SystemMetrics {
  std::uint64_t totalDiskSpace = 0;  // Bytes, all of them.
  std::uint64_t usedDiskSpace = 0;
  std::uint64_t freeDiskSpace = 0;
  std::vector<GpuInfo> gpuInfo;
  std::int32_t batteryPercentage = -1;  // As SentiqSystem::getBatteryPercentage.
  std::string systemStartTime;          // "%b %d %H:%M:%S", local time.
  std::string systemUpTime;             // As elapsedTimeText.
  std::uint64_t totalSwapMemory = 0;
  std::uint64_t usedSwapMemory = 0;
  std::uint64_t freeSwapMemory = 0;
  std::string fgProcessName;
};

}  // namespace sentiq
