#include "reader/views/Strip.h"

#include <algorithm>
#include <chrono>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "reader/views/EntryTable.h"
#include "reader/views/HtmlText.h"
#include "reader/views/TimeAxis.h"

namespace sentiq {
namespace {

constexpr std::chrono::minutes shownBefore{30};
constexpr std::chrono::minutes shownAfter{3};
constexpr std::chrono::seconds recordInterval{15};
// The same words again tell of one thing, and so do both logs' exit lines.
constexpr std::chrono::seconds sameMoment{30};
constexpr std::size_t mostMoments = 16;

struct Sleep {
  Instant from;
  std::optional<Instant> to;
  const LogEntry* entry;
};

// A resume that no sleep stands before says nothing of its length.
std::vector<Sleep> sleepsOf(const Session& session, const SessionSpan& span) {
  std::vector<Sleep> sleeps;
  for (const LogEntry& entry : session.entries) {
    if (!entry.time || !span.contains(*entry.time)) {
      continue;
    }
    const bool asleep = !sleeps.empty() && !sleeps.back().to;
    if (entry.meaning == Meaning::Sleep && !asleep) {
      sleeps.push_back({*entry.time, std::nullopt, &entry});
    } else if (entry.meaning == Meaning::Resume && asleep) {
      sleeps.back().to = entry.time;
    }
  }
  return sleeps;
}

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

bool isMoment(const LogEntry& entry) {
  return entry.severity >= Severity::Warning || (entry.meaning != Meaning::Other && entry.meaning != Meaning::Sleep &&
                                                 entry.meaning != Meaning::Resume && entry.meaning != Meaning::Standby);
}

// The newest ones when there are too many.
std::vector<const LogEntry*> momentsOf(const Session& session, Instant from, Instant to) {
  std::vector<const LogEntry*> moments;
  for (const LogEntry& entry : session.entries) {
    if (entry.metric || !entry.time || *entry.time < from || *entry.time > to || !isMoment(entry)) {
      continue;
    }
    const bool told = std::any_of(moments.begin(), moments.end(), [&](const LogEntry* other) {
      return *entry.time - *other->time < sameMoment &&
             (entry.what == other->what || (entry.meaning == Meaning::Exit && other->meaning == Meaning::Exit));
    });
    if (!told) {
      moments.push_back(&entry);
    }
  }
  moments.erase(moments.begin(), moments.end() - static_cast<std::ptrdiff_t>(std::min(moments.size(), mostMoments)));
  return moments;
}

class StripWriter {
 public:
  StripWriter(const TimeAxis& axis, std::chrono::minutes offset, Instant end, std::ostream& out)
      : axis_(axis), offset_(offset), end_(end), out_(out) {}

  void begin(std::string_view severity, Instant time, const std::string& anchor, std::string_view name) {
    out_ << "<tr class=\"" << severity << "\"><td class=\"time\">";
    const std::string text = showTime(time, offset_).substr(11, 8);
    if (anchor.empty()) {
      out_ << text;
    } else {
      out_ << "<a href=\"#" << anchor << "\">" << text << "</a>";
    }
    out_ << "<td>" << htmlText(name) << "<td><svg aria-hidden=\"true\">";
    axis_.writeTicks("", out_);
    out_ << R"(<line class="mark" x1=")" << axis_.at(end_) << R"(" x2=")" << axis_.at(end_) << R"(" y2="100%"/>)";
  }
  void span(Instant from, Instant to) {
    out_ << R"(<rect class="span" y="25%" height="50%" x=")" << axis_.at(from) << R"(" width=")"
         << axis_.width(from, to) << "\"/>";
  }
  void point(Instant time) { out_ << R"(<circle class="point" r="5" cy="50%" cx=")" << axis_.at(time) << "\"/>"; }
  void end() { out_ << "</svg>\n"; }

 private:
  const TimeAxis& axis_;
  std::chrono::minutes offset_;
  Instant end_;
  std::ostream& out_;
};

void writeRecords(const Session& session, StripWriter& writer) {
  if (session.metrics.empty()) {
    return;
  }
  writer.begin("info", session.metrics.front().time.instant, "",
               "Ten-second records: " + std::to_string(session.metrics.size()));
  Instant from = session.metrics.front().time.instant;
  Instant to = from;
  for (const MetricSample& record : session.metrics) {
    if (record.time.instant - to > recordInterval) {
      writer.span(from, to);
      from = record.time.instant;
    }
    to = record.time.instant;
  }
  writer.span(from, to);
  writer.end();
}

}  // namespace

std::vector<ChartMark> marksOf(const Session& session, const SessionSpan& span, const Judgement& judgement) {
  std::vector<ChartMark> marks;
  for (const Sleep& sleep : sleepsOf(session, span)) {
    marks.push_back({sleep.from, sleep.to.value_or(sleep.from), "The machine slept"});
  }
  if (span.end) {
    const Instant end = endOf(session, span, judgement);
    marks.push_back({end, end, judgement.verdict.text});
  }
  return marks;
}

std::vector<const LogEntry*> writeStrip(const Session& session, const SessionSpan& span, const Judgement& judgement,
                                        const std::string& anchor, std::ostream& out) {
  if (!span.begin) {
    return {};
  }
  const Instant end = endOf(session, span, judgement);
  const Instant first = std::max(*span.begin, Instant(end - shownBefore));
  const TimeAxis axis(first, std::min(std::max(*span.end, end), Instant(end + shownAfter)), span.offset);
  StripWriter writer(axis, span.offset, end, out);
  std::vector<const LogEntry*> linked;
  out << "<h2>" << (first == *span.begin ? "From start to end" : "The last half hour")
      << "</h2>\n<table class=\"strip\"><thead><tr><th scope=\"col\">Local time<th scope=\"col\">What"
         "<th scope=\"col\"><svg role=\"img\" aria-label=\"When\">";
  axis.writeTicks("80%", out);
  out << "</svg><tbody>\n";
  writer.begin("info", *span.begin, "", "Canvix runs for " + showDuration(end - *span.begin));
  writer.span(*span.begin, end);
  writer.end();
  writeRecords(session, writer);
  struct Item {
    const LogEntry* entry;
    std::optional<Sleep> sleep;
  };
  std::vector<Item> items;
  for (const Sleep& sleep : sleepsOf(session, span)) {
    if (sleep.to.value_or(axis.last()) >= first) {
      items.push_back({sleep.entry, sleep});
    }
  }
  for (const LogEntry* const moment : momentsOf(session, first, axis.last())) {
    items.push_back({moment, std::nullopt});
  }
  std::stable_sort(items.begin(), items.end(),
                   [](const Item& a, const Item& b) { return *a.entry->time < *b.entry->time; });
  for (const Item& item : items) {
    const LogEntry& entry = *item.entry;
    const std::string name = !item.sleep ? entry.what
                             : item.sleep->to
                                 ? "The machine sleeps for " + showDuration(*item.sleep->to - item.sleep->from)
                                 : "The machine sleeps";
    writer.begin(severityName(entry.severity), *entry.time, entryAnchor(session, entry, anchor), name);
    if (item.sleep) {
      writer.span(item.sleep->from, item.sleep->to.value_or(axis.last()));
    } else {
      writer.point(*entry.time);
    }
    writer.end();
    linked.push_back(&entry);
  }
  out << "</table>\n";
  return linked;
}

}  // namespace sentiq
