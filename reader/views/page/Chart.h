// Figures over time: a drawing for each, for the last minutes and for all of a session, and one table for all of them.
#pragma once

#include <string>
#include <vector>

#include "reader/views/page/PageSession.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {

/// What is shown along with the lines: a stretch of time, or a moment when both times are one.
struct ChartMark {
  Instant from;
  Instant to;
  std::string name;
  Severity severity = Severity::Notice;
};

/// The list "ranges" of Charts.html, the last one all of the session, and the list "records", the table; both empty
/// without records.
void addCharts(const PageSession& page, const std::vector<ChartMark>& marks, Places& places);

}  // namespace sentiq
