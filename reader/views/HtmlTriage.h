// Many sessions as one page: the groups, what the sessions of each have in common, and where their logs lie. It needs
// no network, and no script to be read.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "reader/views/Triage.h"
#include "reader/views/page/PageOptions.h"

namespace sentiq {

/// What the page holds beside the sessions.
struct TriagePage {
  std::size_t top = 0;              // Groups at most; 0 shows all.
  std::vector<std::string> inputs;  // Paths.
  std::vector<std::string> notes;   // What was not read, or is not whole.
};

/// The row of each session has its folder as data-folder, too, for a script that leads from there to its report.
/// @param sessions the oldest first, those without a begin before it.
void writeHtmlTriage(const std::vector<TriagedSession>& sessions, const TriagePage& page, const PageOptions& options,
                     std::ostream& out);

}  // namespace sentiq
