// The sessions as one page: verdict, last minutes, figures, entries, logs. It needs no network, and no script to be
// read.
#pragma once

#include <iosfwd>

#include "reader/session/LogSet.h"
#include "reader/views/page/PageOptions.h"

namespace sentiq {

/// @param logs read with their raw lines kept.
void writeHtmlReport(const LogSet& logs, const PageOptions& options, std::ostream& out);

}  // namespace sentiq
