#include "capture/MetricRecord.h"

#include <cstdint>
#include <cstdio>
#include <exception>

#include <nlohmann/json.hpp>

#include "capture/SentiqSystem.h"
#include "logging/TimeText.h"

namespace sentiq {
namespace {

using nlohmann::json;

constexpr std::uint64_t mebibytes(std::uint64_t bytes) {
  return bytes >> 20;
}

json batteryValue(std::int32_t percentage) {
  switch (percentage) {
    case -2:
      return "No battery";
    case -1:
      return "Unknown";
    default:
      return percentage;
  }
}

void addSystemFigures(json& record, const SystemMetrics& metrics) {
  record["systemStartTime"] = metrics.systemStartTime;
  record["systemUpTime"] = metrics.systemUpTime;
  record["fgProcessName"] = metrics.fgProcessName;
  record["totalDiskSpace"] = mebibytes(metrics.totalDiskSpace);
  record["usedDiskSpace"] = mebibytes(metrics.usedDiskSpace);
  record["freeDiskSpace"] = mebibytes(metrics.freeDiskSpace);
  record["totalSwapMemory"] = mebibytes(metrics.totalSwapMemory);
  record["usedSwapMemory"] = mebibytes(metrics.usedSwapMemory);
  record["freeSwapMemory"] = mebibytes(metrics.freeSwapMemory);
  record["batteryPercentage"] = batteryValue(metrics.batteryPercentage);
  // The first adapter makes the key; without one the record has none.
  for (const GpuInfo& gpu : metrics.gpuInfo) {
    record["gpuInfo"].push_back({{"gpuName", gpu.name}, {"gpuMemoryUsage", mebibytes(gpu.dedicatedVideoMemory)}});
  }
}

void addProcessFigures(json& record, const ProcessMetrics& metrics, const MetricSelection& selection) {
  record["processId"] = std::int64_t{metrics.processId};
  record["status"] = metrics.status;
  record["appStartTime"] = metrics.appStartTime;
  if (isSelected(selection, MetricCode::CpuUsage)) {
    record["cpuUsage"] = metrics.cpuUsage;
  }
  if (isSelected(selection, MetricCode::MemoryUsage)) {
    record["memoryUsage"] = mebibytes(metrics.memoryUsage);
  }
  if (isSelected(selection, MetricCode::FileDescriptors)) {
    record["fileDescriptors"] = metrics.fileDescriptors;
  }
  if (isSelected(selection, MetricCode::ThreadCount)) {
    record["threadCount"] = metrics.threadCount;
  }
}

}  // namespace

void buildMetricRecord(const SystemMetrics& systemMetrics, const ProcessMetrics& processMetrics, std::string& text,
                       const MetricSelection& selection) {
  json record;
  record["timestamp"] = isoLocalTimestamp();
  addSystemFigures(record, systemMetrics);
  addProcessFigures(record, processMetrics, selection);
  try {
    text = record.dump(/*indent=*/-1, /*indent_char=*/' ', /*ensure_ascii=*/false, json::error_handler_t::strict);
  } catch (const std::exception&) {
    return;  // No part of a record is better than none: readers take each line as a whole.
  }
}

std::string elapsedTimeText(std::chrono::sys_seconds start, std::chrono::sys_seconds now) {
  const long long elapsed = (now - start).count();
  char text[64];
  std::snprintf(text, sizeof text, "%lld %02lld:%02lld:%02lld", elapsed / 86400, elapsed % 86400 / 3600,
                elapsed % 3600 / 60, elapsed % 60);
  return text;
}

}  // namespace sentiq
