// A figure over time as an SVG drawing with its figures in words and in a table.
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

#include "reader/session/LogTime.h"

namespace sentiq {

struct ChartPoint {
  Instant time;
  double value;
};

struct ChartMark {
  Instant time;
  std::string letter;  // Stands above the line.
  std::string name;
};

struct Chart {
  std::string id;  // Unique in the page.
  std::string title;
  std::string unit;
  double top = 0;                  // The value axis goes from 0 to here.
  std::vector<ChartPoint> points;  // In time order.
  std::vector<ChartMark> marks;
  std::chrono::minutes offset{};
};

/// HTML; at least one point.
void writeChart(const Chart& chart, std::ostream& out);

}  // namespace sentiq
