// The session as one page: summary, charts, events, raw lines. The page needs no network, and no script to be read.
#pragma once

#include <iosfwd>

#include "reader/session/LogSet.h"

namespace sentiq {

/// @param logs read with their raw lines kept.
void writeHtmlReport(const LogSet& logs, std::ostream& out);

}  // namespace sentiq
