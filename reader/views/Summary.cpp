#include "reader/views/Summary.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "reader/input/CleanText.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

using Json = nlohmann::ordered_json;

// Separated by commas.
std::string joined(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) {
    text += (text.empty() ? "" : ", ") + cleanText(item);
  }
  return text;
}

Fact textFact(const char* label, const char* key, const std::string& text) {
  return text.empty() ? Fact{label, key} : Fact{label, key, text, text};
}

Fact processFact(const Session& session) {
  Fact fact = textFact("Process id", "processId", session.processId);
  if (Json number = Json::parse(session.processId, nullptr, /*allow_exceptions=*/false); number.is_number_integer()) {
    fact.value = std::move(number);
  }
  return fact;
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
          std::to_string((*record).*free) + " of " + std::to_string((*record).*total) + " MiB at " +
              showTime(time, offset)};
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
    return record.battery ? std::to_string(*record.battery) + " %" : cleanText(record.batteryText);
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
  if (!span.begin) {
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

Fact eventsFact(const Session& session) {
  std::array<std::size_t, 4> counts{};
  for (const LogEntry& entry : session.entries) {
    counts[static_cast<std::size_t>(entry.severity)] += entry.event ? 1 : 0;
  }
  for (const auto& [hash, severity] : session.counted) {
    ++counts[static_cast<std::size_t>(severity)];
  }
  const std::size_t distinct = session.events.size() + session.counted.size();
  Fact fact{"Events", "events", {{"distinct", distinct}}, std::to_string(distinct)};
  for (const Severity severity : {Severity::Error, Severity::Warning, Severity::Notice, Severity::Info}) {
    const std::string name(severityName(severity));
    fact.value[name] = counts[static_cast<std::size_t>(severity)];
    fact.text += (severity == Severity::Error ? " (" : ", ") + fact.value[name].dump() + ' ' + name;
  }
  fact.value["copies"] = session.eventCopies;
  fact.text +=
      "), copied again " + std::to_string(session.eventCopies) + (session.eventCopies == 1 ? " time" : " times");
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
      {"Ten-second records", "records", session.metrics.size(), std::to_string(session.metrics.size())},
      eventsFact(session),
  };
}

std::vector<std::string> gapsOf(const Session& session) {
  constexpr std::chrono::seconds longestInterval{15};
  std::vector<std::string> gaps;
  const MetricSample* last = nullptr;
  bool slept = false;  // Since the last record.
  Ticks set{};         // How far the clock was, since then.
  for (const LogEntry& entry : session.entries) {
    slept = slept || entry.meaning == Meaning::Sleep || entry.meaning == Meaning::Resume;
    if (entry.meaning == Meaning::Clock && entry.event) {
      set += clockChange(session.eventOf(entry)).value_or(Ticks{});
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
    problems.push_back("Left out, no log of CanvixSentiq: " + joined(logs.leftOut));
  }
  // There is an initial log only after a session that ended abnormally.
  for (const LogRole role : {LogRole::Session, LogRole::Watchdog}) {
    if (std::none_of(logs.files.begin(), logs.files.end(), [role](const auto& file) { return file.role == role; })) {
      problems.push_back("No " + roleName(role) + " log");
    }
  }
  return problems;
}

std::string listText(const char* title, const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) {
    text += "  " + item + '\n';
  }
  return text.empty() ? text : '\n' + std::string(title) + '\n' + text;
}

std::string sessionText(const Summary& summary, bool colour) {
  std::string text;
  for (const Statement& statement : summary.statements) {
    text += styled(statement.severity, statement.text, colour) + '\n';
  }
  text += '\n';
  for (const Fact& fact : summary.facts) {
    constexpr std::size_t labelWidth = 26;
    text += padded(fact.label, labelWidth) + fact.text + '\n';
  }
  return text + listText("Gaps of more than 15 s in the records", summary.gaps);
}

}  // namespace

Summary summarize(const LogSet& logs, const Session& session) {
  Summary summary{judge(session), {}, factsOf(session, sessionSpan(session)), gapsOf(session), problemsOf(logs)};
  summary.statements = {summary.judgement.verdict};
  for (const Before& before : summary.judgement.before) {
    summary.statements.push_back({Severity::Warning, beforeText(before), before.entry});
  }
  const std::vector<Statement>& others = summary.judgement.others;
  summary.statements.insert(summary.statements.end(), others.begin(), others.end());
  return summary;
}

Json evidenceJson(const Judgement& judgement) {
  Json object;
  if (!judgement.time) {
    return object;
  }
  object["time"] = isoTime(judgement.time->instant, judgement.time->offset);
  const Evidence& evidence = judgement.evidence;
  for (const auto& [name, text] : evidence.texts) {
    object[name] = text;
  }
  if (!evidence.dumps.empty()) {
    object["dumps"] = evidence.dumps;
  }
  return object;
}

Json beforeJson(const Judgement& judgement) {
  auto list = Json::array();
  for (const Before& before : judgement.before) {
    list.push_back({{"kind", before.kind},
                    {"time", isoTime(before.time, before.offset)},
                    {"secondsEarlier", std::chrono::floor<std::chrono::seconds>(before.earlier).count()},
                    {"text", before.text}});
  }
  return list;
}

std::string summaryJson(const Summary& summary) {
  const Judgement& judgement = summary.judgement;
  Json object{{"outcome", judgement.outcome}, {"evidence", evidenceJson(judgement)}, {"before", beforeJson(judgement)}};
  for (const Statement& statement : summary.statements) {
    object["statements"].push_back({{"severity", severityName(statement.severity)}, {"text", statement.text}});
  }
  for (const Fact& fact : summary.facts) {
    object[fact.key] = fact.value;
  }
  object["gaps"] = summary.gaps;
  object["problems"] = summary.problems;
  return object.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

std::string summaryText(const LogSet& logs, bool colour) {
  const std::size_t count = logs.sessions.size();
  std::string text = count > 1 ? std::to_string(count) + " sessions, the newest last\n" : "";
  for (std::size_t i = 0; i < count; ++i) {
    if (count > 1) {
      text += "\nSession " + std::to_string(i + 1) + " of " + std::to_string(count) + '\n';
    }
    text += sessionText(summarize(logs, logs.sessions[i]), colour);
  }
  return text + listText("Missing or damaged", problemsOf(logs));
}

}  // namespace sentiq
