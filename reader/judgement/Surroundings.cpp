#include "reader/judgement/Surroundings.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

#include "reader/events/EventWords.h"

namespace sentiq {
namespace {

struct BeforeRow {
  Meaning meaning;
  bool everyText;  // Else the last one of the kind is enough: several events tell of the same.
  BeforeKind kind;
};
constexpr BeforeRow beforeRows[]{
    BeforeRow{Meaning::Display, true, BeforeKind::Display},
    BeforeRow{Meaning::Memory, false, BeforeKind::Memory},
    BeforeRow{Meaning::Disk, true, BeforeKind::Disk},
    BeforeRow{Meaning::Hardware, true, BeforeKind::Hardware},
    BeforeRow{Meaning::Battery, false, BeforeKind::Battery},
    BeforeRow{Meaning::Leak, false, BeforeKind::Leak},
    BeforeRow{Meaning::Resume, false, BeforeKind::Resume},
    BeforeRow{Meaning::StandbyEnded, false, BeforeKind::Resume},
    BeforeRow{Meaning::Recovered, false, BeforeKind::Hang},
    BeforeRow{Meaning::Hang, false, BeforeKind::Hang},
};

constexpr std::chrono::minutes shortlyBefore{10};

// What the last record says.
void addFromRecords(const Case& known, Instant until, std::vector<Before>& before) {
  const std::vector<LogEntry>& entries = known.session.entries;
  const auto entry = std::find_if(entries.rbegin(), entries.rend(),
                                  [&](const LogEntry& e) { return e.metric && e.time && *e.time <= until; });
  if (entry == entries.rend() || until - *entry->time > shortlyBefore) {
    return;
  }
  const MetricSample& record = known.session.recordOf(*entry);
  const auto add = [&](BeforeKind kind, std::string text) {
    before.push_back(
        {kind, *entry->time, entry->offset, until - *entry->time, std::move(text), known.index.indexOf(*entry)});
  };
  const auto addIfFull = [&](const char* what, std::int64_t free, std::int64_t total, std::int64_t leastMib) {
    if (free < std::max(total / 100, std::min(leastMib, total / 10))) {
      add(BeforeKind::Full, what + std::to_string(free) + " of " + std::to_string(total) + " MiB free");
    }
  };
  addIfFull("the disk was nearly full: ", record.freeDisk, record.totalDisk, 1024);
  addIfFull("the page file was nearly full: ", record.freeSwap, record.totalSwap, 512);
  constexpr int nearlyEmpty = 5;
  if (record.battery.value_or(100) <= nearlyEmpty) {
    add(BeforeKind::Battery, "the battery was at " + std::to_string(*record.battery) + " %");
  }
}

// In the order of the kinds.
struct KindRow {
  std::string_view name;
  std::string_view words;
};
constexpr std::array kindRows{
    KindRow{"display", "trouble with the graphics driver"},
    KindRow{"memory", "low virtual memory"},
    KindRow{"disk", "trouble with a disk"},
    KindRow{"hardware", "an error of the hardware"},
    KindRow{"battery", "the machine ran on its battery, or that was nearly empty"},
    KindRow{"leak", "a program used more and more memory"},
    KindRow{"hang", "Canvix stopped responding"},
    KindRow{"resume", "the machine resumed from sleep or standby"},
    KindRow{"full", "a disk or the page file was nearly full"},
};
static_assert(kindRows.size() == static_cast<std::size_t>(BeforeKind::Full) + 1);

}  // namespace

std::string_view beforeName(BeforeKind kind) {
  return kindRows[static_cast<std::size_t>(kind)].name;
}

std::string_view beforeWords(BeforeKind kind) {
  return kindRows[static_cast<std::size_t>(kind)].words;
}

std::vector<Before> whatWentBefore(const Case& known, Instant until, bool hangsToo) {
  constexpr std::size_t most = 8;
  const std::span<const LogEntry* const> entries = known.index.between(until - shortlyBefore, until);
  std::vector<Before> before;
  for (auto next = entries.rbegin(); next != entries.rend() && before.size() < most; ++next) {
    const LogEntry* const entry = *next;
    const auto* const row = std::find_if(std::begin(beforeRows), std::end(beforeRows),
                                         [&](const BeforeRow& r) { return r.meaning == entry->meaning; });
    if (row == std::end(beforeRows) || (row->kind == BeforeKind::Hang && !hangsToo)) {
      continue;
    }
    std::string text =
        entry->event ? inSentence(known.wordsFor(*entry)) : "the machine resumed from sleep";  // The program's line.
    const bool isKnown = std::any_of(before.begin(), before.end(), [&](const Before& later) {
      return later.kind == row->kind && (!row->everyText || later.text == text);
    });
    if (!isKnown) {
      before.push_back(
          {row->kind, *entry->time, entry->offset, until - *entry->time, std::move(text), known.index.indexOf(*entry)});
    }
  }
  addFromRecords(known, until, before);
  std::stable_sort(before.begin(), before.end(), [](const Before& a, const Before& b) { return a.time < b.time; });
  return before;
}

}  // namespace sentiq
