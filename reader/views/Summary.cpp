#include "reader/views/Summary.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"
#include "reader/session/Judgement.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

constexpr std::chrono::seconds longestInterval{15};
constexpr const char* unknown = "unknown";

Fact textFact(const char* label, const char* key, const std::string& text) {
  return text.empty() ? Fact{label, unknown, key, nullptr} : Fact{label, text, key, text};
}

Fact processFact(const Session& session) {
  Fact fact = textFact("Process id", "processId", session.processId);
  std::int64_t pid = 0;
  if (std::from_chars(fact.text.data(), fact.text.data() + fact.text.size(), pid).ec == std::errc{}) {
    fact.value = pid;
  }
  return fact;
}

Fact lowestFact(const Session& session, const char* label, const char* key, std::int64_t MetricSample::*free,
                std::int64_t MetricSample::*total) {
  const auto found =
      std::min_element(session.metrics.begin(), session.metrics.end(),
                       [free](const MetricSample& a, const MetricSample& b) { return a.*free < b.*free; });
  if (found == session.metrics.end()) {
    return {label, unknown, key, nullptr};
  }
  const MetricSample& record = *found;
  return {
      label,
      std::to_string(record.*free) + " of " + std::to_string(record.*total) + " MiB at " +
          showTime(record.time.instant, record.time.offset),
      key,
      {{"mib", record.*free}, {"ofMib", record.*total}, {"time", isoTime(record.time.instant, record.time.offset)}}};
}

Fact batteryFact(const Session& session) {
  Fact fact{"Battery", unknown, "battery", nullptr};
  if (session.metrics.empty()) {
    return fact;
  }
  constexpr int more = 101;
  int least = more;
  for (const MetricSample& metric : session.metrics) {
    least = std::min(least, metric.battery.value_or(more));
  }
  const auto show = [](const MetricSample& metric) {
    return metric.battery ? std::to_string(*metric.battery) + " %" : cleanText(metric.batteryText);
  };
  const std::string first = show(session.metrics.front());
  const std::string last = show(session.metrics.back());
  fact.text = least == more ? last : first + " at first, " + last + " at last, lowest " + std::to_string(least) + " %";
  fact.value = {{"first", first}, {"last", last}};
  if (least != more) {
    fact.value["lowestPercent"] = least;
  }
  return fact;
}

Fact adaptersFact(const Session& session) {
  Fact fact{"Graphics adapters", unknown, "adapters", nullptr};
  if (!session.metrics.empty()) {
    fact.value = nlohmann::ordered_json::array();
    fact.text.clear();
    for (const std::string& adapter : session.metrics.back().adapters) {
      fact.value.push_back(cleanText(adapter));
      fact.text += (fact.text.empty() ? "" : ", ") + cleanText(adapter);
    }
    fact.text = fact.text.empty() ? "none listed" : fact.text;
  }
  return fact;
}

Fact spanFact(const SessionSpan& span) {
  if (!span.begin) {
    return {"Time span", unknown, "span", nullptr};
  }
  return {"Time span",
          showTime(*span.begin, span.offset) + " to " + showTime(*span.end, span.offset) + " (" +
              showOffset(span.offset) + "), " + showDuration(*span.end - *span.begin),
          "span",
          {{"begin", isoTime(*span.begin, span.offset)},
           {"end", isoTime(*span.end, span.offset)},
           {"seconds", std::chrono::floor<std::chrono::seconds>(*span.end - *span.begin).count()}}};
}

