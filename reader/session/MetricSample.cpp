#include "reader/session/MetricSample.h"

#include <array>
#include <cstdio>
#include <type_traits>

#include <nlohmann/json.hpp>

#include "logging/LogGrammar.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

using nlohmann::json;

// Nothing, too, where it is too large for its type.
template <typename Number>
std::optional<Number> numberOf(const json& object, std::string_view key) {
  const auto member = object.find(key);
  if (member == object.end() || !(std::is_integral_v<Number> ? member->is_number_integer() : member->is_number())) {
    return std::nullopt;
  }
  const auto number = member->get<Number>();
  return static_cast<double>(number) == member->get<double>() ? std::optional(number) : std::nullopt;
}

std::string textOf(const json& object, std::string_view key) {
  const auto member = object.find(key);
  return member != object.end() && member->is_string() ? member->get<std::string>() : std::string{};
}

}  // namespace

std::optional<MetricSample> parseMetric(std::string_view text) {
  namespace key = grammar::record;
  const json object = json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
  const auto time = object.is_object() ? parseTime(textOf(object, key::timestamp)) : std::nullopt;
  if (!time || !object.contains(key::processId) || !object.contains(key::status)) {  // Each record holds these.
    return std::nullopt;
  }
  MetricSample record;
  record.time = *time;
  const auto sizeOf = [&](std::string_view name) { return numberOf<std::int64_t>(object, name).value_or(0); };
  record.totalDisk = sizeOf(key::totalDisk);
  record.freeDisk = sizeOf(key::freeDisk);
  record.totalSwap = sizeOf(key::totalSwap);
  record.freeSwap = sizeOf(key::freeSwap);
  record.battery = numberOf<int>(object, key::battery);
  record.batteryText = textOf(object, key::battery);
  record.processId = sizeOf(key::processId);
  record.status = textOf(object, key::status);
  record.ran = parseElapsed(textOf(object, key::appRunTime));
  record.up = parseElapsed(textOf(object, key::systemUpTime));
  record.cpuUsage = numberOf<double>(object, key::cpuUsage);
  record.memory = numberOf<std::int64_t>(object, key::memoryUsage);
  record.threads = numberOf<std::int64_t>(object, key::threads);
  const auto adapters = object.find(key::adapters);
  for (const json& adapter : adapters != object.end() ? *adapters : json::array()) {
    if (adapter.is_object()) {
      record.adapters.push_back(cleanText(textOf(adapter, key::adapterName)) + " (" +
                                std::to_string(numberOf<std::int64_t>(adapter, key::adapterMemory).value_or(0)) +
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

std::string showElapsed(Ticks elapsed) {
  const auto seconds = static_cast<long long>(std::chrono::floor<std::chrono::seconds>(elapsed).count());
  std::array<char, 64> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%lld %02lld:%02lld:%02lld", seconds / 86400,
                                  seconds % 86400 / 3600, seconds % 3600 / 60, seconds % 60));
  return text.data();
}

std::string describeMetric(const MetricSample& record) {
  return "disk free " + std::to_string(record.freeDisk) + " MiB, page file free " + std::to_string(record.freeSwap) +
         " MiB, battery " + (record.battery ? std::to_string(*record.battery) + " %" : record.batteryText) +
         ", process " + std::to_string(record.processId) + ' ' + record.status;
}

}  // namespace sentiq
