#include "reader/judgement/EntryIndex.h"

#include <algorithm>

namespace sentiq {
namespace {

using Place = std::vector<const LogEntry*>::const_iterator;

// Those from the one time to the other.
std::pair<Place, Place> rangeOf(const std::vector<const LogEntry*>& entries, Instant from, Instant to) {
  const auto begin = std::lower_bound(entries.begin(), entries.end(), from,
                                      [](const LogEntry* entry, Instant time) { return *entry->time < time; });
  const auto end = std::upper_bound(begin, entries.end(), to,
                                    [](Instant time, const LogEntry* entry) { return time < *entry->time; });
  return {begin, end};
}

}  // namespace

EntryIndex::EntryIndex(const Session& session) : session_(session) {
  for (const LogEntry& entry : session.entries) {
    if (entry.time && entry.meaning != Meaning::Other) {
      entries_[static_cast<std::size_t>(entry.meaning)].push_back(&entry);
    }
  }
}

const LogEntry* EntryIndex::first(Meanings meanings, Instant from, Instant to) const {
  const LogEntry* first = nullptr;
  for (const Meaning meaning : meanings) {
    const auto [begin, end] = rangeOf(all(meaning), from, to);
    if (begin != end && (first == nullptr || *(*begin)->time < *first->time)) {
      first = *begin;
    }
  }
  return first;
}

const LogEntry* EntryIndex::last(Meanings meanings, Instant from, Instant to) const {
  const LogEntry* last = nullptr;
  for (const Meaning meaning : meanings) {
    const auto [begin, end] = rangeOf(all(meaning), from, to);
    if (begin != end && (last == nullptr || *(*(end - 1))->time >= *last->time)) {
      last = *(end - 1);
    }
  }
  return last;
}

std::vector<const LogEntry*> EntryIndex::between(Meanings meanings, Instant from, Instant to) const {
  std::vector<const LogEntry*> found;
  for (const Meaning meaning : meanings) {
    const auto [begin, end] = rangeOf(all(meaning), from, to);
    found.insert(found.end(), begin, end);
  }
  std::sort(found.begin(), found.end());  // They lie in the session's order of time.
  return found;
}

std::size_t EntryIndex::indexOf(const LogEntry& entry) const {
  return static_cast<std::size_t>(&entry - session_.entries.data());
}

}  // namespace sentiq
