// One ten-second record of the session log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/input/LogTime.h"

namespace sentiq {

/// Sizes are whole mebibytes.
struct MetricSample {
  LogTime time{};
  std::int64_t totalDisk = 0;
  std::int64_t freeDisk = 0;
  std::int64_t totalSwap = 0;
  std::int64_t freeSwap = 0;
  std::optional<int> battery;  // Percent.
  std::string batteryText;     // "No battery" or "Unknown" in place of a percentage.
  std::vector<std::string> adapters;
  std::int64_t processId = 0;
  std::string status;
  std::optional<Ticks> ran;        // Canvix by then; nothing when it could not be asked.
  std::optional<Ticks> up;         // Windows.
  std::optional<double> cpuUsage;  // Percent; so below, nothing where the record does not hold it.
  std::optional<std::int64_t> memory;
  std::optional<std::int64_t> threads;
};

/// Nothing when the text is not such a record. Never throws for any bytes.
std::optional<MetricSample> parseMetric(std::string_view text);

/// The form of elapsed times in records: "2 03:04:05", days first. Nothing when the text has another one.
std::optional<Ticks> parseElapsed(std::string_view text);
std::string showElapsed(Ticks elapsed);

/// One line for the timeline.
std::string describeMetric(const MetricSample& record);

}  // namespace sentiq
