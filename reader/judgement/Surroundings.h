// What went before the end of a session.
#pragma once

#include <vector>

#include "reader/judgement/Case.h"
#include "reader/judgement/Judgement.h"

namespace sentiq {

/// @param until the failure or the fall of the machine.
/// @param hangsToo whether a hang is something that went before.
std::vector<Before> whatWentBefore(const Case& known, Instant until, bool hangsToo);

}  // namespace sentiq
