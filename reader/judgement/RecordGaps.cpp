#include "reader/judgement/RecordGaps.h"

#include <algorithm>
#include <tuple>

namespace sentiq {
namespace {

// The entries of the records in the order in which they were written: the clock may have been set back meanwhile.
std::vector<const LogEntry*> recordsInOrder(const Session& session) {
  std::vector<const LogEntry*> records;
  for (const LogEntry& entry : session.entries) {
    if (entry.metric) {
      records.push_back(&entry);
    }
  }
  std::stable_sort(records.begin(), records.end(), [](const LogEntry* a, const LogEntry* b) {
    return std::tie(a->file, a->line) < std::tie(b->file, b->line);
  });
  return records;
}

// The events about the clock, in order of time.
std::vector<ClockSet> clocksSet(const Session& session) {
  std::vector<ClockSet> sets;
  for (const LogEntry& entry : session.entries) {
    const auto set = entry.meaning == Meaning::Clock && entry.event ? clockSet(session.eventOf(entry)) : std::nullopt;
    if (set && !set->readAnew) {
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

std::vector<RecordGap> recordGaps(const Session& session, const std::vector<Sleep>& sleeps) {
  std::vector<RecordGap> gaps;
  const std::vector<ClockSet> sets = clocksSet(session);
  const MetricSample* last = nullptr;
  for (const LogEntry* const entry : recordsInOrder(session)) {
    const MetricSample& record = session.recordOf(*entry);
    if (last != nullptr && record.time.instant - last->time.instant > longestRecordInterval) {
      const bool slept = sleptBetween(sleeps, last->time.instant, record.time.instant);
      Ticks jump = clockJump(*last, record);
      if (jump == Ticks{} && !slept) {  // The run time may follow the clock, too.
        jump = toldJump(sets, last->time.instant, record.time.instant);
      }
      const Ticks length = record.time.instant - last->time.instant - jump;
      if (length > longestRecordInterval) {
        gaps.push_back({last->time, record.time, length, slept});
      }
    }
    last = &record;
  }
  return gaps;
}

}  // namespace sentiq
