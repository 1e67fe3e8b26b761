#include "reader/session/MetricSample.h"

#include <type_traits>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

using nlohmann::json;

// Nothing, too, where it is too large for its type.
template <typename Number>
std::optional<Number> numberOf(const json& object, const char* key) {
  const auto member = object.find(key);
  if (member == object.end() || !(std::is_integral_v<Number> ? member->is_number_integer() : member->is_number())) {
    return std::nullopt;
  }
  const auto number = member->get<Number>();
  return static_cast<double>(number) == member->get<double>() ? std::optional(number) : std::nullopt;
}

std::string textOf(const json& object, const char* key) {
  const auto member = object.find(key);
  return member != object.end() && member->is_string() ? member->get<std::string>() : std::string{};
}

}  // namespace

std::optional<MetricSample> parseMetric(std::string_view text) {
  const json object = json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
  const auto time = object.is_object() ? parseTime(textOf(object, "timestamp")) : std::nullopt;
  if (!time) {
    return std::nullopt;
  }
  MetricSample record;
  record.time = *time;
  const auto sizeOf = [&](const char* key) { return numberOf<std::int64_t>(object, key).value_or(0); };
  record.totalDisk = sizeOf("totalDiskSpace");
  record.freeDisk = sizeOf("freeDiskSpace");
  record.totalSwap = sizeOf("totalSwapMemory");
  record.freeSwap = sizeOf("freeSwapMemory");
  record.battery = numberOf<int>(object, "batteryPercentage");
  record.batteryText = textOf(object, "batteryPercentage");
  record.processId = sizeOf("processId");
  record.status = textOf(object, "status");
  record.appRunTime = textOf(object, "appStartTime");
  record.systemUpTime = textOf(object, "systemUpTime");
  record.cpuUsage = numberOf<double>(object, "cpuUsage");
  record.memory = numberOf<std::int64_t>(object, "memoryUsage");
  record.threads = numberOf<std::int64_t>(object, "threadCount");
  for (const json& adapter : object.value("gpuInfo", json::array())) {
    if (adapter.is_object()) {
      record.adapters.push_back(cleanText(textOf(adapter, "gpuName")) + " (" +
                                std::to_string(numberOf<std::int64_t>(adapter, "gpuMemoryUsage").value_or(0)) +
                                " MiB)");
    }
  }
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
