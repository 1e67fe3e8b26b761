#include "reader/Summary.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/CleanText.h"
#include "reader/Outcome.h"
#include "reader/TextStyle.h"

namespace sentiq {
namespace {

constexpr std::chrono::seconds longestInterval{15};
constexpr const char* unknown = "unknown";

// The first file of a role, or of any when the role is Unknown, that holds the text.
std::string fromFiles(const LogSet& logs, std::string LogFileInfo::*member, bool initial) {
  for (const LogFileInfo& file : logs.files) {
    if ((file.role == LogRole::Initial) == initial && !(file.*member).empty()) {
      return file.*member;
    }
  }
  return unknown;
}

std::string lowest(const LogSet& logs, std::int64_t MetricRecord::*free, std::int64_t MetricRecord::*total) {
  const auto found =
      std::min_element(logs.metrics.begin(), logs.metrics.end(),
                       [free](const MetricRecord& a, const MetricRecord& b) { return a.*free < b.*free; });
  if (found == logs.metrics.end()) {
    return unknown;
  }
  return std::to_string((*found).*free) + " of " + std::to_string((*found).*total) + " MiB at " +
         showTime(found->time.instant, found->time.offset);
}

std::string batteryText(const LogSet& logs) {
  if (logs.metrics.empty()) {
    return unknown;
  }
  int least = 101;
  for (const MetricRecord& metric : logs.metrics) {
    least = std::min(least, metric.battery.value_or(101));
  }
  const auto show = [](const MetricRecord& metric) {
    return metric.battery ? std::to_string(*metric.battery) + " %" : cleanText(metric.batteryText);
  };
  const std::string last = show(logs.metrics.back());
  return least == 101
             ? last
             : show(logs.metrics.front()) + " at first, " + last + " at last, lowest " + std::to_string(least) + " %";
}

std::string adaptersText(const LogSet& logs) {
  if (logs.metrics.empty()) {
    return unknown;
  }
  std::string text;
  for (const std::string& adapter : logs.metrics.back().adapters) {
    text += (text.empty() ? "" : ", ") + cleanText(adapter);
  }
  return text.empty() ? "none listed" : text;
}

std::string spanText(const SessionSpan& span) {
  return !span.begin ? unknown
                     : showTime(*span.begin, span.offset) + " to " + showTime(*span.end, span.offset) + " (" +
                           showOffset(span.offset) + "), " + showDuration(*span.end - *span.begin);
}

std::string eventCounts(const LogSet& logs) {
  std::array<std::size_t, 4> counts{};
  for (const LogEntry& entry : logs.entries) {
    if (entry.event) {
      ++counts[static_cast<std::size_t>(entry.severity)];
    }
  }
  return std::to_string(logs.events.size()) + " (" + std::to_string(counts[3]) + " error, " +
         std::to_string(counts[2]) + " warning, " + std::to_string(counts[1]) + " notice, " +
         std::to_string(counts[0]) + " info), copied again " + std::to_string(logs.eventCopies) + " times";
}

std::vector<Fact> factsOf(const LogSet& logs, const SessionSpan& span) {
  return {
      {"sessionId", "Session", fromFiles(logs, &LogFileInfo::sessionId, /*initial=*/false)},
      {"processId", "Process id", fromFiles(logs, &LogFileInfo::processId, /*initial=*/false)},
      {"abnormalSessionId", "Abnormal session before", fromFiles(logs, &LogFileInfo::sessionId, /*initial=*/true)},
      {"span", "Time span", spanText(span)},
      {"timeZone", "Time zone", fromFiles(logs, &LogFileInfo::timeZone, /*initial=*/false)},
      {"lastBoot", "Last boot", fromFiles(logs, &LogFileInfo::bootTime, /*initial=*/false)},
      {"lowestFreeDisk", "Lowest free disk", lowest(logs, &MetricRecord::freeDisk, &MetricRecord::totalDisk)},
      {"lowestFreePageFile", "Lowest free page file", lowest(logs, &MetricRecord::freeSwap, &MetricRecord::totalSwap)},
      {"battery", "Battery", batteryText(logs)},
      {"adapters", "Graphics adapters", adaptersText(logs)},
      {"records", "Ten-second records", std::to_string(logs.metrics.size())},
      {"events", "Events", eventCounts(logs)},
  };
}

bool inSession(const SessionSpan& span, const LogEntry& entry) {
  return entry.time && span.contains(*entry.time);
}

// Event and marker tell of the same sleep: the markers count where there are any.
std::vector<Statement> powerStatements(const LogSet& logs, const SessionSpan& span) {
  const auto count = [&](Meaning meaning, bool events) {
    return std::count_if(logs.entries.begin(), logs.entries.end(), [&](const LogEntry& entry) {
      return entry.meaning == meaning && entry.event.has_value() == events && inSession(span, entry);
    });
  };
  const auto more = [&](Meaning meaning) { return std::max(count(meaning, false), count(meaning, true)); };
  std::vector<Statement> statements;
  const auto state = [&](const char* what, std::ptrdiff_t times) {
    if (times > 0) {
      statements.push_back(
          {Severity::Notice, std::string(what) + std::to_string(times) + (times == 1 ? " time" : " times")});
    }
  };
  // A sleep empties the watchdog log, so that its resume may be all that is left of it.
  state("The machine slept ", std::max(more(Meaning::Sleep), more(Meaning::Resume)));
  state("Standby began or ended, or the display went on or off, ", count(Meaning::Standby, /*events=*/false));
  return statements;
}

std::vector<std::string> gapsOf(const LogSet& logs) {
  std::vector<const MetricRecord*> records;
  for (const LogEntry& entry : logs.entries) {
    if (entry.metric) {
      records.push_back(&logs.metrics[*entry.metric]);
    }
  }
  std::vector<std::string> gaps;
  for (std::size_t i = 1; i < records.size(); ++i) {
    const Instant from = records[i - 1]->time.instant;
    const Instant to = records[i]->time.instant;
    if (to - from <= longestInterval) {
      continue;
    }
    const bool slept = std::any_of(logs.entries.begin(), logs.entries.end(), [&](const LogEntry& entry) {
      return (entry.meaning == Meaning::Sleep || entry.meaning == Meaning::Resume) && entry.time &&
             *entry.time >= from && *entry.time <= to;
    });
    gaps.push_back(showDuration(to - from) + " from " + showTime(from, records[i - 1]->time.offset) +
                   (slept ? " (the machine slept)" : ""));
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
  for (const auto& [role, note] : {std::pair(LogRole::Session, ""), std::pair(LogRole::Watchdog, ""),
                                   std::pair(LogRole::Initial, " (written only after an abnormal end)")}) {
    if (std::none_of(logs.files.begin(), logs.files.end(), [r = role](const auto& file) { return file.role == r; })) {
      problems.push_back("No " + roleName(role) + " log" + note);
    }
  }
  return problems;
}

void appendList(std::string& text, std::string_view title, const std::vector<std::string>& items) {
  if (!items.empty()) {
    text += '\n' + std::string(title) + '\n';
  }
  for (const std::string& item : items) {
    text += "  " + item + '\n';
  }
}

}  // namespace

Summary summarize(const LogSet& logs) {
  const SessionSpan span = sessionSpan(logs);
  const Outcome outcome = judgeOutcome(logs, span);
  Summary summary;
  summary.outcome = outcome.word;
  summary.statements.push_back({outcome.severity, outcome.text});
  for (const Statement& statement : powerStatements(logs, span)) {
    summary.statements.push_back(statement);
  }
  for (const Outcome& before : judgeBefore(logs, span)) {
    summary.statements.push_back({before.severity, before.text});
  }
  summary.facts = factsOf(logs, span);
  summary.gaps = gapsOf(logs);
  summary.problems = problemsOf(logs);
  return summary;
}

std::string summaryText(const Summary& summary, bool colour) {
  std::string text;
  for (const Statement& statement : summary.statements) {
    text += styled(statement.severity, statement.text, colour) + '\n';
  }
  text += '\n';
  constexpr std::size_t labelWidth = 26;
  for (const Fact& fact : summary.facts) {
    text += fact.label + std::string(labelWidth - std::min(labelWidth, fact.label.size()), ' ') + fact.value + '\n';
  }
  appendList(text, "Gaps of more than 15 s in the records", summary.gaps);
  appendList(text, "Missing or damaged", summary.problems);
  return text;
}

std::string summaryJson(const Summary& summary) {
  nlohmann::ordered_json object{{"outcome", summary.outcome}};
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

}  // namespace sentiq
