#include "reader/views/page/Chart.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string_view>

#include "reader/views/page/ChartRecords.h"
#include "reader/views/page/TimeAxis.h"
#include "reader/views/page/ValueAxis.h"

namespace sentiq {
namespace {

using namespace std::chrono_literals;

// What the drawings of a session have in common; kept as long as any of its places may be written.
struct Charts {
  std::vector<ChartRecord> records;
  std::vector<ChartMark> marks;
  std::vector<Figure> figures;  // Of which there are values.
  std::chrono::minutes offset{};
};
using SharedCharts = std::shared_ptr<const Charts>;

struct Range {
  std::string_view name;
  std::string_view title;
  Instant first;
  Instant last;
  bool chosen = false;
};

// What is known of one figure.
struct Point {
  const ChartRecord* record;
  double value;
  bool gap;  // Before it.
};

std::vector<Point> pointsOf(const Charts& charts, const Figure& figure, const Range& range) {
  std::vector<Point> points;
  bool gap = false;
  for (const ChartRecord& record : charts.records) {
    if (record.time < range.first || record.time > range.last) {
      continue;
    }
    gap = gap || record.gap;
    if (const std::optional<double> value = figure.value(*record.record)) {
      points.push_back({&record, *value, gap});
      gap = false;
    } else {
      gap = true;
    }
  }
  return points;
}

// In hundredths of the drawing's width and height, with a new part behind each gap.
std::string linePath(const std::vector<Point>& points, const ValueAxis& values, const TimeAxis& times) {
  std::string path;
  const auto joined = [&](std::size_t i) { return i > 0 && i < points.size() && !points[i].gap; };
  for (std::size_t i = 0; i < points.size(); ++i) {
    path += (joined(i) ? 'L' : 'M') + times.at(points[i].record->time) + ' ' + values.at(points[i].value);
    path += joined(i) || joined(i + 1) ? "" : "h.5";  // A point by itself is seen, too.
  }
  return path;
}

void addMarks(const Charts& charts, const TimeAxis& times, Places& places) {
  std::vector<ChartMark> moments;
  std::vector<ChartMark> spans;
  for (const ChartMark& mark : charts.marks) {
    if (mark.to >= times.first() && mark.from <= times.last()) {
      (mark.from == mark.to ? moments : spans).push_back(mark);
    }
  }
  const auto place = [times](const ChartMark& mark) {
    Places drawn;
    drawn.text("at", times.at(mark.from));
    drawn.text("width", times.width(mark.from, mark.to));
    drawn.text("name", mark.name);
    drawn.text("severity", std::string(severityName(mark.severity)));
    return drawn;
  };
  places.list("spans", std::move(spans), place);
  places.list("marks", std::move(moments), place);
}

// What is left of a total, or how charged the battery is.
void addShare(const Figure& figure, const Point& last, const Point& extreme, const ValueAxis& values, Places& places) {
  constexpr double low = 10;
  const std::optional<double> total = figure.total(*last.record->record);
  const bool known = total && *total > 0;
  const double lowest = known ? 100 * extreme.value / *total : 100;
  places.text("total", known && figure.unit != "%" ? values.show(*total) : "");
  places.text("share", known ? showNumber(100 * last.value / *total, 0) : "");
  places.flag("isLow", known && lowest < low);
  places.flag("notLow", known && lowest >= low);
}

Places figurePlaces(const SharedCharts& charts, const Figure& figure, const Range& range) {
  Places places;
  places.text("title", std::string(figure.title));
  const std::vector<Point> points = pointsOf(*charts, figure, range);
  if (points.empty()) {
    return places;
  }
  const auto [least, most] = std::minmax_element(points.begin(), points.end(),
                                                 [](const Point& a, const Point& b) { return a.value < b.value; });
  const ValueAxis values(figure.unit, least->value, most->value);
  const TimeAxis times(range.first, range.last, charts->offset);
  const Point& extreme = figure.least ? *least : *most;
  values.addPlaces(places);
  times.addTicks(places);
  addMarks(*charts, times, places);
  addShare(figure, points.back(), extreme, values, places);
  places.text("first", values.show(points.front().value));
  places.text("last", values.show(points.back().value));
  places.text("lastNumber", values.number(points.back().value));
  places.text("which", figure.least ? "lowest" : "highest");
  places.text("extreme", values.show(extreme.value));
  const LogTime& time = extreme.record->record->time;
  places.text("extremeTime", secondText(time.instant, time.offset));
  places.text("cut", values.cutAt());
  places.text("path", linePath(points, values, times));
  return places;
}

std::string milliseconds(Instant time) {
  return std::to_string(std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch()).count());
}

Places rangePlaces(const SharedCharts& charts, const Range& range) {
  Places places;
  places.text("range", std::string(range.name));
  places.text("rangeTitle", std::string(range.title));
  places.flag("chosen", range.chosen);
  places.text("from", milliseconds(range.first));
  places.text("until", milliseconds(range.last));
  places.list("figures", charts->figures,
              [charts, range](const Figure& figure) { return figurePlaces(charts, figure, range); });
  return places;
}

Places recordPlaces(const SharedCharts& charts, const ChartRecord& placed) {
  const LogTime& time = placed.record->time;
  Places places;
  places.text("at", milliseconds(placed.time));
  places.text("date", dateText(time.instant, time.offset));
  places.text("clock", secondText(time.instant, time.offset));
  places.list("cells", charts->figures, [record = placed.record](const Figure& figure) {
    const std::optional<double> value = figure.value(*record);
    Places cell;
    cell.text("value", value ? showNumber(*value, 0) : "");
    return cell;
  });
  return places;
}

// Those that hold less than all, when they hold records.
std::vector<Range> rangesOf(const PageSession& page, const Charts& charts) {
  const Instant end = page.end.value_or(charts.records.back().time);
  const Instant last = std::max(end, charts.records.back().time);
  Instant first = std::min(charts.records.front().time, page.begin.value_or(end));
  std::vector<Range> ranges;
  const auto add = [&](std::string_view name, std::string_view title, std::chrono::minutes length) {
    const Instant from = end - length;
    if (from > first && charts.records.back().time > from) {
      ranges.push_back({name, title, from, std::min(last, Instant(end + 15s))});
    }
  };
  add("five", "Last five minutes", 5min);
  add("thirty", "Last thirty minutes", 30min);
  ranges.push_back({"all", "All", first, last});
  ranges[ranges.size() > 1 ? 1 : 0].chosen = true;
  return ranges;
}

}  // namespace

void addCharts(const PageSession& page, const std::vector<ChartMark>& marks, Places& places) {
  auto charts = std::make_shared<Charts>(Charts{chartRecords(page), marks, {}, page.offset});
  for (const Figure& figure : allFigures()) {
    if (std::any_of(charts->records.begin(), charts->records.end(),
                    [&](const ChartRecord& record) { return figure.value(*record.record).has_value(); })) {
      charts->figures.push_back(figure);
    }
  }
  const SharedCharts shared = charts;
  std::vector<Range> ranges = charts->records.empty() ? std::vector<Range>() : rangesOf(page, *charts);
  places.flag("choice", ranges.size() > 1);
  places.flag("thinned", charts->records.size() < page.records.size());
  places.list("ranges", std::move(ranges), [shared](const Range& range) { return rangePlaces(shared, range); });
  places.list("columns", shared->figures, [](const Figure& figure) {
    Places column;
    column.text("column", std::string(figure.title) + ", " + std::string(figure.unit));
    return column;
  });
  places.list("records", shared->records.size(),
              [shared](std::size_t i) { return recordPlaces(shared, shared->records[i]); });
}

}  // namespace sentiq
