// `sentiq-logs summary`, `metrics` and `report`: all that is read, then shown as one view.
#pragma once

#include <string>
#include <vector>

#include "reader/commands/PageFile.h"
#include "reader/commands/Streams.h"
#include "reader/views/MetricsTable.h"

namespace sentiq {

/// What happened, and the figures behind it. @param json one object for each session instead of text.
void showSummary(const std::vector<std::string>& inputs, bool json, const Streams& streams);

/// The ten-second records as a table.
void showMetrics(const std::vector<std::string>& inputs, TableForm form, const Streams& streams);

struct ReportRequest {
  std::vector<std::string> inputs;
  PageRequest page;
};

/// Everything as one page.
void writeReport(const ReportRequest& request, const Streams& streams);

}  // namespace sentiq
