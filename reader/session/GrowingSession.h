// A session to which what further logs hold of it is added, each thing once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "reader/session/Session.h"
#include "reader/session/SessionExtent.h"

namespace sentiq {

class GrowingSession {
 public:
  /// @param origin what the part comes from, a file or a set of logs: within one, lines that are alike are several.
  GrowingSession(Session session, std::size_t origin);

  /// Whether a line or a record of the part, with its time, is here from another origin.
  bool holdsLineOf(const Session& part, std::size_t origin);

  /// Whether the origin has given something; whether any has given a log of that kind.
  bool hasOrigin(std::size_t origin) const;
  bool hasRole(LogRole role) const { return originOf_[static_cast<std::size_t>(role)].has_value(); }

  /// Adds what is new in it. Time grows with the part, but for the first one after the first.
  /// @param name of the origin, noted as repeated when some of the part was here from another one.
  void add(Session part, std::size_t origin, const std::string& name);

  const Session& session() const { return session_; }
  const SessionExtent& extent() const { return extent_; }
  std::optional<Instant> exit() const { return exit_; }  // The last line that says so.

  /// With its entries in the order of time.
  Session takeOut();

 private:
  using Lines = std::unordered_map<std::uint64_t, std::size_t>;  // Hashes with the origin.

  void noteLines(const Session& part, std::size_t origin);
  void indexLines();
  void indexEvents();
  bool isKnown(const Session& part, const LogEntry& entry, std::size_t origin) const;
  void append(Session& part, LogEntry entry);

  Session session_;
  SessionExtent extent_;
  std::array<std::optional<std::size_t>, 4> originOf_;     // By role; the first one.
  std::optional<Lines> lines_;                             // Made when a second origin has a log of the same role.
  std::optional<std::unordered_set<std::size_t>> events_;  // Hashes of their keys; made when a second part has events.
  std::optional<Instant> exit_;
};

/// Puts entries and copies into the order of time; copies that are there twice become one.
void sortSession(Session& session);

}  // namespace sentiq
