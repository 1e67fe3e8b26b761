// What the logs of one session tell of another one on the same machine: the copies of the event log know of all.
#pragma once

#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

/// Adds to each session what those beside it and the next one after it know of its end (entries marked as borrowed,
/// copies, starts of Windows), and what the one before it was like. Sessions are of one machine when their logs lie in
/// one folder and their events do not name different computers.
/// @param sessions the oldest first.
void tellNeighbours(std::vector<Session>& sessions);

}  // namespace sentiq
