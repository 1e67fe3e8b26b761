// The text that one sample becomes: a JSON object on one line, keys in ascending order.
#pragma once

#include <chrono>
#include <string>

#include "capture/MetricCode.h"
#include "capture/ProcessMetrics.h"
#include "capture/SystemMetrics.h"

namespace sentiq {

/// Writes the record, stamped with the current time, into text; sizes are whole mebibytes. The selection
/// decides only which of the four optional process figures are in it. Text that is not UTF-8 cannot be
/// serialised: then text stays as it was handed in. Callable on any thread.
void buildMetricRecord(const SystemMetrics& systemMetrics, const ProcessMetrics& processMetrics, std::string& text,
                       const MetricSelection& selection);

/// Days, hours, minutes and seconds from start to now: "2 03:04:05".
std::string elapsedTimeText(std::chrono::sys_seconds start, std::chrono::sys_seconds now);

}  // namespace sentiq
