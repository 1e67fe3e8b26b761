// Which of the crashes and hangs in the event log are those of the process that a session watched.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "reader/judgement/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// The process that the session watched, and the time in which a failure can be its own.
struct WatchedProcess {
  std::int64_t id = 0;             // 0 when the logs do not tell.
  std::optional<Instant> started;  // From its run time in the first record.
  std::optional<Instant> begin;    // Of the session.
  std::optional<Instant> over;     // The exit, or the last line when there is none.
};

enum class Whose : std::uint8_t {
  Nobody,  // Of another time.
  Other,   // Of another instance of Canvix.
  Watched,
};

struct Failure {
  const LogEntry* entry = nullptr;  // Of the session.
  Whose whose = Whose::Nobody;
  std::int64_t process = 0;  // 0 when the event does not tell: a report never does.
};

/// All that have a time, in order of time; the events first, then the error reports, which tell less.
std::vector<Failure> failuresOf(const Session& session, const WatchedProcess& process);

/// @param entry a failure, or the end of the machine.
Evidence evidenceOf(const Session& session, const LogEntry& entry);

}  // namespace sentiq
