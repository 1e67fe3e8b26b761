// `sentiq-logs report`: everything as one page.
#pragma once

#include <string>
#include <vector>

#include "reader/commands/PageFile.h"
#include "reader/commands/Streams.h"

namespace sentiq {

struct ReportRequest {
  std::vector<std::string> inputs;
  PageRequest page;
};

void writeReport(const ReportRequest& request, const Streams& streams);

}  // namespace sentiq
