// Colours of a terminal, one for each severity.
#pragma once

#include <string>
#include <string_view>

#include "reader/session/EventTable.h"

namespace sentiq {

std::string styled(Severity severity, std::string_view text, bool colour);

}  // namespace sentiq
