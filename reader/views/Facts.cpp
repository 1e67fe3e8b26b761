#include "reader/views/Facts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string_view>
#include <utility>

#include "reader/events/EventFacts.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

using Json = nlohmann::ordered_json;

Fact textFact(const char* label, const char* key, const std::string& text) {
  return text.empty() ? Fact{label, key} : Fact{label, key, text, harmlessLine(text)};
}

Fact processFact(const Session& session) {
  Fact fact = textFact("Process id", "processId", session.processId);
  if (Json number = Json::parse(session.processId, nullptr, /*allow_exceptions=*/false); number.is_number_integer()) {
    fact.value = std::move(number);
  }
  return fact;
}

Fact canvixFact(const Judgement& judgement) {
  const auto& failure = judgement.evidence.failure;
  return textFact("Canvix", "canvixVersion", failure ? failure->version : "");
}

Fact windowsFact(const Session& session) {
  std::string build;
  for (const LogEntry& entry : session.entries) {  // The last one counts.
    if (entry.event && entry.meaning == Meaning::Boot) {
      const std::string told = windowsBuild(session.eventOf(entry));
      build = told.empty() ? build : told;
    }
  }
  return textFact("Windows", "windowsBuild", build);
}

Fact lowestFact(const Session& session, const char* label, const char* key, std::int64_t MetricSample::* free,
                std::int64_t MetricSample::* total) {
  const auto record =
      std::min_element(session.metrics.begin(), session.metrics.end(),
                       [free](const MetricSample& a, const MetricSample& b) { return a.*free < b.*free; });
  if (record == session.metrics.end()) {
    return {label, key};
  }
  const auto [time, offset] = record->time;
  return {label,
          key,
          {{"mib", (*record).*free}, {"ofMib", (*record).*total}, {"time", isoTime(time, offset)}},
          showMebibytes((*record).*free) + " of " + showMebibytes((*record).*total) + " at " + showTime(time, offset)};
}

Fact batteryFact(const Session& session) {
  Fact fact{"Battery", "battery"};
  if (session.metrics.empty()) {
    return fact;
  }
  std::optional<int> least;
  for (const MetricSample& record : session.metrics) {
    least = record.battery ? std::min(*record.battery, least.value_or(*record.battery)) : least;
  }
  const auto show = [](const MetricSample& record) {
    return record.battery ? std::to_string(*record.battery) + " %" : harmlessLine(record.batteryText);
  };
  const std::string first = show(session.metrics.front());
  const std::string last = show(session.metrics.back());
  fact.value = {{"first", first}, {"last", last}};
  fact.text = last;
  if (least) {
    fact.value["lowestPercent"] = *least;
    fact.text = first + " at first, " + last + " at last, lowest " + std::to_string(*least) + " %";
  }
  return fact;
}

Fact adaptersFact(const Session& session) {
  if (session.metrics.empty()) {
    return {"Graphics adapters", "adapters"};
  }
  const std::vector<std::string>& adapters = session.metrics.back().adapters;
  return {"Graphics adapters", "adapters", adapters, adapters.empty() ? "none listed" : joined(adapters)};
}

Fact spanFact(const SessionSpan& span) {
  if (!span.begin || !span.end) {
    return {"Time span", "span"};
  }
  return {"Time span",
          "span",
          {{"begin", isoTime(*span.begin, span.offset)},
           {"end", isoTime(*span.end, span.offset)},
           {"seconds", std::chrono::floor<std::chrono::seconds>(*span.end - *span.begin).count()}},
          showTime(*span.begin, span.offset) + " to " + showTime(*span.end, span.offset) + " (" +
              showOffset(span.offset) + "), " + showDuration(*span.end - *span.begin)};
}

Fact bootFact(const Session& session, std::chrono::minutes offset) {
  Fact fact = textFact("Last boot", "lastBoot", session.bootText);
  if (session.booted) {
    fact.text = showTime(*session.booted, offset);
  }
  return fact;
}

Fact eventsFact(const Session& session) {
  std::array<std::size_t, 4> counts{};
  for (const LogEntry& entry : session.entries) {
    counts[static_cast<std::size_t>(entry.severity)] += entry.event ? 1 : 0;
  }
  for (const CountedEvent& event : session.counted) {
    ++counts[static_cast<std::size_t>(event.severity)];
  }
  const std::size_t distinct = session.events.size() + session.counted.size();
  Fact fact{"Events", "events", {{"distinct", distinct}}, std::to_string(distinct)};
  for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Notice, Severity::Info}) {
    const std::string name(severityName(severity));
    const std::size_t count = counts[static_cast<std::size_t>(severity)];
    fact.value[name] = count;
    fact.text += (severity == Severity::Error ? " (" : ", ") + std::to_string(count) + ' ' + name;
  }
  fact.value["copies"] = session.eventCopies;
  fact.text += ')';
  return fact;
}

}  // namespace

std::string showMebibytes(std::int64_t size) {
  constexpr std::int64_t gibibyte = 1024;
  if (size < 10 * gibibyte) {
    return std::to_string(size) + " MiB";
  }
  std::array<char, 32> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f GiB", static_cast<double>(size) / gibibyte));
  return text.data();
}

std::vector<Fact> factsOf(const Session& session, const Judgement& judgement) {
  const SessionSpan span = sessionSpan(session);
  return {
      textFact("Session", "sessionId", session.id),
      processFact(session),
      canvixFact(judgement),
      textFact("Machine", "computer", session.computer),
      windowsFact(session),
      textFact("Abnormal session before", "abnormalSessionId", session.abnormalSessionId),
      spanFact(span),
      textFact("Time zone", "timeZone", session.timeZone),
      bootFact(session, span.offset),
      lowestFact(session, "Lowest free disk", "lowestFreeDisk", &MetricSample::freeDisk, &MetricSample::totalDisk),
      lowestFact(session, "Lowest free page file", "lowestFreePageFile", &MetricSample::freeSwap,
                 &MetricSample::totalSwap),
      batteryFact(session),
      adaptersFact(session),
      {"Ten-second records", "records", session.metrics.size(), std::to_string(session.metrics.size())},
      eventsFact(session),
  };
}

}  // namespace sentiq
