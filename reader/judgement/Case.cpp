#include "reader/judgement/Case.h"

namespace sentiq {
namespace {

std::vector<Fall> fallsAround(const Case& known) {
  std::optional<TimeRange> alive;
  if (known.process.begin && known.process.over) {
    alive = TimeRange{*known.process.begin, *known.process.over};
  }
  return fallsOf(known.session, known.index, known.boots, alive);
}

}  // namespace

Case::Case(const Session& judged)
    : session(judged),
      index(judged),
      span(sessionSpan(judged)),
      process(watchedProcess(judged, index, span)),
      sleeps(sleepsOf(judged)),
      boots(bootsOf(judged, index)),
      failures(failuresOf(judged, index, process)),
      falls(fallsAround(*this)) {}

std::string atTimeOf(const LogEntry& entry) {
  return " at " + showTime(*entry.time, entry.offset);
}

}  // namespace sentiq
