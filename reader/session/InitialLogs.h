// Initial logs: each tells the session that it is about how it ended, and the session that wrote it what went before.
#pragma once

#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

/// Each goes to the session that wrote it, and tells the one that it is about. Ids need not be unique between machines:
/// computer, start of Windows and times have to fit, or nothing is told.
/// @param initials whose session id is that of the session that they are about, and whose process id that of the
/// writer.
/// @param told what other initial logs have told, under the ids of the sessions that they are about; gets what these
/// tell. What is about none of the sessions stays.
void addInitialLogs(std::vector<Session>& sessions, std::vector<SessionPart> initials, std::vector<Session>& told);

}  // namespace sentiq
