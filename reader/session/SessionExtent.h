// When something was logged and on which machine: what tells whether two logs can be of one session, or of one machine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "reader/input/LogTime.h"
#include "reader/session/Session.h"

namespace sentiq {

struct SessionExtent {
  std::optional<Instant> begin;  // The first line or record; events have times of their own.
  std::optional<Instant> end;    // The last one.
  // When Windows had started, by the header and each record: a clock that is set moves it. Both are there, or none.
  std::optional<Instant> bootFrom;
  std::optional<Instant> bootTo;
  std::string computer;

  void add(const SessionExtent& more);
};

/// Of its own logs; of what only an initial log tells, of that.
SessionExtent extentOf(const Session& session);

enum class Tie : std::uint8_t {
  Impossible,
  Possible,  // Nothing speaks against it.
  Proven,    // The same computer, or the same start of Windows.
};

/// Nothing when one has no name.
std::optional<bool> sameComputer(std::string_view a, std::string_view b);

/// Whether Windows had been started at the same time, within seconds; nothing when that is not known of both.
std::optional<bool> sameStart(const SessionExtent& a, const SessionExtent& b);

/// Whether both can be of one run of the program, whose ids are the same.
Tie tieOfRun(const SessionExtent& a, const SessionExtent& b);

/// Whether an initial log can be about a session of the id that it names: of the same machine, and of a time before.
Tie tieToSubject(const SessionExtent& initial, const SessionExtent& subject);

}  // namespace sentiq
