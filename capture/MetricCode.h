// What a sample can hold, and which of it a capture asks for.
#pragma once

#include <cstdint>
#include <set>

namespace sentiq {

/// The values are fixed by whoever hands in a selection; 9 means nothing.
enum class MetricCode : std::int32_t {
  StartTimesAndIdentity = 0,  // System start and up-time; the process's name, id and running time.
  DiskSpace = 1,
  Gpu = 2,
  MemoryUsage = 3,
  CpuUsage = 4,
  Battery = 5,
  SwapMemory = 6,
  ThreadCount = 7,
  FileDescriptors = 8,
  ForegroundProcess = 10,
  All = 11,
};

using MetricSelection = std::set<MetricCode>;

inline bool isSelected(const MetricSelection& selection, MetricCode code) {
  return selection.contains(code) || selection.contains(MetricCode::All);
}

/// What the program captures; no option changes it.
inline MetricSelection defaultMetricSelection() {
  return {MetricCode::StartTimesAndIdentity,
          MetricCode::DiskSpace,
          MetricCode::Gpu,
          MetricCode::Battery,
          MetricCode::SwapMemory,
          MetricCode::ForegroundProcess};
}

}  // namespace sentiq
