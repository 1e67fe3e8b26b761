// All entries of a session but the records: newest first, each kind once a day with its repetitions folded into it.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <set>
#include <string>

#include "reader/judgement/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// The name of an entry in the page.
std::string entryAnchor(const std::string& prefix, std::size_t entry);

/// HTML.
/// @param linked indices of the entries that the page links to, which get a row and a name.
void writeEntries(const Session& session, const SessionSpan& span, const std::set<std::size_t>& linked,
                  const std::string& prefix, std::ostream& out);

}  // namespace sentiq
