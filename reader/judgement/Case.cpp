#include "reader/judgement/Case.h"

namespace sentiq {

Case::Case(const Session& judged)
    : session(judged),
      index(judged),
      span(sessionSpan(judged)),
      process(watchedProcess(judged, index, span)),
      sleeps(sleepsOf(judged)),
      boots(bootsOf(judged, index)),
      failures(failuresOf(judged, index, process)),
      falls(fallsOf(judged, index, boots, process)) {}

std::string atTimeOf(const LogEntry& entry) {
  return " at " + showTime(*entry.time, entry.offset);
}

}  // namespace sentiq
