#include "reader/judgement/RecordGaps.h"

#include <algorithm>
#include <cstddef>

#include "reader/judgement/EntryIndex.h"
#include "reader/judgement/Sleeps.h"

namespace sentiq {
namespace {

// The events about the clock, in order of time.
std::vector<ClockSet> clocksSet(const Session& session) {
  std::vector<ClockSet> sets;
  for (const LogEntry* const entry : EntryIndex(session).all({Meaning::Clock})) {
    if (const auto set = clockSet(session.eventOf(*entry)); set && !set->readAnew) {
      sets.push_back(*set);
    }
  }
  return sets;
}

Ticks toldJump(const std::vector<ClockSet>& sets, Instant from, Instant to) {
  Ticks jump{};
  auto set =
      std::lower_bound(sets.begin(), sets.end(), from, [](const ClockSet& s, Instant time) { return s.to < time; });
  for (; set != sets.end() && set->to <= to; ++set) {
    jump += set->to - set->from;
  }
  return jump;
}

}  // namespace

Ticks clockJump(const MetricSample& a, const MetricSample& b) {
  constexpr std::chrono::seconds rounding{3};  // Run times are whole seconds.
  if (!a.ran || !b.ran) {
    return {};
  }
  const Ticks jump = (b.time.instant - a.time.instant) - (*b.ran - *a.ran);
  return std::chrono::abs(jump) > rounding ? jump : Ticks{};
}

std::vector<RecordGap> recordGaps(const Session& session) {
  std::vector<RecordGap> gaps;
  const std::vector<Sleep> sleeps = sleepsOf(session);
  const std::vector<ClockSet> sets = clocksSet(session);
  const MetricSample* last = nullptr;
  for (const std::size_t i : asWritten(session, [](const LogEntry& entry) { return entry.metric.has_value(); })) {
    const MetricSample& record = session.recordOf(session.entries[i]);
    if (last != nullptr && record.time.instant - last->time.instant > longestRecordInterval) {
      const bool slept = sleptBetween(sleeps, last->time.instant, record.time.instant);
      Ticks jump = clockJump(*last, record);
      if (jump == Ticks{} && !slept) {  // The run time may follow the clock, too.
        jump = toldJump(sets, last->time.instant, record.time.instant);
      }
      const Ticks length = record.time.instant - last->time.instant - jump;
      if (length > longestRecordInterval) {
        gaps.push_back({last->time, length, slept});
      }
    }
    last = &record;
  }
  return gaps;
}

}  // namespace sentiq
