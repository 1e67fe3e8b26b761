#include "reader/views/page/StripItems.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <unordered_map>

#include "reader/events/EventFacts.h"

namespace sentiq {
namespace {

constexpr std::chrono::minutes shownBefore{30};
constexpr std::chrono::minutes shownAfter{3};
constexpr std::chrono::minutes longestFall{30};

StripItem recordsOf(const PageSession& page) {
  StripItem item{"Ten-second records (" + std::to_string(page.records.size()) + ")"};
  for (const PlacedRecord& record : page.records) {
    if (item.spans.empty() || record.gap) {
      item.spans.push_back({record.time, record.time});
    }
    item.spans.back().to = record.time;
  }
  return item;
}

std::string sleepText(const Sleep& sleep) {
  const std::string what = sleep.kind == SleepKind::Standby       ? "in modern standby"
                           : sleep.kind == SleepKind::Hibernation ? "in hibernation"
                                                                  : "asleep";
  if (!sleep.begin) {
    return "The machine was " + what + ", and woke";
  }
  return "The machine was " + what +
         (sleep.end ? " for " + showDuration(*sleep.end - *sleep.begin) : ", and did not wake") +
         (sleep.batteryEmpty ? ": the battery was empty" : "");
}

void addSleeps(const PageSession& page, StripItems& strip) {
  for (const Sleep& sleep : page.sleeps) {
    if (!sleep.begin && !sleep.end) {
      continue;
    }
    const Instant from = sleep.begin.value_or(*sleep.end);
    const Instant to = sleep.end.value_or(strip.last);
    if (to >= strip.first && from <= strip.last) {
      strip.items.push_back({sleepText(sleep), Severity::Notice, sleep.entry, {{from, to}}});
    }
  }
}

// The end itself, with all that tells of it.
void addEnd(const PageSession& page, StripItems& strip) {
  const Judgement& judgement = page.judgement;
  if (!judgement.time || judgement.evidence.entries.empty()) {
    return;
  }
  const auto& [from, to] = *judgement.time;
  const std::size_t entry = judgement.verdict.entry.value_or(judgement.evidence.entries.front());
  StripItem item{wordsOf(page.session, page.session.entries[entry]),
                 Severity::Error,
                 entry,
                 {{from, to}},
                 judgement.evidence.entries};
  strip.items.push_back(std::move(item));
  if (judgement.back && *judgement.back > to) {
    strip.items.push_back({"The machine was down for " + showDuration(*judgement.back - to),
                           Severity::Notice,
                           {},
                           {{to, *judgement.back}}});
  }
}

bool isMoment(const LogEntry& entry) {
  constexpr Meaning ofSpans[] = {Meaning::Sleep, Meaning::Resume, Meaning::StandbyBegun, Meaning::StandbyEnded};
  return std::find(std::begin(ofSpans), std::end(ofSpans), entry.meaning) == std::end(ofSpans) &&
         (entry.meaning != Meaning::Other || entry.severity >= Severity::Warning);
}

// Tellings of one thing have one key: both logs tell of one exit, an event and its report of one failure.
std::string momentKey(const Session& session, const LogEntry& entry, const std::string& words) {
  if (entry.meaning == Meaning::Exit) {
    return "exit";
  }
  if (isFailure(entry.meaning) && entry.event) {
    if (std::string report = programFailure(session.eventOf(entry)).reportId; !report.empty()) {
      return report;
    }
  }
  return words;
}

void addMoments(const PageSession& page, StripItems& strip) {
  const Session& session = page.session;
  const std::vector<std::size_t>& evidence = page.judgement.evidence.entries;
  const bool fell = page.judgement.back || page.judgement.evidence.fall;
  std::unordered_map<std::string, std::size_t> known;  // Index into the moments.
  std::vector<StripItem> moments;
  for (std::size_t i = 0; i < session.entries.size(); ++i) {
    const LogEntry& entry = session.entries[i];
    if (entry.metric || !entry.time || *entry.time < strip.first || *entry.time > strip.last || !isMoment(entry) ||
        std::find(evidence.begin(), evidence.end(), i) != evidence.end() ||
        (fell && entry.meaning == Meaning::Exit)) {  // Noticed when the machine was up again.
      continue;
    }
    const std::string words = wordsOf(session, entry);
    const auto [place, isNew] = known.try_emplace(momentKey(session, entry, words), moments.size());
    if (isNew) {
      moments.push_back({words, entry.severity, i});
    }
    StripItem& moment = moments[place->second];
    moment.told.push_back(i);
    if (entry.meaning != Meaning::Exit || isNew) {
      moment.spans.push_back({*entry.time, *entry.time});
    }
  }
  for (StripItem& moment : moments) {
    const bool isRelated = session.entries[*moment.entry].meaning != Meaning::Other;
    (isRelated ? strip.items : strip.unrelated).push_back(std::move(moment));
  }
}

}  // namespace

std::optional<StripItems> stripItems(const PageSession& page) {
  if (!page.begin || !page.end || !page.last) {
    return std::nullopt;
  }
  const Instant over = std::max(*page.end, page.judgement.back.value_or(*page.end));
  StripItems strip{
      std::max(*page.begin, Instant(*page.end - shownBefore)),
      std::min({std::max(*page.last, over), Instant(over + shownAfter), Instant(*page.end + longestFall)})};
  strip.items.push_back(
      {"Canvix ran for " + showDuration(*page.end - *page.begin), Severity::Info, {}, {{*page.begin, *page.end}}});
  if (!page.records.empty()) {
    strip.items.push_back(recordsOf(page));
  }
  addSleeps(page, strip);
  addEnd(page, strip);
  addMoments(page, strip);
  std::stable_sort(strip.items.begin(), strip.items.end(),
                   [](const StripItem& a, const StripItem& b) { return a.time() < b.time(); });
  return strip;
}

}  // namespace sentiq
