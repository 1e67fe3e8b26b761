// The crashes and hangs of Canvix that a session's logs know of, each told by one entry or several, and whose they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "reader/events/EventFacts.h"
#include "reader/judgement/EntryIndex.h"
#include "reader/session/Session.h"

namespace sentiq {

/// The process that the session watched, and the time in which a failure can be its own.
struct WatchedProcess {
  std::int64_t id = 0;             // 0 when the logs do not tell.
  std::optional<Instant> started;  // From its run time in the first record.
  std::optional<Instant> begin;    // Of the session.
  std::optional<Instant> over;     // The exit, or the last sign of it when there is none.
};

WatchedProcess watchedProcess(const Session& session, const EntryIndex& index, const SessionSpan& span);

enum class Whose : std::uint8_t {
  Nobody,  // Of another time.
  Other,   // Of another instance of Canvix.
  Watched,
  WatchedRanOn,  // Its own, but it ran on for long.
};

struct Failure {
  bool hang = false;
  std::vector<std::size_t> tellers{};  // Entries of the session, in order of time.
  const LogEntry* best = nullptr;      // The one that tells most.
  ProgramFailure facts{};              // Of all of them.
  Whose whose = Whose::Nobody;

  Instant time() const { return *best->time; }
};

/// In order of the first that tells of them.
std::vector<Failure> failuresOf(const Session& session, const EntryIndex& index, const WatchedProcess& process);

}  // namespace sentiq
