#include "reader/views/Chart.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string_view>

#include "reader/views/HtmlText.h"
#include "reader/views/TimeAxis.h"

namespace sentiq {
namespace {

constexpr std::size_t mostReadings = 360;
constexpr std::chrono::seconds longestStep{30};  // Where a line is broken: records come every ten seconds.

using Value = std::optional<double>;

struct Figure {
  std::string_view title;
  std::string_view unit;
  bool least;  // Whether it is the lowest or the highest value that matters.
  Value (*value)(const MetricSample&);
};

constexpr std::array<Figure, 5> figures{
    Figure{"Free disk space", "MiB", true, [](const MetricSample& r) -> Value { return r.freeDisk; }},
    Figure{"Free page file", "MiB", true, [](const MetricSample& r) -> Value { return r.freeSwap; }},
    Figure{"Battery", "%", true, [](const MetricSample& r) -> Value { return r.battery; }},
    Figure{"Memory of Canvix", "MiB", false, [](const MetricSample& r) -> Value { return r.memory; }},
    Figure{"Threads of Canvix", "threads", false, [](const MetricSample& r) -> Value { return r.threads; }},
};

// One record, or as many neighbours as a long session needs to be drawn with few points.
struct Reading {
  Instant from;
  Instant to;
  std::array<Value, figures.size()> values{};
};

std::vector<Reading> readingsOf(const Session& session) {
  const std::size_t most = (session.metrics.size() + mostReadings - 1) / mostReadings;
  std::vector<Reading> readings;
  std::size_t taken = most;
  for (const LogEntry& entry : session.entries) {
    if (!entry.metric) {
      continue;
    }
    const MetricSample& record = session.metrics[*entry.metric];
    const Instant time = record.time.instant;
    if (taken == most || time - readings.back().to > longestStep) {
      readings.push_back({time, time});
      taken = 0;
    }
    Reading& reading = readings.back();
    reading.to = time;
    ++taken;
    for (std::size_t i = 0; i < figures.size(); ++i) {
      const Value value = figures[i].value(record);
      Value& kept = reading.values[i];
      if (value && (!kept || (figures[i].least ? *value < *kept : *value > *kept))) {
        kept = value;
      }
    }
  }
  return readings;
}

// From a round value to a round value, in the unit that reads best.
struct ValueAxis {
  std::string unit;
  double scale = 1;  // What a record's value is divided by.
  double step = 25;
  double low = 0;
  double high = 100;
  int decimals = 0;

  std::string tick(double value) const { return showNumber(value, decimals) + ' ' + unit; }
  int finer() const { return scale == 1 ? decimals : decimals + 1; }  // Digits of a value between the ticks.
  std::string show(double value) const { return showNumber(value / scale, finer()) + ' ' + unit; }
  double percent(double value) const { return 100 - 100 * (value / scale - low) / (high - low); }
};

ValueAxis axisFor(std::string_view unit, double least, double most) {
  ValueAxis axis{std::string(unit)};
  if (unit == "%") {
    return axis;
  }
  if (unit == "MiB" && most >= 10 * 1024) {
    axis.unit = "GiB";
    axis.scale = 1024;
  }
  const double low = least / axis.scale;
  const double high = most / axis.scale;
  const double range = std::max({high - low, high / 1000, 1 / axis.scale});
  const double power = std::pow(10, std::floor(std::log10(range / 3)));
  const double steps = range / 3 / power;
  axis.step = power * (steps <= 1 ? 1 : steps <= 2 ? 2 : steps <= 5 ? 5 : 10);
  axis.step = axis.scale == 1 ? std::max(1.0, axis.step) : axis.step;
  axis.low = low <= range ? 0 : std::floor(low / axis.step) * axis.step;
  axis.high = std::max(std::ceil(high / axis.step) * axis.step, axis.low + axis.step);
  if (low == high && axis.low > 0) {  // In the middle.
    axis.low -= axis.step;
  }
  axis.decimals = std::max(0, static_cast<int>(-std::floor(std::log10(axis.step) + 1e-9)));
  return axis;
}

// What is known of one figure.
struct Point {
  Instant from;
  Instant to;
  double value;
};

// In hundredths of the drawing's width and height, with a new part behind each gap.
std::string linePath(const std::vector<Point>& points, const ValueAxis& values, const TimeAxis& times) {
  std::string path;
  const auto joined = [&](std::size_t i) {
    return i > 0 && i < points.size() && points[i].from - points[i - 1].to <= longestStep;
  };
  for (std::size_t i = 0; i < points.size(); ++i) {
    std::string x = times.at(points[i].from);
    x.pop_back();
    path += (joined(i) ? 'L' : 'M') + x + ' ' + showNumber(values.percent(points[i].value), 2);
    path += joined(i) || joined(i + 1) ? "" : "h.5";  // A point by itself is seen, too.
  }
  return path;
}

void writeDrawing(const std::vector<Point>& points, const ValueAxis& values, const TimeAxis& times,
                  const std::vector<ChartMark>& marks, std::ostream& out) {
  out << R"(<div class="chart" data-low=")" << showNumber(values.low, values.decimals) << R"(" data-high=")"
      << showNumber(values.high, values.decimals) << R"(" data-scale=")" << values.scale << R"(" data-unit=")"
      << values.unit << R"(" data-decimals=")" << values.finer() << R"("><svg aria-hidden="true">)";
  for (const ChartMark& mark : marks) {
    if (mark.from == mark.to) {
      times.writeLine("mark", mark.from, htmlText(mark.name), out);
    } else {
      out << R"(<rect class="asleep" x=")" << times.at(mark.from) << R"(" width=")" << times.width(mark.from, mark.to)
          << R"(" height="100%"><title>)" << htmlText(mark.name) << "</title></rect>\n";
    }
  }
  const long steps = std::lround((values.high - values.low) / values.step);
  for (long i = 0; i <= steps; ++i) {
    const double value = values.low + static_cast<double>(i) * values.step;
    const std::string y = showNumber(values.percent(value * values.scale), 2) + '%';
    out << R"(<line class="grid" x2="100%" y1=")" << y << R"(" y2=")" << y << R"("/><text x="-12" y=")" << y
        << R"(" dy="4" text-anchor="end">)" << values.tick(value) << "</text>\n";
  }
  times.writeGrid(out);
  out << "<svg y=\"100%\">";
  times.writeTimes("16", out);
  out << R"(</svg><svg viewBox="0 0 100 100" preserveAspectRatio="none" height="100%"><path d=")"
      << linePath(points, values, times) << "\"/></svg>\n";
  if (values.low > 0) {  // The sign of an axis that leaves out a part.
    out << R"(<svg y="100%"><path class="break" d="M-6 -4l12 -6M-6 1l12 -6"/></svg>)";
  }
  out << R"(<line class="now unseen" y2="100%"/><circle class="unseen" r="4"/></svg></div>)";
}

