// What happened, from everything that the logs hold: the first line answers, the others say from what.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "reader/judgement/Judgement.h"
#include "reader/session/LogSet.h"
#include "reader/views/Facts.h"

namespace sentiq {

struct Summary {
  Judgement judgement;
  std::vector<Statement> statements;  // Never empty; the first one is what happened, then what went before and others.
  std::vector<std::string> changes;   // In the days before a failure, newest first.
  std::vector<Fact> facts;
  std::vector<std::string> gaps;      // In the records.
  std::vector<std::string> repeated;  // Files that hold the same once more.
  std::vector<std::string> problems;  // Its damaged files; when it is the only session, all that the set has.
};

/// Files of the set that are missing, damaged or left out.
std::vector<std::string> problemsOf(const LogSet& logs);

Summary summarize(const LogSet& logs, const Session& session);

/// One JSON object.
std::string summaryJson(const Summary& summary);

/// All sessions for a terminal, the newest last; how many there are, when there are several.
/// @param width of a line; 0 breaks none.
std::string summaryText(const LogSet& logs, bool colour, std::size_t width);

}  // namespace sentiq
