// Figures over time: one drawing for each, and one table for all of them.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/session/Session.h"

namespace sentiq {

/// What lies behind the lines: a stretch of time, or a moment when both times are one.
struct ChartMark {
  Instant from;
  Instant to;
  std::string name;
};

/// HTML; nothing for a figure that no record holds.
void writeCharts(const Session& session, const std::vector<ChartMark>& marks, std::ostream& out);

}  // namespace sentiq
