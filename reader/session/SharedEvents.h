// What happened while one session ran may stand in the logs of another one only: in the copies of the event log that the
// next session on the machine made.
#pragma once

#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

/// Gives each session the events with a meaning from its time on that only other sessions in its folder hold, and the
/// next one's copies that reach back to its end.
void shareEvents(std::vector<Session>& sessions);

}  // namespace sentiq
