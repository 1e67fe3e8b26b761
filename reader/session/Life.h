// How long a session's process lived, as far as its own lines show it.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/session/Session.h"

namespace sentiq {

/// Records come every ten seconds, and the watchdog looks at the process each second.
constexpr std::chrono::seconds lifeSlack{15};

struct Life {
  std::size_t session = 0;  // Index.
  std::optional<Instant> begin;
  std::vector<Instant> records;            // In order.
  std::vector<Instant> power;              // Titles of copies at sleep, resume and display changes: Canvix lives.
  std::vector<std::size_t> statusExits;    // Exit lines under its header, entries of the session log.
  std::vector<std::size_t> watchdogExits;  // Of the watchdog log.
  std::vector<std::size_t> tails;          // Lines with which a companion ends.
  std::optional<Instant> statusExit;       // Its own exit, once that is known.
  std::optional<Instant> watchdogExit;
};

/// @param index of the session.
Life lifeOf(const Session& session, std::size_t index);

/// Whether the exit that one log tells can be that of the other one's line at that time.
bool isExitAt(const std::optional<Instant>& exit, Instant time);

/// Whether it goes on after that time. One record may follow at once: the sample was under way.
bool livesAfter(const Life& life, Instant time);

/// Whether its last sign before that time is a fresh one.
bool endsAt(const Life& life, Instant time);

}  // namespace sentiq
