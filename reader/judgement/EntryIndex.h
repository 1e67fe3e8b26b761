// The entries of a session by what they mean, so that each question looks only at those that can answer it.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

using Meanings = std::initializer_list<Meaning>;

/// Of entries with a time, in its order. The session must outlive it.
class EntryIndex {
 public:
  explicit EntryIndex(const Session& session);

  const std::vector<const LogEntry*>& all(Meaning meaning) const { return entries_[static_cast<std::size_t>(meaning)]; }

  /// The first one of these meanings from the one time to the other, both included; nullptr when there is none.
  const LogEntry* first(Meanings meanings, Instant from, Instant to) const;
  const LogEntry* last(Meanings meanings, Instant from, Instant to) const;

  /// All of them, in order.
  std::vector<const LogEntry*> between(Meanings meanings, Instant from, Instant to) const;

  /// Its place among the session's entries.
  std::size_t indexOf(const LogEntry& entry) const;

 private:
  const Session& session_;
  std::array<std::vector<const LogEntry*>, static_cast<std::size_t>(Meaning::Change) + 1> entries_;
};

}  // namespace sentiq
