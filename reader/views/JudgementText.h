// What surrounds a judgement, in words.
#pragma once

#include <string>
#include <string_view>

#include "reader/judgement/Judgement.h"

namespace sentiq {

/// Said wherever changes are listed.
constexpr std::string_view changesTitle = "What changed before it, newest first (none of it need be the cause)";

/// "Before it: the display driver was restarted, 4 s earlier"
std::string beforeText(const Before& before);

/// "driver nvlddmkm 31.0.15", "update KB5031356 (failed)"
std::string changeText(const MachineChange& change);

/// So, with how long before it.
std::string changeText(const Change& change);

}  // namespace sentiq
