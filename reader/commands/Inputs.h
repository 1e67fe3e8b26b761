// The logs that a command is given, read, and what is wrong with them said.
#pragma once

#include <string>
#include <vector>

#include "reader/commands/Streams.h"
#include "reader/session/LogSet.h"

namespace sentiq {

/// Says at once which of the inputs are not there.
/// @return the others. @param anyKind whether pipes and devices are inputs, too: reading from them cannot be stopped.
std::vector<std::string> existing(const std::vector<std::string>& inputs, bool anyKind, Messages& messages);

/// Says which of the inputs to follow are not there yet, or cannot be followed.
void sayWaitedFor(const std::vector<std::string>& inputs, Messages& messages);

/// Reads them all, and says what is missing or no log. Its exit code is about damage, too.
LogSet readInputs(const std::vector<std::string>& inputs, Keep keep, const Streams& streams);

/// Reads what can be read twice only for the names.
KnownNames namesIn(const std::vector<LogInput>& files, const Streams& streams);

/// Says what a command that shows the entries alone does not show: files that were left out, sessions that were there
/// twice.
void sayLeftOut(const LogSet& logs, Messages& messages);

/// "a.log, b.log and 7 more"
std::string someOf(const std::vector<std::string>& names);

}  // namespace sentiq
