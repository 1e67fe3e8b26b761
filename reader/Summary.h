// What happened, from everything that the logs hold: the first line answers, the others say from what.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reader/EventTable.h"
#include "reader/LogSet.h"
#include "reader/LogTime.h"

namespace sentiq {

struct Statement {
  Severity severity;
  std::string text;  // UTF-8, clean.
};

struct Fact {
  std::string key;    // For JSON.
  std::string label;  // For people.
  std::string value;  // "unknown" where the logs do not tell.
};

struct Summary {
  std::string outcome;  // One word for scripts: crashed, hung, ended, shutdown, power-loss, asleep or unknown.
  std::vector<Statement> statements;  // Never empty; the first one is what happened.
  std::vector<Fact> facts;
  std::vector<std::string> gaps;      // In the records.
  std::vector<std::string> problems;  // Files missing or damaged.
};

Summary summarize(const LogSet& logs);

/// For a terminal.
std::string summaryText(const Summary& summary, bool colour);

/// One JSON object.
std::string summaryJson(const Summary& summary);

}  // namespace sentiq
