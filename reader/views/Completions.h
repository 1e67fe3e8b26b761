// Scripts by which shells complete the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "reader/views/CommandWords.h"

namespace sentiq {

/// "bash", "zsh", "fish", "powershell"
std::vector<std::string> completionShells();

/// @param shell one of these. @return nothing for any other.
std::string completionScript(std::string_view shell, const CommandLineWords& words);

}  // namespace sentiq
