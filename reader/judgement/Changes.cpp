#include "reader/judgement/Changes.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <string>
#include <tuple>
#include <utility>

namespace sentiq {
namespace {

constexpr std::chrono::days shownBefore{14};

class Collection {
 public:
  explicit Collection(const LogTime& end) : end_(end) {}

  // From the newest one on.
  void add(MachineChange change, const LogTime& time, std::optional<std::size_t> entry) {
    // Definitions of virus scanners come several times a day: "… - KB2267602 (Version 1.403.2)".
    const std::string name = change.name.substr(0, change.name.find(" (Version "));
    if (known_.emplace(change.kind, name, change.failed).second) {
      changes_.push_back({std::move(change), time.instant, time.offset, end_.instant - time.instant, entry});
    }
  }

  std::vector<Change> take() {
    std::stable_sort(changes_.begin(), changes_.end(),
                     [](const Change& a, const Change& b) { return a.time > b.time; });
    return std::move(changes_);
  }

 private:
  LogTime end_;
  std::set<std::tuple<ChangeKind, std::string, bool>> known_;
  std::vector<Change> changes_;
};

// Whether both are whole, one more exactly than the other at most: "10.0.19045" and "10.0.19045.4412".
bool isSameBuild(const std::string& a, const std::string& b) {
  return a.starts_with(b) || b.starts_with(a);
}

void addBuilds(const Session& session, const EntryIndex& index, Instant from, Instant until, Collection& changes) {
  std::string last;
  std::vector<std::tuple<MachineChange, const LogEntry*>> found;
  for (const LogEntry* const entry : index.all({Meaning::Boot})) {
    const std::string build = entry->event ? windowsBuild(session.eventOf(*entry)) : std::string{};
    if (build.empty()) {
      continue;
    }
    if (!last.empty() && !isSameBuild(last, build) && *entry->time >= from && *entry->time <= until) {
      found.emplace_back(MachineChange{ChangeKind::Windows, last + " to " + build, build, false}, entry);
    }
    last = isSameBuild(last, build) && last.size() > build.size() ? last : build;
  }
  for (auto next = found.rbegin(); next != found.rend(); ++next) {
    const auto& [change, entry] = *next;
    changes.add(change, {*entry->time, entry->offset}, index.indexOf(*entry));
  }
}

// What two sessions tell beside each other happened at some time between them.
void addSinceEarlier(const Session& session, const LogTime& begin, const std::string& canvixVersion,
                     Collection& changes) {
  const EarlierSession& earlier = *session.earlier;
  const std::string& before = earlier.canvixVersion;
  if (!before.empty() && !canvixVersion.empty() && before != canvixVersion) {
    changes.add({ChangeKind::Canvix, before + " to " + canvixVersion, canvixVersion, false}, begin, std::nullopt);
  }
  if (session.metrics.empty() || earlier.adapters.empty()) {
    return;
  }
  for (const std::string& adapter : session.metrics.front().adapters) {
    if (std::find(earlier.adapters.begin(), earlier.adapters.end(), adapter) == earlier.adapters.end()) {
      changes.add({ChangeKind::Adapter, adapter, "", false}, begin, std::nullopt);
    }
  }
}

}  // namespace

std::vector<Change> changesBefore(const Session& session, const EntryIndex& index, const SessionSpan& span,
                                  const LogTime& end, const std::string& canvixVersion) {
  const Instant from = end.instant - shownBefore;
  Collection changes(end);
  const std::vector<const LogEntry*> told = index.all({Meaning::Change}, from, end.instant);
  for (auto next = told.rbegin(); next != told.rend(); ++next) {
    const LogEntry& entry = **next;
    changes.add(machineChange(session.eventOf(entry)), {*entry.time, entry.offset}, index.indexOf(entry));
  }
  addBuilds(session, index, from, end.instant, changes);
  if (session.earlier && span.begin && session.earlier->end.instant >= from) {
    addSinceEarlier(session, {*span.begin, span.offset}, canvixVersion, changes);
  }
  return changes.take();
}

}  // namespace sentiq
