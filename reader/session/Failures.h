// Which of the crashes and hangs in the event log are those of the process that a session watched.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "reader/session/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// The process that the session watched, and the time in which a failure can be its own.
struct WatchedProcess {
  std::int64_t id = 0;                      // 0 when the logs do not tell.
  std::optional<Instant> started;           // From its run time in the first record.
  std::optional<Instant> begin;             // Of the session.
  std::optional<Instant> over;              // The exit, or the last line when there is none.
  std::vector<const LogEntry*> failures{};  // All in the logs that have a time and an event, of any time and process.
};

enum class Whose : std::uint8_t {
  Watched,
  Other,  // Of another instance of Canvix.
  None,   // Of another time, or no failure.
};

/// @param entry one of the process's failures, or any other entry.
Whose whoseFailure(const Session& session, const LogEntry& entry, const WatchedProcess& process);

/// In hexadecimal in the event; 0 when it does not tell.
std::int64_t processOf(const EventRecord& event);

/// @param entry a failure, or the end of the machine.
Evidence evidenceOf(const Session& session, const LogEntry& entry);

}  // namespace sentiq
