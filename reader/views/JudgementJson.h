// A judgement for scripts: one object for the evidence, lists for what surrounds it; and what JSON takes elsewhere,
// too.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "reader/judgement/Judgement.h"

namespace sentiq {

/// When it happened and what the events say about it; null when no time is known.
nlohmann::ordered_json evidenceJson(const Judgement& judgement);

nlohmann::ordered_json beforeJson(const Judgement& judgement);
nlohmann::ordered_json changesJson(const Judgement& judgement);

/// With its offset; null when it is not known.
nlohmann::ordered_json timeJson(const std::optional<Instant>& time, std::chrono::minutes offset);

/// So a number.
template <class Number>
nlohmann::ordered_json orNull(const std::optional<Number>& number) {
  return number ? nlohmann::ordered_json(*number) : nlohmann::ordered_json();
}

/// In one line, in which bytes that are no UTF-8 are replaced.
std::string dumped(const nlohmann::ordered_json& object);

}  // namespace sentiq
