// All entries of a session but the records: newest first, each kind once a day with its repetitions folded into it.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "reader/session/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// The name of an entry in the page.
std::string entryAnchor(const Session& session, const LogEntry& entry, const std::string& prefix);

/// HTML.
/// @param linked entries that the page links to, which get a row and a name.
void writeEntries(const Session& session, const SessionSpan& span, const std::vector<const LogEntry*>& linked,
                  const std::string& prefix, std::ostream& out);

}  // namespace sentiq
