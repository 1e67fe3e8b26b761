#include "reader/views/page/Strip.h"

#include <algorithm>
#include <memory>

#include "reader/views/page/TimeAxis.h"

namespace sentiq {
namespace {

constexpr std::size_t mostItems = 40;

// One thing for each line of the strip, and what its drawing needs.
Places itemPlaces(const PageSession& page, const TimeAxis& axis, const StripItem& item) {
  Places places;
  places.text("time", secondText(item.time, page.offset));
  places.text("fromEnd", item.entry ? page.fromEnd(item.time) : "");
  places.text("text", item.text);
  places.text("times", item.spans.size() > 1 && item.entry ? std::to_string(item.spans.size()) : "");
  places.text("severity", std::string(severityName(item.severity)));
  places.text("row", page.rowName(item.entry));
  std::vector<std::pair<Instant, Instant>> moments;
  std::vector<std::pair<Instant, Instant>> lengths;
  for (const auto& span : item.spans) {
    if (span.second >= axis.first() && span.first <= axis.last()) {
      (span.first == span.second ? moments : lengths).push_back(span);
    }
  }
  const auto drawn = [axis](const std::pair<Instant, Instant>& span) {
    Places place;
    place.text("at", axis.at(span.first));
    place.text("width", axis.width(span.first, span.second));
    return place;
  };
  places.list("moments", std::move(moments), drawn);
  places.list("lengths", std::move(lengths), drawn);
  // Entries of 200 equal events are in the table.
  constexpr std::size_t mostTold = 12;
  std::vector<std::pair<Instant, std::size_t>> told = item.told;
  told.erase(told.begin(), told.end() - static_cast<std::ptrdiff_t>(std::min(told.size(), mostTold)));
  if (told.size() == 1) {
    told.clear();
  }
  places.list("told", std::move(told), [&page](const std::pair<Instant, std::size_t>& entry) {
    Places link;
    link.text("time", clockText(entry.first, page.offset));
    link.text("row", page.rowName(entry.second));
    return link;
  });
  return places;
}

std::string countText(std::size_t count, const char* what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// "3 other errors and 1 warning"
std::string unrelatedText(const std::vector<StripItem>& items) {
  const auto errors = static_cast<std::size_t>(
      std::count_if(items.begin(), items.end(), [](const StripItem& i) { return i.severity == Severity::Error; }));
  const std::size_t warnings = items.size() - errors;
  if (errors == 0) {
    return countText(warnings, "other warning");
  }
  return countText(errors, "other error") + (warnings > 0 ? " and " + countText(warnings, "warning") : "");
}

}  // namespace

void addStrip(const PageSession& page, const StripItems& strip, Places& places) {
  const TimeAxis axis(strip.first, strip.last, page.offset);
  const auto place = [&page, axis](const StripItem& item) { return itemPlaces(page, axis, item); };
  const auto newest = [](std::vector<StripItem> items) {
    std::reverse(items.begin(), items.end());
    items.resize(std::min(items.size(), mostItems));
    return items;
  };
  places.flag("strip", true);
  places.flag("whole", strip.whole);
  places.text("endAt", axis.at(*page.end));
  axis.addTicks(places);
  places.list("items", newest(strip.items), place);
  places.text("leftOut", strip.items.size() > mostItems ? std::to_string(strip.items.size() - mostItems) : "");
  places.text("unrelatedText", strip.unrelated.empty() ? "" : unrelatedText(strip.unrelated));
  places.list("unrelated", newest(strip.unrelated), place);
}

std::vector<ChartMark> marksOf(const PageSession& page, const StripItems& strip) {
  std::vector<ChartMark> marks;
  for (const Sleep& sleep : page.sleeps) {
    if (sleep.begin && sleep.end && *sleep.end >= *page.begin) {
      marks.push_back({*sleep.begin, *sleep.end, "The machine slept"});
    }
  }
  std::vector<ChartMark> moments;
  for (const StripItem& item : strip.items) {
    if (item.entry && item.severity >= Severity::Warning) {
      for (const auto& [from, to] : item.spans) {
        moments.push_back({from, to, secondText(from, page.offset) + ' ' + item.text, item.severity});
      }
    }
  }
  constexpr std::size_t most = 60;
  marks.insert(marks.end(), moments.end() - static_cast<std::ptrdiff_t>(std::min(moments.size(), most)), moments.end());
  marks.push_back({*page.end, *page.end, page.judgement().verdict.text, Severity::Error});
  return marks;
}

}  // namespace sentiq
