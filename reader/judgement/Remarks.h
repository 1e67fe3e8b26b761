// What else there is to say of a session once it is judged: other instances, the time after it and before it.
#pragma once

#include <vector>

#include "reader/judgement/Case.h"
#include "reader/judgement/Judgement.h"

namespace sentiq {

/// @param judgement with its outcome and evidence. @param own the failure that ended the session, if one did.
std::vector<Statement> remarksOn(const Case& known, const Judgement& judgement, const Failure* own);

}  // namespace sentiq
