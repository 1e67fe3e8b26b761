// The last minutes around the end of a session: each thing with its name and its place in time.
#pragma once

#include <vector>

#include "reader/views/page/Chart.h"
#include "reader/views/page/StripItems.h"

namespace sentiq {

/// The places of Strip.html.
void addStrip(const PageSession& page, const StripItems& strip, Places& places);

/// What of it the charts show, too: moments that matter, sleeps, falls, and the end.
std::vector<ChartMark> marksOf(const PageSession& page, const StripItems& strip);

}  // namespace sentiq
