// What happened, from everything that the logs hold: the first line answers, the others say from what.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/judgement/Judgement.h"
#include "reader/session/LogSet.h"

namespace sentiq {

struct Fact {
  std::string label;
  std::string key;  // The same for scripts, which find null where the logs do not tell.
  nlohmann::ordered_json value = nullptr;
  std::string text = "unknown";
};

struct Summary {
  Judgement judgement;
  std::vector<Statement> statements;  // Never empty; the first one is what happened, then what went before and others.
  std::vector<Fact> facts;
  std::vector<std::string> gaps;      // In the records.
  std::vector<std::string> problems;  // Files of the set that are missing or damaged.
};

Summary summarize(const LogSet& logs, const Session& session);

/// For scripts: when it ended and what the events say about it (null when nothing does), and what went before.
nlohmann::ordered_json evidenceJson(const Judgement& judgement);
nlohmann::ordered_json beforeJson(const Judgement& judgement);

/// One JSON object.
std::string summaryJson(const Summary& summary);

/// All sessions for a terminal, the newest last; how many there are, when there are several.
std::string summaryText(const LogSet& logs, bool colour);

}  // namespace sentiq