Fact eventsFact(const Session& session) {
  const std::size_t distinct = session.events.size() + session.counted.size();
  Fact fact{"Events", std::to_string(distinct), "events", {{"distinct", distinct}}};
  const char* before = " (";
  for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Notice, Severity::Info}) {
    const auto count = std::count_if(session.entries.begin(), session.entries.end(),
                                     [&](const LogEntry& entry) { return entry.event && entry.severity == severity; }) +
                       std::count_if(session.counted.begin(), session.counted.end(),
                                     [&](const auto& event) { return event.second == severity; });
    const std::string name(severityName(severity));
    fact.text += before + std::to_string(count) + ' ' + name;
    fact.value[name] = count;
    before = ", ";
  }
  fact.text +=
      "), copied again " + std::to_string(session.eventCopies) + (session.eventCopies == 1 ? " time" : " times");
  fact.value["copies"] = session.eventCopies;
  return fact;
}

std::vector<Fact> factsOf(const Session& session, const SessionSpan& span) {
  return {
      textFact("Session", "sessionId", session.id),
      processFact(session),
      textFact("Abnormal session before", "abnormalSessionId", session.abnormalSessionId),
      spanFact(span),
      textFact("Time zone", "timeZone", session.timeZone),
      textFact("Last boot", "lastBoot", session.bootTime),
      lowestFact(session, "Lowest free disk", "lowestFreeDisk", &MetricSample::freeDisk, &MetricSample::totalDisk),
      lowestFact(session, "Lowest free page file", "lowestFreePageFile", &MetricSample::freeSwap,
                 &MetricSample::totalSwap),
      batteryFact(session),
      adaptersFact(session),
      {"Ten-second records", std::to_string(session.metrics.size()), "records", session.metrics.size()},
      eventsFact(session),
  };
}

std::vector<std::string> gapsOf(const Session& session) {
  std::vector<std::string> gaps;
  const MetricSample* last = nullptr;
  bool slept = false;  // Since the last record.
  Ticks set{};         // How far the clock was, since then.
  for (const LogEntry& entry : session.entries) {
    slept = slept || entry.meaning == Meaning::Sleep || entry.meaning == Meaning::Resume;
    if (entry.meaning == Meaning::Clock && entry.event) {
      set += clockChange(session.events[*entry.event]).value_or(Ticks{});
    }
    if (!entry.metric) {
      continue;
    }
    const MetricSample& record = session.metrics[*entry.metric];
    if (last != nullptr) {
      const Ticks interval = record.time.instant - last->time.instant - (slept ? Ticks{} : set);
      if (interval > longestInterval) {
        gaps.push_back(showDuration(interval) + " from " + showTime(last->time.instant, last->time.offset) +
                       (slept ? " (the machine slept)" : ""));
      }
    }
    last = &record;
    slept = false;
    set = Ticks{};
  }
  return gaps;
}

std::vector<std::string> problemsOf(const LogSet& logs) {
  std::vector<std::string> problems;
  for (const LogFileInfo& file : logs.files) {
    const std::string name = cleanText(file.name);
    if (!file.readable) {
      problems.push_back(name + ": cannot be read");
    } else if (file.role == LogRole::Unknown) {
      problems.push_back(name + (file.lines == 0 ? ": empty" : ": holds no log of CanvixSentiq"));
    }
    if (file.damagedLines > 0) {
      problems.push_back(name + ": " + std::to_string(file.damagedLines) + " damaged or unfinished lines of " +
                         std::to_string(file.lines));
    }
  }
  if (!logs.leftOut.empty()) {
    std::string names;
    for (const std::string& name : logs.leftOut) {
      names += (names.empty() ? "" : ", ") + cleanText(name);
    }
    problems.push_back("Left out, no log of CanvixSentiq: " + names);
  }
  // There is an initial log only after a session that ended abnormally.
  for (const LogRole role : {LogRole::Session, LogRole::Watchdog}) {
    if (std::none_of(logs.files.begin(), logs.files.end(), [role](const auto& file) { return file.role == role; })) {
      problems.push_back("No " + roleName(role) + " log");
    }
  }
  return problems;
}

// Empty fields are left out; null when no single entry tells.
void appendList(std::string& text, std::string_view title, const std::vector<std::string>& items) {
  if (!items.empty()) {
    text += '\n' + std::string(title) + '\n';
  }
  for (const std::string& item : items) {
    text += "  " + item + '\n';
  }
}

