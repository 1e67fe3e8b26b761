#include "reader/views/Strip.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <ostream>
#include <utility>

#include "reader/judgement/Surroundings.h"
#include "reader/views/EntryTable.h"
#include "reader/views/HtmlText.h"
#include "reader/views/TimeAxis.h"

namespace sentiq {
namespace {

constexpr std::chrono::minutes shownBefore{30};
constexpr std::chrono::minutes shownAfter{3};
constexpr std::chrono::seconds recordInterval{15};
constexpr std::chrono::seconds sameMoment{30};  // Both logs tell of one exit.
constexpr std::size_t mostMoments = 16;

// One line of the strip.
struct Item {
  Instant time;
  std::string name;
  Severity severity = Severity::Info;
  std::optional<std::size_t> entry{};
  std::vector<std::pair<Instant, Instant>> spans{};  // A point where both are one.
};

// When Canvix ended, as far as the logs tell.
Instant endOf(const Session& session, const SessionSpan& span, const Judgement& judgement) {
  if (judgement.time && span.contains(judgement.time->instant)) {
    return judgement.time->instant;
  }
  const auto exit = std::find_if(session.entries.begin(), session.entries.end(), [](const LogEntry& entry) {
    return entry.meaning == Meaning::Exit && entry.time.has_value();
  });
  return exit != session.entries.end() ? *exit->time : *span.end;
}

Item recordsOf(const Session& session) {
  Item item{session.metrics.front().time.instant,
            "Ten-second records (" + std::to_string(session.metrics.size()) + ")"};
  for (const MetricSample& record : session.metrics) {
    const Instant time = record.time.instant;
    if (item.spans.empty() || time - item.spans.back().second > recordInterval) {
      item.spans.emplace_back(time, time);
    }
    item.spans.back().second = time;
  }
  return item;
}

bool isMoment(const LogEntry& entry) {
  return entry.meaning == Meaning::Other
             ? entry.severity >= Severity::Warning
             : entry.meaning != Meaning::Sleep && entry.meaning != Meaning::Resume && entry.meaning != Meaning::Standby;
}

// What is told twice stands once; the newest when there are too many.
std::vector<Item> momentsOf(const Session& session, Instant from, Instant to) {
  std::vector<Item> moments;
  for (std::size_t i = 0; i < session.entries.size(); ++i) {
    const LogEntry& entry = session.entries[i];
    if (entry.metric || !entry.time || *entry.time < from || *entry.time > to || !isMoment(entry)) {
      continue;
    }
    const bool isExit = entry.meaning == Meaning::Exit;
    const auto told = std::find_if(moments.begin(), moments.end(), [&](const Item& other) {
      return isExit ? session.entries[*other.entry].meaning == Meaning::Exit && *entry.time - other.time < sameMoment
                    : other.name == entry.what;
    });
    if (told == moments.end()) {
      moments.push_back({*entry.time, entry.what, entry.severity, i, {{*entry.time, *entry.time}}});
    } else if (!isExit) {
      told->entry = i;  // The newest: there the table shows the others, too.
      told->time = *entry.time;
      told->spans.emplace_back(*entry.time, *entry.time);
    }
  }
  for (Item& item : moments) {
    item.name += item.spans.size() > 1 ? " (" + std::to_string(item.spans.size()) + " times)" : "";
  }
  std::stable_sort(moments.begin(), moments.end(), [](const Item& a, const Item& b) { return a.time < b.time; });
  moments.erase(moments.begin(), moments.end() - static_cast<std::ptrdiff_t>(std::min(moments.size(), mostMoments)));
  return moments;
}

std::vector<Item> sleepItems(const Session& session, const SessionSpan& span, Instant first, Instant last) {
  std::vector<Item> items;
  for (const Sleep& sleep : sleepsOf(session, span)) {
    const Instant from = sleep.begin.value_or(*sleep.end);
    const Instant to = sleep.end.value_or(last);
    if (to < first) {
      continue;
    }
    const auto entry = std::find_if(session.entries.begin(), session.entries.end(), [from](const LogEntry& e) {
      return e.time == from && (e.meaning == Meaning::Sleep || e.meaning == Meaning::Resume);
    });
    const std::string duration = sleep.begin && sleep.end ? " for " + showDuration(to - from) : "";
    items.push_back({from,
                     (sleep.begin ? "The machine sleeps" : "The machine resumes") + duration,
                     Severity::Notice,
                     static_cast<std::size_t>(entry - session.entries.begin()),
                     {{from, to}}});
  }
  return items;
}

void writeItem(const Item& item, const TimeAxis& axis, Instant end, std::chrono::minutes offset,
               const std::string& prefix, std::ostream& out) {
  out << R"(<tr class=")" << severityName(item.severity) << R"("><td class="time">)";
  const std::string time = showTime(item.time, offset).substr(11, 8);
  if (item.entry) {
    out << "<a href=\"#" << entryAnchor(prefix, *item.entry) << "\">" << time << "</a>";
  } else {
    out << time;
  }
  out << "<td>" << htmlText(item.name) << "<td><svg aria-hidden=\"true\">";
  axis.writeGrid(out);
  axis.writeLine("mark", end, "", out);
  for (const auto& [from, to] : item.spans) {
    if (from == to) {
      out << R"(<circle class="point" r="5" cy="50%" cx=")" << axis.at(from) << "\"/>";
    } else {
      out << R"(<rect class="span" y="25%" height="50%" x=")" << axis.at(from) << R"(" width=")" << axis.width(from, to)
          << "\"/>";
    }
  }
  out << "</svg>\n";
}

}  // namespace

