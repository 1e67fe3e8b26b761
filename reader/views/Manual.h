// The manual page.
#pragma once

#include <string>

#include "reader/views/CommandWords.h"

namespace sentiq {

/// For man(1).
std::string manualPage(const CommandLineWords& words);

}  // namespace sentiq
