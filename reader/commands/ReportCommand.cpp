#include "reader/commands/ReportCommand.h"

#include "reader/commands/Inputs.h"
#include "reader/views/HtmlReport.h"

namespace sentiq {

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
