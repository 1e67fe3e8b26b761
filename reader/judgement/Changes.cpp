#include "reader/judgement/Changes.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <tuple>

namespace sentiq {
namespace {

constexpr std::chrono::days shownBefore{14};

using Changes = std::vector<Change>;

void addTold(const Case& known, Instant from, Instant until, Changes& changes) {
  const std::vector<const LogEntry*> told = known.index.all({Meaning::Change}, from, until);
  for (auto next = told.rbegin(); next != told.rend(); ++next) {
    const LogEntry& entry = **next;
    changes.push_back({machineChange(known.session.eventOf(entry)), *entry.time, entry.offset, until - *entry.time,
                       known.index.indexOf(entry)});
  }
}

// Whether both are whole, one more exactly than the other at most: "10.0.19045" and "10.0.19045.4412".
bool isSameBuild(const std::string& a, const std::string& b) {
  return a.starts_with(b) || b.starts_with(a);
}

void addBuilds(const Case& known, Instant from, Instant until, Changes& changes) {
  std::string last;
  for (const LogEntry* const entry : known.index.all({Meaning::Boot})) {
    const std::string build = entry->event ? windowsBuild(known.session.eventOf(*entry)) : std::string{};
    if (build.empty()) {
      continue;
    }
    if (!last.empty() && !isSameBuild(last, build) && *entry->time >= from && *entry->time <= until) {
      changes.push_back({{ChangeKind::Windows, last + " to " + build, build, false},
                         *entry->time,
                         entry->offset,
                         until - *entry->time,
                         known.index.indexOf(*entry)});
    }
    last = isSameBuild(last, build) && last.size() > build.size() ? last : build;
  }
}

// What two sessions tell beside each other happened at some time between them.
void addSinceEarlier(const Case& known, Instant until, const std::string& canvixVersion, Changes& changes) {
  const EarlierSession& earlier = *known.session.earlier;
  const Instant begin = *known.span.begin;
  const auto add = [&](ChangeKind kind, const std::string& name, const std::string& version) {
    changes.push_back({{kind, name, version, false}, begin, known.span.offset, until - begin, std::nullopt});
  };
  const std::string& before = earlier.canvixVersion;
  if (!before.empty() && !canvixVersion.empty() && before != canvixVersion) {
    add(ChangeKind::Canvix, before + " to " + canvixVersion, canvixVersion);
  }
  if (known.session.metrics.empty() || earlier.adapters.empty()) {
    return;
  }
  for (const std::string& adapter : known.session.metrics.front().adapters) {
    if (std::find(earlier.adapters.begin(), earlier.adapters.end(), adapter) == earlier.adapters.end()) {
      add(ChangeKind::Adapter, adapter, "");
    }
  }
}

}  // namespace

std::vector<Change> changesBefore(const Case& known, Instant end, const std::string& canvixVersion) {
  const Instant from = end - shownBefore;
  Changes changes;
  addTold(known, from, end, changes);
  addBuilds(known, from, end, changes);
  if (known.session.earlier && known.span.begin && known.session.earlier->end.instant >= from) {
    addSinceEarlier(known, end, canvixVersion, changes);
  }
  std::stable_sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) { return a.time > b.time; });
  std::set<std::tuple<ChangeKind, std::string, bool>> listed;
  std::erase_if(changes, [&](const Change& change) {
    // Definitions of virus scanners come several times a day: "… - KB2267602 (Version 1.403.2)".
    const auto& [kind, name, version, failed] = change.change;
    return !listed.emplace(kind, name.substr(0, name.find(" (Version ")), failed).second;
  });
  return changes;
}

}  // namespace sentiq
