#pragma once

#include <cstdint>
#include <string>

namespace sentiq {

/// One sample of the monitored process. What was not collected keeps the value that stands here.
struct ProcessMetrics {
  std::uint32_t processId = 0;
  std::string processName;        // Collected, but no part of the record.
  std::uint64_t memoryUsage = 0;  // Bytes.
  double cpuUsage = 0.0;
  std::string status;
  std::string appStartTime;  // As elapsedTimeText: how long the process runs, in spite of the name.
  std::int32_t fileDescriptors = 0;
  std::int32_t threadCount = 0;
};

}  // namespace sentiq
