// How the session ended, judged from the entries of its session.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reader/session/EventTable.h"
#include "reader/session/Session.h"

namespace sentiq {

struct Outcome {
  std::string word;  // crashed, hung, ended, shutdown, power-loss, asleep or unknown.
  Severity severity;
  std::string text;                    // UTF-8, clean.
  const LogEntry* evidence = nullptr;  // In the logs: what the judgement rests on, when it is one entry.
};

/// A crash in words for scripts: what it happened in. Empty where the event does not tell.
struct CrashPlace {
  std::string module;
  std::string version;
  std::string exception;
  std::string offset;
};

CrashPlace crashPlace(const EventRecord& event);

/// From Canvix's start to the last line of the session and watchdog logs; the initial log tells of the time before.
struct SessionSpan {
  std::optional<Instant> begin;
  std::optional<Instant> end;
  std::chrono::minutes offset{};

  bool contains(Instant time) const;
};

SessionSpan sessionSpan(const Session& session);

Outcome judgeOutcome(const Session& session, const SessionSpan& span);

/// What befell Canvix and the machine before the session, newest first: one line each for the last crash or
/// hang and the last time the machine went down.
std::vector<Outcome> judgeBefore(const Session& session, const SessionSpan& span);

}  // namespace sentiq
