#include "reader/session/MetricSample.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include <nlohmann/json.hpp>

namespace sentiq {
namespace {

using nlohmann::json;

std::string textAt(const json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string{};
}

template <typename Number>
std::optional<Number> numberAt(const json& object, const char* key) {
  const auto found = object.find(key);
  const bool fits =
      found != object.end() && (std::is_floating_point_v<Number> ? found->is_number() : found->is_number_integer());
  return fits ? std::optional(found->get<Number>()) : std::nullopt;
}

std::int64_t sizeAt(const json& object, const char* key) {
  return numberAt<std::int64_t>(object, key).value_or(0);
}

void readAdapters(const json& object, MetricSample& record) {
  const auto found = object.find("gpuInfo");
  if (found == object.end() || !found->is_array()) {
    return;
  }
  for (const json& adapter : *found) {
    if (adapter.is_object()) {
      record.adapters.push_back(textAt(adapter, "gpuName") + " (" + std::to_string(sizeAt(adapter, "gpuMemoryUsage")) +
                                " MiB)");
    }
  }
}

}  // namespace

std::optional<MetricSample> parseMetric(std::string_view text) {
  const json object = json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
  if (!object.is_object()) {
    return std::nullopt;
  }
  const auto time = parseTime(textAt(object, "timestamp"));
  if (!time) {
    return std::nullopt;
  }
  MetricSample record;
  record.time = *time;
  record.totalDisk = sizeAt(object, "totalDiskSpace");
  record.freeDisk = sizeAt(object, "freeDiskSpace");
  record.totalSwap = sizeAt(object, "totalSwapMemory");
  record.freeSwap = sizeAt(object, "freeSwapMemory");
  record.battery = numberAt<int>(object, "batteryPercentage");
  record.batteryText = textAt(object, "batteryPercentage");
  readAdapters(object, record);
  record.processId = sizeAt(object, "processId");
  record.status = textAt(object, "status");
  record.appRunTime = textAt(object, "appStartTime");
  record.systemUpTime = textAt(object, "systemUpTime");
  record.cpuUsage = numberAt<double>(object, "cpuUsage");
  record.memory = numberAt<std::int64_t>(object, "memoryUsage");
  record.threads = numberAt<std::int64_t>(object, "threadCount");
  return record;
}

std::optional<Ticks> parseElapsed(std::string_view text) {
  std::int64_t seconds = 0;
  std::int64_t part = 0;
  int separators = 0;
  for (const char c : text) {
    if (c >= '0' && c <= '9' && part < 100'000) {
      part = part * 10 + (c - '0');
    } else if ((c == ' ' && separators == 0) || (c == ':' && separators > 0 && separators < 3)) {
      seconds = (seconds + part) * (separators == 0 ? 24 : 60);
      part = 0;
      ++separators;
    } else {
      return std::nullopt;
    }
  }
  return separators == 3 ? std::optional<Ticks>(std::chrono::seconds(seconds + part)) : std::nullopt;
}

std::string describeMetric(const MetricSample& record) {
  return "disk free " + std::to_string(record.freeDisk) + " MiB, page file free " + std::to_string(record.freeSwap) +
         " MiB, battery " + (record.battery ? std::to_string(*record.battery) + " %" : record.batteryText) +
         ", process " + std::to_string(record.processId) + ' ' + record.status;
}

}  // namespace sentiq
