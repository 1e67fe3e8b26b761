// What happened, from everything that the logs hold: the first line answers, the others say from what.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "reader/session/LogSet.h"

namespace sentiq {

/// Files of the set that are missing, damaged or left out.
std::vector<std::string> problemsOf(const LogSet& logs);

/// Of more than 15 s in the records.
std::vector<std::string> gapsOf(const Session& session);

/// One JSON object. Its problems are the damaged files of the session; when it is the only one, all that the set has.
std::string summaryJson(const LogSet& logs, const Session& session);

/// All sessions for a terminal, the newest last; how many there are, when there are several.
/// @param width of a line; 0 breaks none.
std::string summaryText(const LogSet& logs, bool colour, std::size_t width);

}  // namespace sentiq
