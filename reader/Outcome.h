// How the session ended, judged from the entries of its logs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reader/EventTable.h"
#include "reader/LogSet.h"

namespace sentiq {

struct Outcome {
  std::string word;  // crashed, hung, ended, shutdown, power-loss, asleep or unknown.
  Severity severity;
  std::string text;
};

/// From Canvix's start to the last line of the session and watchdog logs; the initial log tells of the time before.
struct SessionSpan {
  std::optional<Instant> begin;
  std::optional<Instant> end;
  std::chrono::minutes offset{};

  bool contains(Instant time) const;
};

SessionSpan sessionSpan(const LogSet& logs);

Outcome judgeOutcome(const LogSet& logs, const SessionSpan& span);

/// What befell Canvix and the machine before the session, newest first: one line each for the last crash or
/// hang and the last time the machine went down.
std::vector<Outcome> judgeBefore(const LogSet& logs, const SessionSpan& span);

}  // namespace sentiq
