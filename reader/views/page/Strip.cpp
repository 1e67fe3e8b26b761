#include "reader/views/page/Strip.h"

#include <algorithm>
#include <span>
#include <utility>

#include "reader/views/TextStyle.h"
#include "reader/views/TimeText.h"
#include "reader/views/page/TimeAxis.h"

namespace sentiq {
namespace {

constexpr std::size_t mostItems = 40;

// One thing for each line of the strip, and what its drawing needs.
Places itemPlaces(const PageSession& page, const TimeAxis& axis, const StripItem& item) {
  Places places{{"time", secondText(item.time(), page.offset)},
                {"fromEnd", item.entry ? page.fromEnd(item.time()) : ""},
                {"text", item.text},
                {"times", item.spans.size() > 1 && item.entry ? std::to_string(item.spans.size()) : ""},
                {"severity", severityName(item.severity)},
                {"row", page.rowName(item.entry)}};
  const auto drawn = [&](const TimeRange& span) {
    return Places{{"at", axis.at(span.from)}, {"width", axis.width(span.from, span.to)}};
  };
  places.list("moments", axis.within(item.spans, /*moments=*/true), drawn);
  places.list("lengths", axis.within(item.spans, /*moments=*/false), drawn);
  // Entries of 200 equal events are in the table.
  constexpr std::size_t mostTold = 12;
  const std::span told(item.told);
  const std::size_t count = told.size() == 1 ? 0 : std::min(told.size(), mostTold);
  places.list("told", told.last(count), [&](std::size_t entry) {
    const Instant time = page.session.entries[entry].time.value_or(item.time());
    return Places{{"time", clockText(time, page.offset)}, {"row", page.rowName(entry)}};
  });
  return places;
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
  const auto place = [&](const StripItem& item) { return itemPlaces(page, axis, item); };
  const auto newest = [](std::vector<StripItem> items) {
    std::reverse(items.begin(), items.end());
    items.resize(std::min(items.size(), mostItems));
    return items;
  };
  places.add({{"strip", true},
              {"whole", strip.first == *page.begin},
              {"endAt", axis.at(*page.end)},
              {"leftOut", countOrNothing(strip.items.size() - std::min(strip.items.size(), mostItems))},
              {"unrelatedText", strip.unrelated.empty() ? "" : unrelatedText(strip.unrelated)}});
  axis.addTicks(places);
  places.list("items", newest(strip.items), place);
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
  marks.push_back({*page.end, *page.end, page.judgement.verdict.text, Severity::Error});
  return marks;
}

}  // namespace sentiq
