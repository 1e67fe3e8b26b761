// Exit lines and what follows them name no process. When Canvix is started again before its last companion has ended,
// both write into the same files: what is the older one's then stands below the newer one's header, and is given back
// here.
//
// An exit line is not that of the session under whose header it stands when records of that session follow it, or when
// its own exit is told elsewhere. It is that of the session whose other log tells an exit at that time, or whose
// records end there. The two copies of the event log that follow an exit (at once, and two minutes later) go with it.
#pragma once

#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

/// @param sessions gets a session without a name for exits of which nothing else is there.
void giveLinesToTheirOwners(std::vector<Session>& sessions);

}  // namespace sentiq
