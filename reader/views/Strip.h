// The last minutes around the end of a session: each thing that lasted or happened with its name and its place in time.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "reader/session/Judgement.h"
#include "reader/session/Session.h"
#include "reader/views/Chart.h"

namespace sentiq {

/// When the machine slept, and the end of Canvix.
std::vector<ChartMark> marksOf(const Session& session, const SessionSpan& span, const Judgement& judgement);

/// HTML; nothing when the logs do not tell when the session was.
/// @param anchor what the entries' names in the page begin with.
/// @returns the entries that it links to.
std::vector<const LogEntry*> writeStrip(const Session& session, const SessionSpan& span, const Judgement& judgement,
                                        const std::string& anchor, std::ostream& out);

}  // namespace sentiq
