// The runs of Windows that a session's logs know of, and the falls of the machine that ended some of them.
//
// Reports, restarts and blue screens are logged after the next start of Windows, or days later: each belongs to the run
// that it ended, not to the one in which it was written.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include "reader/events/EventFacts.h"
#include "reader/judgement/EntryIndex.h"
#include "reader/judgement/Failures.h"
#include "reader/judgement/Judgement.h"

namespace sentiq {

/// The machine went down without shutting down.
struct Fall {
  Instant back;                        // When Windows was up again, or the first sign of it.
  bool backIsKnown = false;            // Else it is only the time at which the fall was logged.
  std::vector<std::size_t> tellers{};  // Entries of the session, in order of time.
  const LogEntry* best = nullptr;      // The one that tells most.
  MachineFall facts{};                 // Of all of them.
};

/// When Windows came up, as far as events and the header tell, in order.
std::vector<Instant> bootsOf(const Session& session, const EntryIndex& index);

/// How exactly the system knows when it went down.
constexpr std::chrono::minutes heartbeat{10};

/// In order of time.
std::vector<Fall> fallsOf(const Session& session, const EntryIndex& index, const std::vector<Instant>& boots,
                          const WatchedProcess& process);

/// When the machine fell: from its last sign of life to what the events tell.
/// @param lastSign of the session's logs before the fall.
TimeRange timeOf(const Fall& fall, Instant lastSign);

/// The time that the event about the unexpected shutdown tells, if it means one from that time on.
std::optional<Instant> toldTime(const Fall& fall, Instant from);

}  // namespace sentiq
