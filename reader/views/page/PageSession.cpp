#include "reader/views/page/PageSession.h"

#include <algorithm>
#include <utility>

#include "reader/judgement/RecordGaps.h"

namespace sentiq {
namespace {

using namespace std::chrono_literals;

std::vector<PlacedRecord> placedRecords(const Session& session) {
  std::vector<PlacedRecord> placed;
  Ticks jumps{};  // Of the clock, from the record to the end.
  for (std::size_t i = session.metrics.size(); i-- > 0;) {
    const MetricSample& record = session.metrics[i];
    placed.push_back({&record, record.time.instant + jumps});
    jumps += i > 0 ? clockJump(session.metrics[i - 1], record) : Ticks{};
  }
  std::reverse(placed.begin(), placed.end());
  for (std::size_t i = 1; i < placed.size(); ++i) {
    const Instant before = placed[i - 1].time;
    placed[i].gap = placed[i].time - before > longestRecordInterval;
    placed[i].time = std::max(placed[i].time, before);
  }
  return placed;
}

// When Canvix ended, or the machine fell under it.
std::optional<Instant> endOf(const Session& session, const SessionSpan& span, const Judgement& judgement) {
  if (judgement.time) {
    return judgement.time->from;
  }
  const auto exit = std::find_if(session.entries.begin(), session.entries.end(), [](const LogEntry& entry) {
    return entry.meaning == Meaning::Exit && entry.time.has_value();
  });
  return exit != session.entries.end() ? exit->time : span.end;
}

}  // namespace

PageSession pageSession(const Session& session, std::string prefix) {
  const SessionSpan span = sessionSpan(session);
  PageSession page{
      session, std::move(prefix), judge(session), sleepsOf(session), placedRecords(session), span.offset, span.begin,
      {},      span.end};
  if (!page.records.empty()) {
    const PlacedRecord& first = page.records.front();
    page.begin = first.time - first.record->ran.value_or(Ticks{});
  }
  page.end = endOf(session, span, page.judgement);
  if (page.begin && page.end) {
    page.begin = std::min(*page.begin, *page.end);
  }
  return page;
}

std::string PageSession::rowName(std::optional<std::size_t> entry) const {
  return entry && !session.entries[*entry].metric ? prefix + 'e' + std::to_string(*entry) : "";
}

std::string PageSession::fromEnd(Instant time) const {
  if (!end) {
    return {};
  }
  const Ticks before = *end - time;
  if (before > -1s && before < 1s) {
    return "at the end";
  }
  return before > 0s ? showDuration(before) + " before" : showDuration(-before) + " after";
}

}  // namespace sentiq
