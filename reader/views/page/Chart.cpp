#include "reader/views/page/Chart.h"

#include <algorithm>
#include <chrono>
#include <string_view>

#include "reader/views/TextStyle.h"
#include "reader/views/TimeText.h"
#include "reader/views/page/ChartRecords.h"
#include "reader/views/page/TimeAxis.h"
#include "reader/views/page/ValueAxis.h"

namespace sentiq {
namespace {

using namespace std::chrono_literals;

// What the drawings of a session have in common.
struct Charts {
  std::vector<PlacedRecord> records;
  const std::vector<ChartMark>& marks;
  std::vector<Figure> figures;  // Of which there are values.
  std::chrono::minutes offset;
};

struct Range {
  std::string_view name;
  std::string_view title;
  Instant first;
  Instant last;
  bool chosen = false;
};

// What is known of one figure.
struct Point {
  const PlacedRecord* record;
  double value;
  bool gap;  // Before it.
};

std::vector<Point> pointsOf(const Charts& charts, const Figure& figure, const Range& range) {
  std::vector<Point> points;
  bool gap = false;
  for (const PlacedRecord& record : charts.records) {
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
  const auto place = [&](const ChartMark& mark) {
    return Places{{"at", times.at(mark.from)},
                  {"width", times.width(mark.from, mark.to)},
                  {"name", mark.name},
                  {"severity", severityName(mark.severity)}};
  };
  places.list("spans", times.within(charts.marks, /*moments=*/false), place);
  places.list("marks", times.within(charts.marks, /*moments=*/true), place);
}

// What is left of a total, or how charged the battery is.
void addShare(const Figure& figure, const Point& last, const Point& extreme, const ValueAxis& values, Places& places) {
  constexpr double low = 10;
  const double total = figure.total(*last.record->record).value_or(0);
  if (total <= 0) {
    return;
  }
  const double lowest = 100 * extreme.value / total;
  places.add({{"total", figure.unit != "%" ? values.show(total) : ""},
              {"share", showNumber(100 * last.value / total, 0)},
              {"isLow", lowest < low}});
}

Places figurePlaces(const Charts& charts, const Figure& figure, const Range& range) {
  Places places{{"title", figure.title}};
  const std::vector<Point> points = pointsOf(charts, figure, range);
  if (points.empty()) {
    return places;
  }
  const auto [least, most] = std::minmax_element(points.begin(), points.end(),
                                                 [](const Point& a, const Point& b) { return a.value < b.value; });
  const ValueAxis values(figure.unit, least->value, most->value);
  const TimeAxis times(range.first, range.last, charts.offset);
  const Point& extreme = figure.least ? *least : *most;
  const LogTime& time = extreme.record->record->time;
  values.addPlaces(places);
  times.addTicks(places);
  addMarks(charts, times, places);
  addShare(figure, points.back(), extreme, values, places);
  places.add({{"first", values.show(points.front().value)},
              {"last", values.show(points.back().value)},
              {"lastNumber", values.number(points.back().value)},
              {"which", figure.least ? "lowest" : "highest"},
              {"extreme", values.show(extreme.value)},
              {"extremeTime", secondText(time.instant, time.offset)},
              {"cut", values.cutAt()},
              {"path", linePath(points, values, times)}});
  return places;
}

std::string milliseconds(Instant time) {
  return std::to_string(std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch()).count());
}

Places rangePlaces(const Charts& charts, const Range& range) {
  Places places{{"range", range.name},
                {"rangeTitle", range.title},
                {"chosen", range.chosen},
                {"from", milliseconds(range.first)},
                {"until", milliseconds(range.last)}};
  places.list("figures", charts.figures, [&](const Figure& figure) { return figurePlaces(charts, figure, range); });
  return places;
}

Places recordPlaces(const Charts& charts, const PlacedRecord& record) {
  const LogTime& time = record.record->time;
  Places places{{"at", milliseconds(record.time)},
                {"date", dateText(time.instant, time.offset)},
                {"clock", secondText(time.instant, time.offset)}};
  places.list("cells", charts.figures, [&](const Figure& figure) {
    const std::optional<double> value = figure.value(*record.record);
    return Places{{"value", value ? showNumber(*value, 0) : ""}};
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
  Charts charts{chartRecords(page), marks, {}, page.offset};
  for (const Figure& figure : allFigures()) {
    if (std::any_of(charts.records.begin(), charts.records.end(),
                    [&](const PlacedRecord& record) { return figure.value(*record.record).has_value(); })) {
      charts.figures.push_back(figure);
    }
  }
  const std::vector<Range> ranges = charts.records.empty() ? std::vector<Range>() : rangesOf(page, charts);
  places.add({{"choice", ranges.size() > 1}, {"thinned", charts.records.size() < page.records.size()}});
  places.list("ranges", ranges, [&](const Range& range) { return rangePlaces(charts, range); });
  places.list("columns", charts.figures, [](const Figure& figure) {
    return Places{{"column", std::string(figure.title) + ", " + std::string(figure.unit)}};
  });
  places.list("records", charts.records, [&](const PlacedRecord& record) { return recordPlaces(charts, record); });
}

}  // namespace sentiq
