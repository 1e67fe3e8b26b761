// What else there is to say of a session once it is judged: other instances, the time after it and before it, how the
// machine was meanwhile.
#pragma once

#include "reader/judgement/Case.h"
#include "reader/judgement/Judgement.h"

namespace sentiq {

/// Adds them to the others of the judgement, which has its outcome and evidence.
/// @param own the failure that ended the session, if one did.
void addRemarks(const Case& known, const Failure* own, Judgement& judgement);

}  // namespace sentiq
