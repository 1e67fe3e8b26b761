#include "reader/views/Chart.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "reader/views/HtmlText.h"

namespace sentiq {
namespace {

constexpr double width = 760;
constexpr double height = 200;
constexpr double left = 110;
constexpr double right = 12;
constexpr double above = 26;
constexpr double below = 30;
constexpr std::size_t mostPoints = 360;
constexpr std::size_t mostRows = 25;

// Where the line is broken: records come every ten seconds.
constexpr std::chrono::seconds longestStep{60};

class Scale {
 public:
  explicit Scale(const Chart& chart) : first_(chart.points.front().time), last_(chart.points.back().time) {
    for (const ChartMark& mark : chart.marks) {
      first_ = std::min(first_, mark.time);
      last_ = std::max(last_, mark.time);
    }
    top_ = chart.top > 0 ? chart.top : 1;
  }
  double xOf(Instant time) const {
    const double span = std::max<double>(1, static_cast<double>((last_ - first_).count()));
    return left + (width - left - right) * static_cast<double>((time - first_).count()) / span;
  }
  std::string x(Instant time) const { return rounded(xOf(time)); }
  std::string y(double value) const {
    return rounded(above + (height - above - below) * (1 - std::clamp(value / top_, 0.0, 1.0)));
  }
  Instant first() const { return first_; }
  Instant last() const { return last_; }

 private:
  static std::string rounded(double number) {
    const long long tenths = std::llround(number * 10);
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
  }

  Instant first_;
  Instant last_;
  double top_;
};

std::string showValue(double value, const std::string& unit) {
  return std::to_string(std::llround(value)) + ' ' + unit;
}

// The lowest point of each of so many stretches: what runs out is what matters.
std::vector<ChartPoint> thinned(const std::vector<ChartPoint>& points, std::size_t most) {
  const std::size_t stretch = (points.size() + most - 1) / most;
  std::vector<ChartPoint> kept;
  for (std::size_t i = 0; i < points.size(); i += stretch) {
    const auto begin = points.begin() + static_cast<std::ptrdiff_t>(i);
    const auto end = points.begin() + static_cast<std::ptrdiff_t>(std::min(points.size(), i + stretch));
    kept.push_back(
        *std::min_element(begin, end, [](const ChartPoint& a, const ChartPoint& b) { return a.value < b.value; }));
  }
  return kept;
}

// Positions of the points, with a new part of the line behind each gap.
std::string linePath(const std::vector<ChartPoint>& points, const Scale& scale, Ticks longest) {
  std::string path;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const bool joined = i > 0 && points[i].time - points[i - 1].time <= longest;
    path += (joined ? 'L' : 'M') + scale.x(points[i].time) + ' ' + scale.y(points[i].value);
    if (!joined) {
      path += "h0.1";  // A point by itself is seen, too.
    }
  }
  return path;
}

// Without the milliseconds.
std::string shortTime(Instant time, std::chrono::minutes offset) {
  return showTime(time, offset).substr(0, 19);
}

std::string describe(const Chart& chart) {
  const auto [low, high] =
      std::minmax_element(chart.points.begin(), chart.points.end(),
                          [](const ChartPoint& a, const ChartPoint& b) { return a.value < b.value; });
  std::string text =
      "From " + showValue(chart.points.front().value, chart.unit) + " at " +
      shortTime(chart.points.front().time, chart.offset) + " to " + showValue(chart.points.back().value, chart.unit) +
      " at " + shortTime(chart.points.back().time, chart.offset) + "; lowest " + showValue(low->value, chart.unit) +
      " at " + shortTime(low->time, chart.offset) + ", highest " + showValue(high->value, chart.unit) + '.';
  for (const ChartMark& mark : chart.marks) {
    text += ' ' + mark.name + " at " + shortTime(mark.time, chart.offset) + '.';
  }
  return text;
}

void writeAxes(const Chart& chart, const Scale& scale, std::ostream& out) {
  for (const double part : {0.0, 0.5, 1.0}) {
    const std::string y = scale.y(part * (chart.top > 0 ? chart.top : 1));
    out << R"(<line class="grid" x1=")" << left << R"(" x2=")" << width - right << R"(" y1=")" << y << R"(" y2=")" << y
        << R"("/><text x=")" << left - 8 << R"(" y=")" << y << R"(" dy="4" text-anchor="end">)"
        << htmlText(showValue(part * chart.top, chart.unit)) << "</text>\n";
  }
  out << R"(<text x=")" << left << R"(" y=")" << height - 8 << R"(">)" << shortTime(scale.first(), chart.offset)
      << R"(</text><text x=")" << width - right << R"(" y=")" << height - 8 << R"(" text-anchor="end">)"
      << shortTime(scale.last(), chart.offset) << "</text>\n";
}

// Letters of marks that stand close together go into one text, else they lie on top of each other.
void writeMarks(const Chart& chart, const Scale& scale, std::ostream& out) {
  constexpr double letterWidth = 16;
  std::string letters;
  double lettersAt = 0;
  const auto writeLetters = [&] {
    out << R"(<text class="mark" x=")" << std::lround(lettersAt) << R"(" y=")" << above - 10
        << R"(" text-anchor="middle">)" << htmlText(letters) << "</text>\n";
  };
  for (const ChartMark& mark : chart.marks) {
    const std::string x = scale.x(mark.time);
    out << R"(<line class="mark" x1=")" << x << R"(" x2=")" << x << R"(" y1=")" << above - 4 << R"(" y2=")"
        << height - below << "\"/>\n";
    if (!letters.empty() && scale.xOf(mark.time) - lettersAt > letterWidth) {
      writeLetters();
      letters.clear();
    }
    lettersAt = letters.empty() ? scale.xOf(mark.time) : lettersAt;
    letters += mark.letter;
  }
  if (!letters.empty()) {
    writeLetters();
  }
}

void writeTable(const Chart& chart, std::ostream& out) {
  out << "<details><summary>" << htmlText(chart.title)
      << R"( as a table</summary><table><thead><tr><th scope="col">Time)"
      << R"(</th><th scope="col">)" << htmlText(chart.unit) << "</th></tr></thead><tbody>\n";
  for (const ChartPoint& point : thinned(chart.points, mostRows)) {
    out << "<tr><td>" << showTime(point.time, chart.offset) << R"(</td><td class="number">)"
        << std::llround(point.value) << "</td></tr>\n";
  }
  out << "</tbody></table></details>\n";
}

}  // namespace

void writeChart(const Chart& chart, std::ostream& out) {
  const Scale scale(chart);
  const std::vector<ChartPoint> points = thinned(chart.points, mostPoints);
  const Ticks longest = std::max<Ticks>(
      longestStep, 3 * (chart.points.back().time - chart.points.front().time) / static_cast<std::int64_t>(mostPoints));
  out << "<figure>\n<svg viewBox=\"0 0 " << width << ' ' << height << R"(" role="img" aria-labelledby=")" << chart.id
      << "-title " << chart.id << "-text\">\n<title id=\"" << chart.id << R"(-title">)" << htmlText(chart.title)
      << "</title>\n<desc id=\"" << chart.id << R"(-text">)" << htmlText(describe(chart)) << "</desc>\n";
  writeAxes(chart, scale, out);
  out << R"(<path class="line" d=")" << linePath(points, scale, longest) << "\"/>\n";
  writeMarks(chart, scale, out);
  out << "</svg>\n<figcaption><strong>" << htmlText(chart.title) << ".</strong> " << htmlText(describe(chart))
      << "</figcaption>\n";
  writeTable(chart, out);
  out << "</figure>\n";
}

}  // namespace sentiq
