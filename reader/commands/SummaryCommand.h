// `sentiq-logs summary`: what happened, and the figures behind it.
#pragma once

#include <string>
#include <vector>

#include "reader/commands/Streams.h"

namespace sentiq {

/// @param json one object for each session instead of text.
void showSummary(const std::vector<std::string>& inputs, bool json, const Streams& streams);

}  // namespace sentiq
