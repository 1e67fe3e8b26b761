#include "reader/commands/SummaryCommand.h"

#include <ostream>

#include "reader/commands/Inputs.h"
#include "reader/views/Summary.h"

namespace sentiq {

void showSummary(const std::vector<std::string>& inputs, bool json, const Streams& streams) {
  const LogSet logs = readInputs(inputs, Keep::WhatMatters, streams);
  if (!json && !logs.files.empty()) {
    streams.out << summaryText(logs, streams.colour, streams.width);
  }
  for (std::size_t i = 0; json && i < logs.sessions.size(); ++i) {
    streams.out << summaryJson(summarize(logs, logs.sessions[i])) << '\n';
  }
}

}  // namespace sentiq
