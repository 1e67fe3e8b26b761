#include "reader/judgement/Surroundings.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

namespace sentiq {
namespace {

struct BeforeRow {
  Meaning meaning;
  bool everyText;  // Else the last one of the kind is enough: several events tell of the same.
  const char* kind;
};
constexpr BeforeRow beforeRows[] = {
    BeforeRow{Meaning::Display, true, "display"},  BeforeRow{Meaning::Memory, false, "memory"},
    BeforeRow{Meaning::Disk, true, "disk"},        BeforeRow{Meaning::Hardware, true, "hardware"},
    BeforeRow{Meaning::Battery, false, "battery"}, BeforeRow{Meaning::Leak, false, "leak"},
    BeforeRow{Meaning::Resume, false, "resume"},   BeforeRow{Meaning::Recovered, false, "hang"},
    BeforeRow{Meaning::Hang, false, "hang"},
};

constexpr std::chrono::minutes shortlyBefore{10};

// What the last record says, and which it is.
void addFromRecords(const Session& session, Instant until, std::vector<Before>& before) {
  const auto entry = std::find_if(session.entries.rbegin(), session.entries.rend(), [&](const LogEntry& e) {
    return e.metric && e.time && *e.time <= until && until - *e.time <= shortlyBefore;
  });
  if (entry == session.entries.rend()) {
    return;
  }
  const MetricSample& record = session.metrics[*entry->metric];
  const auto add = [&](const char* kind, std::string text) {
    const auto index = static_cast<std::size_t>(session.entries.rend() - entry) - 1;
    before.push_back({kind, *entry->time, entry->offset, until - *entry->time, std::move(text), index});
  };
  const auto addIfFull = [&](const char* what, std::int64_t free, std::int64_t total, std::int64_t leastMib) {
    if (free < std::max(total / 100, std::min(leastMib, total / 10))) {
      add("full", what + std::to_string(free) + " of " + std::to_string(total) + " MiB free");
    }
  };
  addIfFull("the disk was nearly full: ", record.freeDisk, record.totalDisk, 1024);
  addIfFull("the page file was nearly full: ", record.freeSwap, record.totalSwap, 512);
  constexpr int nearlyEmpty = 5;
  if (record.battery.value_or(100) <= nearlyEmpty) {
    add("battery", "the battery was at " + std::to_string(*record.battery) + " %");
  }
}

bool isClose(Instant a, Instant b) {
  constexpr std::chrono::minutes close{2};
  return std::chrono::abs(a - b) <= close;
}

// The system tells each program at once how its display is, and standby events tell of standby themselves.
std::size_t displayChanges(const Session& session, const SessionSpan& span) {
  constexpr std::chrono::seconds atStart{15};
  const std::vector<LogEntry>& entries = session.entries;
  const auto isLine = [](const LogEntry& entry) {
    return entry.time && !entry.event && entry.role == LogRole::Watchdog;
  };
  const auto first = std::find_if(entries.begin(), entries.end(), isLine);
  return static_cast<std::size_t>(std::count_if(first, entries.end(), [&](const LogEntry& entry) {
    return isLine(entry) && entry.meaning == Meaning::Standby && span.contains(*entry.time) &&
           *entry.time - *first->time > atStart &&
           std::none_of(entries.begin(), entries.end(), [&](const LogEntry& other) {
             return other.event && other.meaning == Meaning::Standby && other.time && isClose(*other.time, *entry.time);
           });
  }));
}

}  // namespace

// Events before and after it, and the program's own lines, tell of the same sleep; a sleep empties the watchdog log, so
// that its end may be all that is left of it.
std::vector<Sleep> sleepsOf(const Session& session, const SessionSpan& span) {
  constexpr std::chrono::minutes atStart{1};
  std::vector<Sleep> sleeps;
  for (const LogEntry& entry : session.entries) {
    if (!entry.time || !span.contains(*entry.time)) {
      continue;
    }
    Sleep* const last = sleeps.empty() ? nullptr : &sleeps.back();
    if (entry.meaning == Meaning::Sleep) {
      const bool same = last != nullptr && ((last->begin && isClose(*last->begin, *entry.time)) ||
                                            (last->end && *last->end >= *entry.time));
      if (!same) {
        sleeps.push_back({entry.time, std::nullopt});
      }
    } else if (entry.meaning == Meaning::Resume) {
      const auto told = entry.event ? parseTime(session.eventOf(entry).field("SleepTime")) : std::nullopt;
      const bool same = last != nullptr && (!last->end || isClose(*last->end, *entry.time) ||
                                            (told && last->begin && isClose(*last->begin, told->instant)));
      if (same) {
        last->end = entry.time;
      } else if (*entry.time - *span.begin > atStart) {  // Else the sleep was before the session.
        sleeps.push_back({std::nullopt, entry.time});
      }
    }
  }
  return sleeps;
}

std::optional<Ticks> clockChange(const EventRecord& event) {
  const auto from = parseTime(event.field("OldTime"));
  const auto to = parseTime(event.field("NewTime"));
  const bool readAnew = event.field("Reason") == "2";  // From the hardware's clock, after a sleep.
  return from && to && !readAnew ? std::optional(to->instant - from->instant) : std::nullopt;
}

std::string inSentence(std::string words) {
  for (const std::string_view begin : {"The ", "A ", "An ", "Error "}) {
    if (words.starts_with(begin)) {
      words.front() = static_cast<char>(words.front() + ('a' - 'A'));
    }
  }
  return words;
}

std::string beforeText(const Before& before) {
  return "Before it: " + before.text + ", " + showDuration(before.earlier) + " earlier";
}

std::vector<Before> whatWentBefore(const Session& session, Instant until, bool hangsToo) {
  constexpr std::size_t most = 8;
  std::vector<Before> before;
  for (std::size_t i = 0; i < session.entries.size(); ++i) {
    const LogEntry& entry = session.entries[i];
    const auto* const row = std::find_if(std::begin(beforeRows), std::end(beforeRows),
                                         [&](const BeforeRow& r) { return r.meaning == entry.meaning; });
    if (row == std::end(beforeRows) || !entry.time || *entry.time > until || until - *entry.time > shortlyBefore ||
        (!hangsToo && row->kind == std::string_view("hang"))) {
      continue;
    }
    std::string text = entry.event ? inSentence(entry.what) : "the machine resumed from sleep";  // The program's line.
    std::erase_if(before, [&](const Before& earlier) {
      return earlier.kind == row->kind && (!row->everyText || earlier.text == text);
    });
    before.push_back({row->kind, *entry.time, entry.offset, until - *entry.time, std::move(text), i});
    before.erase(before.begin(), before.end() - static_cast<std::ptrdiff_t>(std::min(most, before.size())));
  }
  addFromRecords(session, until, before);
  std::stable_sort(before.begin(), before.end(), [](const Before& a, const Before& b) { return a.time < b.time; });
  return before;
}

std::vector<Statement> machineStatements(const Session& session, const SessionSpan& span) {
  std::vector<Statement> statements;
  const auto state = [&](const char* what, std::size_t times) {
    if (times > 0) {
      statements.push_back({Severity::Notice, what + std::to_string(times) + (times == 1 ? " time" : " times")});
    }
  };
  const auto standbys = std::count_if(session.entries.begin(), session.entries.end(), [&](const LogEntry& entry) {
    return entry.meaning == Meaning::Standby && entry.event && session.eventOf(entry).id == 506 && entry.time &&
           span.contains(*entry.time);
  });
  state("The machine slept ", sleepsOf(session, span).size());
  state("Modern standby began ", static_cast<std::size_t>(standbys));
  state("The display went on or off, or standby began or ended, ", displayChanges(session, span));
  for (std::size_t i = 0; i < session.entries.size(); ++i) {
    constexpr std::chrono::seconds worthALine{10};
    const LogEntry& entry = session.entries[i];
    if (entry.meaning != Meaning::Clock || !entry.time || !span.contains(*entry.time)) {
      continue;
    }
    const Ticks change = clockChange(session.eventOf(entry)).value_or(Ticks{});
    if (std::chrono::abs(change) >= worthALine) {
      statements.push_back(
          {Severity::Notice,
           entry.what + ", " + showDuration(std::chrono::abs(change)) + (change > Ticks{} ? " forward" : " back"), i});
    }
  }
  return statements;
}

}  // namespace sentiq
