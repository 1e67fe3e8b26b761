// What else the entries of a session tell: what went before its end, sleeps, standby, the clock.
#pragma once

#include <vector>

#include "reader/judgement/EntryIndex.h"
#include "reader/judgement/Judgement.h"
#include "reader/judgement/Sleeps.h"

namespace sentiq {

/// @param until the failure or the fall of the machine.
/// @param hangsToo whether a hang is something that went before.
std::vector<Before> whatWentBefore(const Session& session, const EntryIndex& index, Instant until, bool hangsToo);

/// Sleeps, standby, a clock that was set, during the session.
std::vector<Statement> machineStatements(const Session& session, const EntryIndex& index, const SessionSpan& span,
                                         const std::vector<Sleep>& sleeps);

}  // namespace sentiq
