// Times as made-up logs have them.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace sentiq::bench {

/// @param seconds since 1970, UTC. @param form that of strftime; the text has to be shorter than 40 characters.
inline std::string timeText(std::int64_t seconds, const char* form) {
  const auto time = static_cast<std::time_t>(seconds);
  char text[40];
  return {text, std::strftime(text, sizeof text, form, std::gmtime(&time))};
}

/// The time stamp of a log line.
inline std::string stamp(std::int64_t seconds) {
  return timeText(seconds, "%Y-%m-%dT%H:%M:%S.042+0000");
}

}  // namespace sentiq::bench
