// A session to which what further logs hold of it is added, each thing once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <unordered_map>
#include <utility>

#include "reader/session/Session.h"
#include "reader/session/SessionExtent.h"

namespace sentiq {

class GrowingSession {
 public:
  explicit GrowingSession(Session session, std::size_t origin = 0);

  /// Whether a line or a record of the part, with its time, is here from another origin.
  bool holdsLineOf(const Session& part, std::size_t origin);

  /// Whether the origin has given something; whether any has given a log of that kind.
  bool hasOrigin(std::size_t origin) const;
  bool hasRole(LogRole role) const { return originOf_.contains(role); }

  /// Adds what is new in it. Time grows with the part, but for the first one after the first.
  /// The origin's name is noted as repeated when some of the part was here from another one.
  void add(SessionPart added);

  const Session& session() const { return session_; }
  const SessionExtent& extent() const { return extent_; }
  std::optional<Instant> exit() const { return exit_; }  // The last line that says so.

  Session takeOut() { return std::move(session_); }

 private:
  void noteLines(const Session& part, std::size_t origin);
  void index();
  bool isNew(const Session& part, const LogEntry& entry, std::size_t origin);
  void append(Session& part, LogEntry entry);

  Session session_;
  SessionExtent extent_;
  std::map<LogRole, std::size_t> originOf_;  // The first one of each.
  // Hashes of lines, records and events with the origin; made when a part may hold the same.
  std::optional<std::unordered_map<std::uint64_t, std::size_t>> known_;
  std::optional<Instant> exit_;
};

/// Puts entries and copies into the order of time; copies that are there twice become one.
void sortSession(Session& session);

}  // namespace sentiq
