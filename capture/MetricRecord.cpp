#include "capture/MetricRecord.h"

#include <cstdint>
#include <cstdio>
#include <exception>

#include <nlohmann/json.hpp>

#include "capture/SentiqSystem.h"
#include "logging/LogGrammar.h"
#include "logging/TimeText.h"

namespace sentiq {
namespace {

using nlohmann::json;
namespace key = grammar::record;

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
  record[key::systemStartTime] = metrics.systemStartTime;
  record[key::systemUpTime] = metrics.systemUpTime;
  record[key::foreground] = metrics.fgProcessName;
  record[key::totalDisk] = mebibytes(metrics.totalDiskSpace);
  record[key::usedDisk] = mebibytes(metrics.usedDiskSpace);
  record[key::freeDisk] = mebibytes(metrics.freeDiskSpace);
  record[key::totalSwap] = mebibytes(metrics.totalSwapMemory);
  record[key::usedSwap] = mebibytes(metrics.usedSwapMemory);
  record[key::freeSwap] = mebibytes(metrics.freeSwapMemory);
  record[key::battery] = batteryValue(metrics.batteryPercentage);
  // The first adapter makes the key; without one the record has none.
  for (const GpuInfo& gpu : metrics.gpuInfo) {
    record[key::adapters].push_back(
        {{key::adapterName, gpu.name}, {key::adapterMemory, mebibytes(gpu.dedicatedVideoMemory)}});
  }
}

void addProcessFigures(json& record, const ProcessMetrics& metrics, const MetricSelection& selection) {
  record[key::processId] = std::int64_t{metrics.processId};
  record[key::status] = metrics.status;
  record[key::appRunTime] = metrics.appStartTime;
  if (isSelected(selection, MetricCode::CpuUsage)) {
    record[key::cpuUsage] = metrics.cpuUsage;
  }
  if (isSelected(selection, MetricCode::MemoryUsage)) {
    record[key::memoryUsage] = mebibytes(metrics.memoryUsage);
  }
  if (isSelected(selection, MetricCode::FileDescriptors)) {
    record[key::fileDescriptors] = metrics.fileDescriptors;
  }
  if (isSelected(selection, MetricCode::ThreadCount)) {
    record[key::threads] = metrics.threadCount;
  }
}

}  // namespace

void buildMetricRecord(const SystemMetrics& systemMetrics, const ProcessMetrics& processMetrics, std::string& text,
                       const MetricSelection& selection) {
  json record;
  record[key::timestamp] = isoLocalTimestamp();
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
