// `sentiq-logs report`: everything as one page.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reader/commands/Streams.h"
#include "reader/input/LogTime.h"

namespace sentiq {

struct ReportRequest {
  std::vector<std::string> inputs;
  std::string output;  // A path. What stands there is replaced once the page is whole, and never one of the inputs.
  bool open = false;   // In the browser.
  std::optional<LogTime> made{};  // What the page says of when it was made: now, without it.
  std::string program{};          // So, by which program.
};

void writeReport(const ReportRequest& request, const Streams& streams);

}  // namespace sentiq
