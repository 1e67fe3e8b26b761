#include "reader/views/page/ChartRecords.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace sentiq {
namespace {

using Value = std::optional<double>;

constexpr std::chrono::minutes whole{30};
constexpr int parts = 60;

Value nothing(const MetricSample& /*record*/) {
  return {};
}

constexpr Figure figures[] = {
    {"Free disk space", "MiB", true, [](const MetricSample& r) -> Value { return r.freeDisk; },
     [](const MetricSample& r) -> Value { return r.totalDisk; }},
    {"Free page file", "MiB", true, [](const MetricSample& r) -> Value { return r.freeSwap; },
     [](const MetricSample& r) -> Value { return r.totalSwap; }},
    {"Battery", "%", true, [](const MetricSample& r) -> Value { return r.battery; },
     [](const MetricSample& r) -> Value { return r.battery ? Value(100) : Value(); }},
    {"Memory of Canvix", "MiB", false, [](const MetricSample& r) -> Value { return r.memory; }, nothing},
    {"Threads of Canvix", "threads", false, [](const MetricSample& r) -> Value { return r.threads; }, nothing},
};

using Records = std::vector<PlacedRecord>;

// Those with the lowest and the highest values, first and last, in order.
void addExtremes(Records::const_iterator from, Records::const_iterator to, Records& chosen) {
  std::vector<Records::const_iterator> kept{from, to - 1};
  for (const Figure& figure : figures) {
    const auto [low, high] = std::minmax_element(from, to, [&](const PlacedRecord& a, const PlacedRecord& b) {
      return figure.value(*a.record) < figure.value(*b.record);
    });
    kept.insert(kept.end(), {low, high});
  }
  std::sort(kept.begin(), kept.end());
  kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
  for (const auto& record : kept) {
    chosen.push_back(*record);
  }
}

}  // namespace

std::span<const Figure> allFigures() {
  return figures;
}

std::vector<PlacedRecord> chartRecords(const PageSession& page) {
  const Records& all = page.records;
  const Instant closer = page.end.value_or(Instant::max()) - whole;
  const auto wholeFrom =
      std::find_if(all.begin(), all.end(), [closer](const PlacedRecord& record) { return record.time >= closer; });
  Records chosen;
  for (auto from = all.begin(); from != wholeFrom;) {
    const Instant until = from->time + (closer - all.front().time) / parts;
    const auto next = std::find_if(from + 1, wholeFrom,
                                   [until](const PlacedRecord& record) { return record.gap || record.time > until; });
    addExtremes(from, next, chosen);
    from = next;
  }
  chosen.insert(chosen.end(), wholeFrom, all.end());
  return chosen;
}

}  // namespace sentiq
