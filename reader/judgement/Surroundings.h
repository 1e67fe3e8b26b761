// What else the entries of a session tell: what went before its end, sleeps, the clock.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reader/judgement/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// @param until the failure or the fall of the machine.
/// @param hangsToo whether a hang is something that went before.
std::vector<Before> whatWentBefore(const Session& session, Instant until, bool hangsToo);

/// As far as the logs tell.
struct Sleep {
  std::optional<Instant> begin;
  std::optional<Instant> end;
};

std::vector<Sleep> sleepsOf(const Session& session, const SessionSpan& span);

/// Sleeps, standby, a clock that was set.
std::vector<Statement> machineStatements(const Session& session, const SessionSpan& span);

/// The words of an entry as they stand within a sentence.
std::string inSentence(std::string words);

}  // namespace sentiq
