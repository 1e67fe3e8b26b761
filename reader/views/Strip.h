// The last minutes around the end of a session: each thing that lasted or happened with its name and its place in time.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <set>
#include <string>
#include <vector>

#include "reader/judgement/Judgement.h"
#include "reader/session/Session.h"
#include "reader/views/Chart.h"

namespace sentiq {

/// When the machine slept, and the end of Canvix.
std::vector<ChartMark> marksOf(const Session& session, const SessionSpan& span, const Judgement& judgement);

/// HTML; nothing when the logs do not tell when the session was.
/// @param prefix what the entries' names in the page begin with.
/// @returns indices of the entries that it links to.
std::set<std::size_t> writeStrip(const Session& session, const SessionSpan& span, const Judgement& judgement,
                                 const std::string& prefix, std::ostream& out);

}  // namespace sentiq
