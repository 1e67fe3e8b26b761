// The sessions as one page: verdict, last minutes, figures, entries, logs. It needs no network, and no script to be
// read.
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

#include "reader/session/LogSet.h"

namespace sentiq {

/// What the page says of itself.
struct ReportOptions {
  Instant made;
  std::chrono::minutes offset{};  // Of local time there.
  std::string program;            // Name and version.
};

/// @param logs read with their raw lines kept.
void writeHtmlReport(const LogSet& logs, const ReportOptions& options, std::ostream& out);

}  // namespace sentiq