void writeChart(const std::vector<Reading>& readings, std::size_t index, const TimeAxis& times,
                std::chrono::minutes offset, const std::vector<ChartMark>& marks, std::ostream& out) {
  const Figure& figure = figures[index];
  std::vector<Point> points;
  for (const Reading& reading : readings) {
    if (const Value& value = reading.values[index]) {
      points.push_back({reading.from, reading.to, *value});
    }
  }
  const auto [least, most] = std::minmax_element(points.begin(), points.end(),
                                                 [](const Point& a, const Point& b) { return a.value < b.value; });
  const ValueAxis values = axisFor(figure.unit, least->value, most->value);
  const Point& extreme = figure.least ? *least : *most;
  out << "<figure><figcaption><strong>" << figure.title << "</strong>: " << values.show(points.front().value)
      << " at first, " << values.show(points.back().value) << " at last, " << (figure.least ? "lowest " : "highest ")
      << values.show(extreme.value) << " at " << showTime(extreme.from, offset).substr(11, 8) << '.';
  if (values.low > 0) {
    out << " The axis begins at " << values.tick(values.low) << ", not at 0.";
  }
  out << " <output></output></figcaption>\n";
  writeDrawing(points, values, times, marks, out);
  out << "</figure>\n";
}

void writeTable(const std::vector<Reading>& readings, const std::vector<std::size_t>& shown,
                std::chrono::minutes offset, std::ostream& out) {
  out << "<details><summary>These figures as a table</summary><div class=\"wide\" "
         "tabindex=\"0\"><table><thead><tr><th scope=\"col\">Local time</th>";
  for (const std::size_t figure : shown) {
    out << "<th scope=\"col\">" << figures[figure].title << ", " << figures[figure].unit << "</th>";
  }
  out << "</tr></thead><tbody>\n";
  for (const Reading& reading : readings) {
    out << "<tr><td class=\"time\">" << showTime(reading.from, offset).substr(0, 19);
    for (const std::size_t figure : shown) {
      out << "<td class=\"number\">" << (reading.values[figure] ? showNumber(*reading.values[figure], 0) : "");
    }
    out << '\n';
  }
  out << "</tbody></table></div></details>\n";
}

}  // namespace

void writeCharts(const Session& session, const std::vector<ChartMark>& marks, std::ostream& out) {
  const std::vector<Reading> readings = readingsOf(session);
  if (readings.empty()) {
    out << "<p>The logs hold no ten-second records.</p>\n";
    return;
  }
  const std::chrono::minutes offset = session.metrics.back().time.offset;
  Instant first = readings.front().from;
  Instant last = readings.back().to;
  for (const ChartMark& mark : marks) {
    first = std::min(first, mark.from);
    last = std::max(last, mark.to);
  }
  const TimeAxis times(first, last, offset);
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < figures.size(); ++i) {
    if (std::any_of(readings.begin(), readings.end(), [i](const Reading& r) { return r.values[i].has_value(); })) {
      shown.push_back(i);
    }
  }
  const auto milliseconds = [offset](Instant time) {
    return std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch() + offset).count();
  };
  out << R"(<div class="figures" data-first=")" << milliseconds(times.first()) << R"(" data-last=")"
      << milliseconds(times.last()) << R"("><p class="moment" hidden><label>Figures at )"
      << R"(<input type="range" min="0"></label></p>)";
  for (const std::size_t figure : shown) {
    writeChart(readings, figure, times, offset, marks, out);
  }
  if (readings.size() < session.metrics.size()) {
    out << "<p>Each point stands for several records: for the lowest free space and charge, the highest use.</p>\n";
  }
  writeTable(readings, shown, offset, out);
  out << "</div>\n";
}

}  // namespace sentiq
