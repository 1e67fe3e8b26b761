#include "reader/judgement/Sleeps.h"

#include <algorithm>
#include <chrono>

#include "reader/judgement/EntryIndex.h"

namespace sentiq {
namespace {

Instant startOf(const SleepTold& told) {
  return told.begin ? *told.begin : *told.end;
}

bool isClose(std::optional<Instant> a, std::optional<Instant> b) {
  constexpr std::chrono::minutes close{2};
  return a && b && std::chrono::abs(*a - *b) <= close;
}

SleepTold toldBy(const Session& session, const LogEntry& entry) {
  if (entry.event) {
    SleepTold told = sleepTold(session.eventOf(entry));
    if (!told.begin && !told.end) {
      told.begin = entry.time;
    }
    return told;
  }
  const bool begins = entry.meaning == Meaning::Sleep;  // A line of the program.
  return {SleepKind::Sleep, begins ? entry.time : std::nullopt, begins ? std::nullopt : entry.time};
}

bool isSame(const Sleep& sleep, const SleepTold& told) {
  if (told.begin) {
    return isClose(sleep.begin, told.begin) || (sleep.begin && sleep.end && *told.begin <= *sleep.end) ||
           (!sleep.begin && isClose(sleep.end, told.end));
  }
  return !sleep.end || *told.end <= *sleep.end || isClose(sleep.end, told.end);
}

}  // namespace

// Events before and after it and the program's own lines tell of the same sleep. A sleep empties the watchdog log, so
// that its end may be all that is left of it.
std::vector<Sleep> sleepsOf(const Session& session) {
  const EntryIndex index(session);
  std::vector<Sleep> all;
  for (const LogEntry* const entry :
       index.all({Meaning::Sleep, Meaning::Resume, Meaning::StandbyBegun, Meaning::StandbyEnded})) {
    all.push_back({toldBy(session, *entry), index.indexOf(*entry)});
  }
  std::stable_sort(all.begin(), all.end(), [](const Sleep& a, const Sleep& b) { return startOf(a) < startOf(b); });
  std::vector<Sleep> sleeps;
  bool byEvent = false;  // Whether one tells of the last sleep: it knows the kind, a line does not.
  for (const Sleep& told : all) {
    const bool isEvent = session.entries[told.entry].event.has_value();
    if (sleeps.empty() || !isSame(sleeps.back(), told)) {
      sleeps.push_back(told);
      byEvent = isEvent;
      continue;
    }
    Sleep& sleep = sleeps.back();
    sleep.begin = sleep.begin ? sleep.begin : told.begin;
    sleep.end = later(sleep.end, told.end);
    sleep.batteryEmpty = sleep.batteryEmpty || told.batteryEmpty;
    if (isEvent && (!byEvent || (told.kind == SleepKind::Hibernation && sleep.kind != told.kind))) {
      sleep.kind = told.kind;
      sleep.entry = told.entry;
    }
    byEvent = byEvent || isEvent;
  }
  return sleeps;
}

bool sleptBetween(const std::vector<Sleep>& sleeps, Instant from, Instant to) {
  const auto endOf = [](const Sleep& sleep) { return sleep.end ? *sleep.end : *sleep.begin; };
  const auto first =
      std::partition_point(sleeps.begin(), sleeps.end(), [&](const Sleep& s) { return endOf(s) < from; });
  return first != sleeps.end() && startOf(*first) <= to;
}

}  // namespace sentiq