std::vector<ChartMark> marksOf(const Session& session, const SessionSpan& span, const Judgement& judgement) {
  std::vector<ChartMark> marks;
  for (const Sleep& sleep : sleepsOf(session, span)) {
    if (sleep.begin && sleep.end) {
      marks.push_back({*sleep.begin, *sleep.end, "The machine slept"});
    }
  }
  if (span.end) {
    const Instant end = endOf(session, span, judgement);
    marks.push_back({end, end, judgement.verdict.text});
  }
  return marks;
}

std::set<std::size_t> writeStrip(const Session& session, const SessionSpan& span, const Judgement& judgement,
                                 const std::string& prefix, std::ostream& out) {
  if (!span.begin) {
    return {};
  }
  const Instant end = endOf(session, span, judgement);
  const Instant first = std::max(*span.begin, Instant(end - shownBefore));
  const TimeAxis axis(first, std::min(std::max(*span.end, end), Instant(end + shownAfter)), span.offset);
  const std::string runs = "Canvix runs for " + showDuration(end - *span.begin);
  std::vector<Item> items{{*span.begin, runs, Severity::Info, {}, {{*span.begin, end}}}};
  if (!session.metrics.empty()) {
    items.push_back(recordsOf(session));
  }
  for (const std::vector<Item>& more :
       {sleepItems(session, span, first, axis.last()), momentsOf(session, first, axis.last())}) {
    items.insert(items.end(), more.begin(), more.end());
  }
  std::stable_sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.time < b.time; });
  out << "<h2>" << (first == *span.begin ? "From start to end" : "The last half hour")
      << "</h2>\n<table class=\"strip\"><thead><tr><th scope=\"col\">Local time<th scope=\"col\">What"
         "<th scope=\"col\"><svg role=\"img\" aria-label=\"When\">";
  axis.writeTimes("80%", out);
  out << "</svg><tbody>\n";
  std::set<std::size_t> linked;
  for (const Item& item : items) {
    writeItem(item, axis, end, span.offset, prefix, out);
    if (item.entry) {
      linked.insert(*item.entry);
    }
  }
  out << "</table>\n";
  return linked;
}

}  // namespace sentiq
