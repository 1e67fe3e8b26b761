// What all parts of a session's page share: the session, what is judged of it, and how its times and links are written.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "reader/judgement/Judgement.h"
#include "reader/judgement/Sleeps.h"
#include "reader/session/Session.h"

namespace sentiq {

/// A record, and when it was made by the clock as it was at the end: earlier, the clock may have been another one.
struct PlacedRecord {
  const MetricSample* record;
  Instant time;      // Not before that of the one before.
  bool gap = false;  // Records miss between the one before and this.
};

struct PageSession {
  const Session& session;
  std::string prefix;  // Of the session's names in the page.
  Judgement judgement;
  std::vector<Sleep> sleeps;
  std::vector<PlacedRecord> records;
  std::chrono::minutes offset{};
  std::optional<Instant> begin{};  // Of Canvix, as far as the logs tell; so is the end.
  std::optional<Instant> end{};
  std::optional<Instant> last{};  // That the logs of the session reach to.

  /// The name of an entry's row in the page; empty when there is no entry, or it is a record, which has none.
  std::string rowName(std::optional<std::size_t> entry) const;

  /// "4 s before", "12 s after", "at the end"; empty where the end is not known.
  std::string fromEnd(Instant time) const;
};

PageSession pageSession(const Session& session, std::string prefix);

}  // namespace sentiq
