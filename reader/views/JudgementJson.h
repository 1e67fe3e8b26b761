// A judgement for scripts: one object for the evidence, lists for what surrounds it.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "reader/judgement/Judgement.h"

namespace sentiq {

/// When it happened and what the events say about it; null when no time is known.
nlohmann::ordered_json evidenceJson(const Judgement& judgement);

nlohmann::ordered_json beforeJson(const Judgement& judgement);
nlohmann::ordered_json changesJson(const Judgement& judgement);

/// In one line, in which bytes that are no UTF-8 are replaced.
std::string dumped(const nlohmann::ordered_json& object);

}  // namespace sentiq
