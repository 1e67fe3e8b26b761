#include "reader/session/MetricSample.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "reader/session/JsonMembers.h"

namespace sentiq {
namespace {

// The whole value as a number; else nothing.
template <typename Number>
std::optional<Number> numberOf(std::string_view value) {
  Number number{};
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  return error == std::errc{} && end == value.data() + value.size() ? std::optional(number) : std::nullopt;
}

std::string adapterOf(std::string_view object) {
  std::string name;
  std::int64_t memory = 0;
  visitMembers(object, [&](std::string_view key, std::string_view value) {
    if (key == R"("gpuName")") {
      name = jsonText(value);
    } else if (key == R"("gpuMemoryUsage")") {
      memory = numberOf<std::int64_t>(value).value_or(0);
    }
  });
  return name + " (" + std::to_string(memory) + " MiB)";
}

struct Field {
  std::string_view key;
  void (*read)(std::string_view value, MetricSample& record);
};

template <std::int64_t MetricSample::*member>
void readSize(std::string_view value, MetricSample& record) {
  record.*member = numberOf<std::int64_t>(value).value_or(0);
}

template <std::string MetricSample::*member>
void readText(std::string_view value, MetricSample& record) {
  record.*member = jsonText(value);
}

template <typename Number, std::optional<Number> MetricSample::*member>
void readNumber(std::string_view value, MetricSample& record) {
  record.*member = numberOf<Number>(value);
}

constexpr Field fields[] = {
    Field{R"("totalDiskSpace")", readSize<&MetricSample::totalDisk>},
    Field{R"("freeDiskSpace")", readSize<&MetricSample::freeDisk>},
    Field{R"("totalSwapMemory")", readSize<&MetricSample::totalSwap>},
    Field{R"("freeSwapMemory")", readSize<&MetricSample::freeSwap>},
    Field{R"("processId")", readSize<&MetricSample::processId>},
    Field{R"("status")", readText<&MetricSample::status>},
    Field{R"("appStartTime")", readText<&MetricSample::appRunTime>},
    Field{R"("systemUpTime")", readText<&MetricSample::systemUpTime>},
    Field{R"("cpuUsage")", readNumber<double, &MetricSample::cpuUsage>},
    Field{R"("memoryUsage")", readNumber<std::int64_t, &MetricSample::memory>},
    Field{R"("threadCount")", readNumber<std::int64_t, &MetricSample::threads>},
    Field{R"("batteryPercentage")",
          [](std::string_view value, MetricSample& record) {
            record.battery = numberOf<int>(value);
            record.batteryText = jsonText(value);
          }},
    Field{R"("gpuInfo")",
          [](std::string_view value, MetricSample& record) {
            visitMembers(value, [&](std::string_view, std::string_view adapter) {
              if (adapter.starts_with('{')) {
                record.adapters.push_back(adapterOf(adapter));
              }
            });
          }},
};

}  // namespace

std::optional<MetricSample> parseMetric(std::string_view text) {
  MetricSample record;
  std::optional<LogTime> time;
  const bool whole = visitMembers(text, [&](std::string_view key, std::string_view value) {
    if (key == R"("timestamp")") {
      time = parseTime(jsonText(value));
      return;
    }
    const auto* const field =
        std::find_if(std::begin(fields), std::end(fields), [key](const Field& known) { return known.key == key; });
    if (field != std::end(fields)) {
      field->read(value, record);
    }
  });
  if (!whole || !time) {
    return std::nullopt;
  }
  record.time = *time;
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
