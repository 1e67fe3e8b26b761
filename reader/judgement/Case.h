// What a session's entries hold for whoever judges it, looked up once.
#pragma once

#include <string>
#include <vector>

#include "reader/judgement/EntryIndex.h"
#include "reader/judgement/Failures.h"
#include "reader/judgement/MachineFalls.h"
#include "reader/judgement/Sleeps.h"
#include "reader/session/Session.h"

namespace sentiq {

/// The session must outlive it.
struct Case {
  explicit Case(const Session& judged);

  std::string wordsFor(const LogEntry& entry) const { return wordsOf(session, entry); }

  const Session& session;
  EntryIndex index;
  SessionSpan span;
  WatchedProcess process;
  std::vector<Sleep> sleeps;
  std::vector<Instant> boots;
  std::vector<Failure> failures;
  std::vector<Fall> falls;
};

/// " at 2026-11-24 14:30:22.157", for a sentence; the entry must have a time.
std::string atTimeOf(const LogEntry& entry);

}  // namespace sentiq
