#include "reader/judgement/EntryIndex.h"

#include <algorithm>
#include <iterator>

namespace sentiq {

EntryIndex::EntryIndex(const Session& session) : session_(session) {
  for (const LogEntry& entry : session.entries) {
    if (entry.time && entry.meaning != Meaning::Other) {
      entries_.push_back(&entry);
    }
  }
}

std::span<const LogEntry* const> EntryIndex::between(Instant from, Instant to) const {
  const auto begin = std::partition_point(entries_.begin(), entries_.end(),
                                          [from](const LogEntry* entry) { return *entry->time < from; });
  const auto end =
      std::partition_point(begin, entries_.end(), [to](const LogEntry* entry) { return *entry->time <= to; });
  return std::span<const LogEntry* const>(entries_).subspan(static_cast<std::size_t>(begin - entries_.begin()),
                                                            static_cast<std::size_t>(end - begin));
}

std::vector<const LogEntry*> EntryIndex::all(Meanings meanings, Instant from, Instant to) const {
  const std::span<const LogEntry* const> entries = between(from, to);
  std::vector<const LogEntry*> found;
  std::copy_if(entries.begin(), entries.end(), std::back_inserter(found), [meanings](const LogEntry* entry) {
    return std::find(meanings.begin(), meanings.end(), entry->meaning) != meanings.end();
  });
  return found;
}

const LogEntry* EntryIndex::first(Meanings meanings, Instant from, Instant to) const {
  const std::vector<const LogEntry*> found = all(meanings, from, to);
  return found.empty() ? nullptr : found.front();
}

const LogEntry* EntryIndex::last(Meanings meanings, Instant from, Instant to) const {
  const std::vector<const LogEntry*> found = all(meanings, from, to);
  return found.empty() ? nullptr : found.back();
}

std::size_t EntryIndex::indexOf(const LogEntry& entry) const {
  return static_cast<std::size_t>(&entry - session_.entries.data());
}

}  // namespace sentiq
