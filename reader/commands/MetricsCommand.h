// `sentiq-logs metrics`: the ten-second records as a table.
#pragma once

#include <string>
#include <vector>

#include "reader/commands/Streams.h"
#include "reader/views/MetricsTable.h"

namespace sentiq {

void showMetrics(const std::vector<std::string>& inputs, TableForm form, const Streams& streams);

}  // namespace sentiq
