// The time of an unexpected shutdown, as the event about it tells it.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>
#include <vector>

#include "reader/input/LogTime.h"

namespace sentiq {

/// Local time in the form of the system's language, so that the order of day and month is open, and often the half of
/// the day: the numbers in it.
struct ToldTime {
  std::vector<int> clock;
  std::vector<int> date;
};

ToldTime readToldTime(std::string_view clock, std::string_view date);

/// The first time from that minute on, up to the other time, which the told one can mean.
/// @param offset of local time.
std::optional<Instant> firstMeant(const ToldTime& told, Instant from, Instant until, std::chrono::minutes offset);

}  // namespace sentiq
