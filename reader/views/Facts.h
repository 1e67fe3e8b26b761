// What the logs of a session say about the machine, Canvix and the figures, one fact a row.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/judgement/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// As the logs tell it, or that they do not.
struct FactValue {
  nlohmann::ordered_json json = nullptr;
  std::string text = "unknown";
};

struct Fact {
  std::string label;
  std::string key;  // The same for scripts, which find null where the logs do not tell.
  FactValue value;
};

/// In the order in which they are shown, always the same ones.
std::vector<Fact> factsOf(const Session& session, const Judgement& judgement);

}  // namespace sentiq
