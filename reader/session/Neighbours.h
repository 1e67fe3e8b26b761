// What the logs of one session tell of another one on the same machine: the copies of the event log know of all.
#pragma once

#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

/// Adds to each session what the other ones in its folder know of it: events with a meaning from its begin until the
/// next one has begun (entries marked as borrowed), copies made later that reach back to its end, later starts of
/// Windows; when the others exited; and what the one before it was like. Those whose events name different computers
/// are of different machines.
void tellNeighbours(std::vector<Session>& sessions);

}  // namespace sentiq
