// Initial logs: each tells the session that it is about how it ended, and the session that wrote it what went before.
#pragma once

#include <string>
#include <vector>

#include "reader/session/GrowingSession.h"
#include "reader/session/SessionAssembly.h"

namespace sentiq {

/// @param initials whose session id is that of the session that they are about, and whose process id that of the
/// writer.
/// @param told gets what they tell, under that id.
void addInitialLogs(std::vector<GrowingSession>& sessions, std::vector<SessionAssembly::Part> initials,
                    std::vector<Session>& told);

/// Tells each what it has to be told, takes that out of told, and leaves what is about none of them. Ids need not be
/// unique between machines: computer, start of Windows and times have to fit, or nothing is told.
void tellSessions(std::vector<GrowingSession>& sessions, std::vector<Session>& told);

}  // namespace sentiq
