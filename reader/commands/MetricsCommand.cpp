#include "reader/commands/MetricsCommand.h"

#include "reader/commands/Inputs.h"

namespace sentiq {

void showMetrics(const std::vector<std::string>& inputs, TableForm form, const Streams& streams) {
  const LogSet logs = readInputs(inputs, Keep::WhatMatters, streams);
  sayLeftOut(logs, streams.messages);
  if (!logs.files.empty()) {
    writeMetrics(logs, form, streams.width, streams.out);
  }
}

}  // namespace sentiq
