// How far the copies of the event log reach: what is in none of them may have happened all the same.
#pragma once

#include <string>

#include "reader/session/Session.h"

namespace sentiq {

/// What keeps the copies of the Application events from showing every failure about an exit, as the rest of a sentence
/// ("the logs hold no copy of …"); empty when they cover it.
std::string missingAbout(const Session& session, const LogEntry& exit);

}  // namespace sentiq
