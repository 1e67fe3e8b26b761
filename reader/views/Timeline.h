// All entries of each session's logs, one readable line each, in time order; the oldest session first.
#pragma once

#include <atomic>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "reader/session/LogSet.h"

namespace sentiq {

struct TimelineOptions {
  std::optional<Instant> since;  // In the logs' local time, as if that were UTC; so is until, which is included.
  std::optional<Instant> until;
  std::vector<std::string> sources;  // Roles or channels in any case; all when empty.
  bool json = false;
  bool colour = false;
};

/// The same lines as the logs grow, are emptied or appear, in the order in which they come; each event once. Returns
/// once stop is set or out fails. @param inputs files, which need not be there yet, and folders.
void followTimeline(const std::vector<std::string>& inputs, const TimelineOptions& options, std::ostream& out,
                    const std::atomic<bool>& stop);

void writeTimeline(const LogSet& logs, const TimelineOptions& options, std::ostream& out);

/// A day or a day and time, as the user gives it: 2025-01-31, 2025-01-31T14:05, "2025-01-31 14:05:09".
std::optional<Instant> parseLocalTime(const std::string& text);

}  // namespace sentiq
