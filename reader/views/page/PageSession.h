// What all parts of a session's page share: the session, what is judged of it, and how times and links are written.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "reader/judgement/Sleeps.h"
#include "reader/session/LogSet.h"
#include "reader/session/Session.h"
#include "reader/views/Summary.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {

/// A record, and when it was made by the clock as it was at the end: earlier, the clock may have been another one.
struct PlacedRecord {
  const MetricSample* record;
  Instant time;
};

struct PageSession {
  const LogSet& logs;
  const Session& session;
  std::string prefix;  // Of the session's names in the page.
  Summary summary;
  std::vector<Sleep> sleeps;
  std::vector<PlacedRecord> records;
  std::chrono::minutes offset{};
  std::optional<Instant> begin{};  // Of Canvix, as far as the logs tell; so is the end.
  std::optional<Instant> end{};
  std::optional<Instant> last{};  // That the logs of the session reach to.

  /// The name of an entry's row in the page; empty when there is no entry, or it is a record, which has none.
  std::string rowName(std::optional<std::size_t> entry) const;

  const Judgement& judgement() const { return summary.judgement; }

  /// "4 s before", "12 s after", "at the end"; empty where the end is not known.
  std::string fromEnd(Instant time) const;
};

PageSession pageSession(const LogSet& logs, const Session& session, std::string prefix);

/// 14:30:22.157, 14:30:22, 2026-11-24: of local time.
std::string clockText(Instant time, std::chrono::minutes offset);
std::string secondText(Instant time, std::chrono::minutes offset);
std::string dateText(Instant time, std::chrono::minutes offset);

}  // namespace sentiq
