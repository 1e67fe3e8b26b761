// What happened, from everything that the logs hold: the first line answers, the others say from what.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/session/EventTable.h"
#include "reader/session/LogSet.h"

namespace sentiq {

struct Statement {
  Severity severity;
  std::string text;  // UTF-8, clean.
};

struct Fact {
  std::string label;
  std::string text;  // "unknown" where the logs do not tell.
  std::string key;   // The same for scripts.
  nlohmann::ordered_json value;
};

struct Summary {
  std::string outcome;  // One word for scripts: crashed, hung, ended, shutdown, power-loss, asleep or unknown.
  std::vector<std::pair<std::string, std::string>> evidence;  // For scripts: when, and of a crash where.
  std::vector<Statement> statements;                          // Never empty; the first one is what happened.
  std::vector<Fact> facts;
  std::vector<std::string> gaps;      // In the records.
  std::vector<std::string> problems;  // Files missing or damaged.
};

/// @param logs the set that the session is one of: it says what is missing or damaged.
Summary summarize(const LogSet& logs, const Session& session);

/// For a terminal.
std::string summaryText(const Summary& summary, bool colour);

/// One JSON object.
std::string summaryJson(const Summary& summary);

}  // namespace sentiq
