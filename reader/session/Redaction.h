// Logs with stand-ins in place of names, before anything looks at them: no view knows of it.
#pragma once

#include "reader/session/KnownNames.h"
#include "reader/session/LogSet.h"

namespace sentiq {

/// @param names that were learnt from all the lines.
void redact(LogSet& logs, const KnownNames& names);
void redact(Session& session, const KnownNames& names);
void redact(std::vector<std::string>& texts, const KnownNames& names);

}  // namespace sentiq
