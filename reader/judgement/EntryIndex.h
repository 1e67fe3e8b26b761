// The entries of a session that mean something, so that each question looks only at those that can answer it.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <vector>

#include "reader/session/Session.h"

namespace sentiq {

using Meanings = std::initializer_list<Meaning>;

/// Of entries with a time. The session must outlive it.
class EntryIndex {
 public:
  explicit EntryIndex(const Session& session);

  /// From the one time to the other, both included, in the session's order.
  std::span<const LogEntry* const> between(Instant from, Instant to) const;

  /// Of those the ones of these meanings.
  std::vector<const LogEntry*> all(Meanings meanings, Instant from = Instant::min(), Instant to = Instant::max()) const;

  /// The first one of them, nullptr when there is none; so the last one.
  const LogEntry* first(Meanings meanings, Instant from, Instant to) const;
  const LogEntry* last(Meanings meanings, Instant from, Instant to) const;

  /// Its place among the session's entries.
  std::size_t indexOf(const LogEntry& entry) const;

 private:
  const Session& session_;
  std::vector<const LogEntry*> entries_;  // In order of time.
};

}  // namespace sentiq
