#include "reader/views/Facts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "reader/events/EventFacts.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

// 38.5 GiB, 512 MiB
std::string showMebibytes(std::int64_t size) {
  constexpr std::int64_t gibibyte = 1024;
  return size < 10 * gibibyte ? std::to_string(size) + " MiB"
                              : showNumber(static_cast<double>(size) / gibibyte, 1) + " GiB";
}

FactValue valueOf(const std::string& text) {
  return text.empty() ? FactValue() : FactValue{text, harmlessLine(text)};
}

FactValue processOf(const Session& session) {
  FactValue process = valueOf(session.processId);
  if (auto number = nlohmann::ordered_json::parse(session.processId, nullptr, /*allow_exceptions=*/false);
      number.is_number_integer()) {
    process.json = std::move(number);
  }
  return process;
}

FactValue lastBuild(const Session& session) {
  std::string build;
  for (const LogEntry& entry : session.entries) {  // The last one counts.
    if (entry.event && entry.meaning == Meaning::Boot) {
      const std::string told = windowsBuild(session.eventOf(entry));
      build = told.empty() ? build : told;
    }
  }
  return valueOf(build);
}

FactValue lowestOf(const Session& session, std::int64_t MetricSample::* free, std::int64_t MetricSample::* total) {
  const auto record =
      std::min_element(session.metrics.begin(), session.metrics.end(),
                       [free](const MetricSample& a, const MetricSample& b) { return a.*free < b.*free; });
  if (record == session.metrics.end()) {
    return {};
  }
  const auto [time, offset] = record->time;
  return {{{"mib", (*record).*free}, {"ofMib", (*record).*total}, {"time", isoTime(time, offset)}},
          showMebibytes((*record).*free) + " of " + showMebibytes((*record).*total) + " at " + showTime(time, offset)};
}

FactValue batteryOf(const std::vector<MetricSample>& records) {
  if (records.empty()) {
    return {};
  }
  std::optional<int> least;
  for (const MetricSample& record : records) {
    least = record.battery ? std::min(*record.battery, least.value_or(*record.battery)) : least;
  }
  const auto show = [](const MetricSample& record) {
    return record.battery ? std::to_string(*record.battery) + " %" : harmlessLine(record.batteryText);
  };
  const std::string first = show(records.front());
  const std::string last = show(records.back());
  FactValue battery{{{"first", first}, {"last", last}}, last};
  if (least) {
    battery.json["lowestPercent"] = *least;
    battery.text = first + " at first, " + last + " at last, lowest " + std::to_string(*least) + " %";
  }
  return battery;
}

FactValue lastAdapters(const std::vector<MetricSample>& records) {
  if (records.empty()) {
    return {};
  }
  const std::vector<std::string>& adapters = records.back().adapters;
  return {adapters, adapters.empty() ? "none listed" : joined(adapters)};
}

FactValue valueOf(const SessionSpan& span) {
  if (!span.begin || !span.end) {
    return {};
  }
  const Ticks length = *span.end - *span.begin;
  return {{{"begin", isoTime(*span.begin, span.offset)},
           {"end", isoTime(*span.end, span.offset)},
           {"seconds", std::chrono::floor<std::chrono::seconds>(length).count()}},
          showTime(*span.begin, span.offset) + " to " + showTime(*span.end, span.offset) + " (" +
              showOffset(span.offset) + "), " + showDuration(length)};
}

FactValue bootOf(const Session& session, std::chrono::minutes offset) {
  FactValue boot = valueOf(session.bootText);
  if (session.booted) {
    boot.text = showTime(*session.booted, offset);
  }
  return boot;
}

FactValue eventCounts(const Session& session) {
  std::array<std::size_t, 4> counts{};
  for (const LogEntry& entry : session.entries) {
    counts[static_cast<std::size_t>(entry.severity)] += entry.event ? 1 : 0;
  }
  for (const CountedEvent& event : session.counted) {
    ++counts[static_cast<std::size_t>(event.severity)];
  }
  const std::size_t distinct = session.events.size() + session.counted.size();
  FactValue events{{{"distinct", distinct}}, std::to_string(distinct)};
  std::string before = " (";
  for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Notice, Severity::Info}) {
    const std::string name(severityName(severity));
    const std::size_t count = counts[static_cast<std::size_t>(severity)];
    events.json[name] = count;
    events.text += std::exchange(before, ", ") + std::to_string(count) + ' ' + name;
  }
  events.json["copies"] = session.eventCopies;
  events.text += ')';
  return events;
}

}  // namespace

std::vector<Fact> factsOf(const Session& session, const Judgement& judgement) {
  const SessionSpan span = sessionSpan(session);
  const auto& failure = judgement.evidence.failure;
  const std::vector<MetricSample>& records = session.metrics;
  return {
      {"Session", "sessionId", valueOf(session.id)},
      {"Process id", "processId", processOf(session)},
      {"Canvix", "canvixVersion", valueOf(failure ? failure->version : "")},
      {"Machine", "computer", valueOf(session.computer)},
      {"Windows", "windowsBuild", lastBuild(session)},
      {"Abnormal session before", "abnormalSessionId", valueOf(session.abnormalSessionId)},
      {"Time span", "span", valueOf(span)},
      {"Time zone", "timeZone", valueOf(session.timeZone)},
      {"Last boot", "lastBoot", bootOf(session, span.offset)},
      {"Lowest free disk", "lowestFreeDisk", lowestOf(session, &MetricSample::freeDisk, &MetricSample::totalDisk)},
      {"Lowest free page file", "lowestFreePageFile",
       lowestOf(session, &MetricSample::freeSwap, &MetricSample::totalSwap)},
      {"Battery", "battery", batteryOf(records)},
      {"Graphics adapters", "adapters", lastAdapters(records)},
      {"Ten-second records", "records", {records.size(), std::to_string(records.size())}},
      {"Events", "events", eventCounts(session)},
  };
}

}  // namespace sentiq
