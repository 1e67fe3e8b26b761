// What changed on the machine in the days before a session's end.
#pragma once

#include <vector>

#include "reader/judgement/Case.h"
#include "reader/judgement/Judgement.h"

namespace sentiq {

/// Newest first, each once: of several that differ in their version only the newest one of a kind of update that comes
/// every day. @param end the session's. @param canvixVersion of this session; empty when its logs do not tell.
std::vector<Change> changesBefore(const Case& known, Instant end, const std::string& canvixVersion);

}  // namespace sentiq