void appendSession(std::string& text, const Summary& summary, bool colour) {
  for (const Statement& statement : summary.statements) {
    text += styled(statement.severity, statement.text, colour) + '\n';
  }
  text += '\n';
  constexpr std::size_t labelWidth = 26;
  for (const Fact& fact : summary.facts) {
    text += fact.label + std::string(labelWidth - std::min(labelWidth, fact.label.size()), ' ') + fact.text + '\n';
  }
  appendList(text, "Gaps of more than 15 s in the records", summary.gaps);
}

}  // namespace

Summary summarize(const LogSet& logs, const Session& session) {
  const SessionSpan span = sessionSpan(session);
  Summary summary;
  summary.judgement = judge(session);
  summary.statements = {summary.judgement.verdict};
  for (const Before& before : summary.judgement.before) {
    summary.statements.push_back({Severity::Warning, beforeText(before), before.entry});
  }
  for (const Statement& statement : summary.judgement.others) {
    summary.statements.push_back(statement);
  }
  summary.facts = factsOf(session, span);
  summary.gaps = gapsOf(session);
  summary.problems = problemsOf(logs);
  return summary;
}

nlohmann::ordered_json evidenceJson(const Judgement& judgement) {
  nlohmann::ordered_json object;
  if (!judgement.time) {
    return object;
  }
  object["time"] = isoTime(judgement.time->instant, judgement.time->offset);
  const Evidence& evidence = judgement.evidence;
  for (const auto& [key, text] :
       {std::pair("module", &evidence.module), std::pair("moduleVersion", &evidence.moduleVersion),
        std::pair("exception", &evidence.exception), std::pair("exceptionWords", &evidence.exceptionWords),
        std::pair("offset", &evidence.offset), std::pair("hangKind", &evidence.hangKind),
        std::pair("stopCode", &evidence.stopCode), std::pair("stopWords", &evidence.stopWords),
        std::pair("canvixVersion", &evidence.canvixVersion), std::pair("reportId", &evidence.reportId),
        std::pair("bucket", &evidence.bucket), std::pair("reportPath", &evidence.reportPath)}) {
    if (!text->empty()) {
      object[key] = *text;
    }
  }
  if (!evidence.dumps.empty()) {
    object["dumps"] = evidence.dumps;
  }
  return object;
}

nlohmann::ordered_json beforeJson(const Judgement& judgement) {
  auto list = nlohmann::ordered_json::array();
  for (const Before& before : judgement.before) {
    list.push_back({{"kind", before.kind},
                    {"time", isoTime(before.time, before.offset)},
                    {"secondsEarlier", std::chrono::floor<std::chrono::seconds>(before.earlier).count()},
                    {"text", before.text}});
  }
  return list;
}

std::string summaryJson(const Summary& summary) {
  nlohmann::ordered_json object{{"outcome", summary.judgement.outcome}, {"evidence", evidenceJson(summary.judgement)}};
  object["before"] = beforeJson(summary.judgement);
  for (const Statement& statement : summary.statements) {
    object["statements"].push_back({{"severity", severityName(statement.severity)}, {"text", statement.text}});
  }
  for (const Fact& fact : summary.facts) {
    object[fact.key] = fact.value;
  }
  object["gaps"] = summary.gaps;
  object["problems"] = summary.problems;
  return object.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace);
}

std::string summaryText(const LogSet& logs, bool colour) {
  std::string text;
  const std::size_t count = logs.sessions.size();
  if (count > 1) {
    text = std::to_string(count) + " sessions, the newest last\n";
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (count > 1) {
      text += "\nSession " + std::to_string(i + 1) + " of " + std::to_string(count) + '\n';
    }
    appendSession(text, summarize(logs, logs.sessions[i]), colour);
  }
  appendList(text, "Missing or damaged", problemsOf(logs));
  return text;
}

}  // namespace sentiq
