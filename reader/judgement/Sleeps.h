// When the machine slept, as far as the logs tell: sleep, hibernation and modern standby.
#pragma once

#include <cstddef>
#include <vector>

#include "reader/events/EventFacts.h"
#include "reader/session/Session.h"

namespace sentiq {

/// One sleep, however many events and lines tell of it. Without an end it had not ended, or nothing tells.
struct Sleep : SleepTold {
  std::size_t entry = 0;  // The one that tells most: index into the session's entries.
};

/// All that the logs tell of, the time before the session included, in order of time.
std::vector<Sleep> sleepsOf(const Session& session);

/// Whether the machine slept at some time between the two.
bool sleptBetween(const std::vector<Sleep>& sleeps, Instant from, Instant to);

}  // namespace sentiq
