// `sentiq-logs timeline`: all entries in the order of time, or as they come.
#pragma once

#include <string>
#include <vector>

#include "reader/commands/Streams.h"
#include "reader/views/Timeline.h"

namespace sentiq {

void showTimeline(const std::vector<std::string>& inputs, const TimelineOptions& options, const Streams& streams);

/// The same lines as the logs grow, are emptied or appear, in the order in which they come; each event once. Returns
/// once it is stopped. @param inputs files, which need not be there yet, and folders.
void followTimeline(const std::vector<std::string>& inputs, const TimelineOptions& options, const Streams& streams);

}  // namespace sentiq
