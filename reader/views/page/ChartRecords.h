// The records that the drawings are made of, and the figures in them.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "reader/views/page/PageSession.h"

namespace sentiq {

struct Figure {
  std::string_view title;
  std::string_view unit;  // Of its values.
  bool least;             // Whether it is the lowest or the highest value that matters.
  std::optional<double> (*value)(const MetricSample&);
  std::optional<double> (*total)(const MetricSample&);  // Of which the value is what is left.
};

std::span<const Figure> allFigures();

/// All of the last half hour before the end, and of the time before it those at which a figure is at its lowest or
/// highest within a sixtieth of that time: a record is left out, but never shown with another one's value or time.
std::vector<PlacedRecord> chartRecords(const PageSession& page);

}  // namespace sentiq
