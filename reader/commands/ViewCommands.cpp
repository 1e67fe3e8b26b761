#include "reader/commands/ViewCommands.h"

#include <ostream>

#include "reader/commands/Inputs.h"
#include "reader/views/HtmlReport.h"
#include "reader/views/Summary.h"

namespace sentiq {

void showSummary(const std::vector<std::string>& inputs, bool json, const Streams& streams) {
  const LogSet logs = readInputs(inputs, Keep::WhatMatters, streams);
  if (!json && !logs.files.empty()) {
    streams.out << summaryText(logs, streams.colour, streams.width);
  }
  for (std::size_t i = 0; json && i < logs.sessions.size(); ++i) {
    streams.out << summaryJson(logs, logs.sessions[i]) << '\n';
  }
}

void showMetrics(const std::vector<std::string>& inputs, TableForm form, const Streams& streams) {
  const LogSet logs = readInputs(inputs, Keep::WhatMatters, streams);
  sayLeftOut(logs, streams.messages);
  if (!logs.files.empty()) {
    writeMetrics(logs, form, streams.width, streams.out);
  }
}

void writeReport(const ReportRequest& request, const Streams& streams) {
  if (!sparesLogs(request.page, findLogs(request.inputs), streams.messages)) {
    return;
  }
  const LogSet logs = readInputs(request.inputs, Keep::RawLines, streams);
  sayLeftOut(logs, streams.messages);
  if (logs.files.empty()) {
    return;
  }
  writePageFile(
      request.page, "all that the logs hold",
      [&](const PageOptions& options, std::ostream& out) { writeHtmlReport(logs, options, out); }, streams);
}

}  // namespace sentiq
