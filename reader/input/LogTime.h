// The times that logs hold, and how they are shown: instants to 100 nanoseconds, each with the offset of its log.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ratio>
#include <string>
#include <string_view>

namespace sentiq {

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
using Instant = std::chrono::sys_time<Ticks>;

struct LogTime {
  Instant instant;
  std::chrono::minutes offset;  // Local time minus UTC.
};

/// Of those that there are.
std::optional<Instant> earlier(std::optional<Instant> a, std::optional<Instant> b);
std::optional<Instant> later(std::optional<Instant> a, std::optional<Instant> b);

/// Reads 2025-01-31T14:05:09.042+0100 at the text's beginning: a blank may stand for the T; seconds and
/// fraction may be missing; the offset may be +01:00, Z or missing, which means UTC.
/// @param used when given, receives the number of characters read.
std::optional<LogTime> parseTime(std::string_view text, std::size_t* used = nullptr);

/// 2025-01-31 14:05:09.042
std::string showTime(Instant instant, std::chrono::minutes offset);

/// +01:00
std::string showOffset(std::chrono::minutes offset);

/// 2025-01-31T14:05:09.042+01:00
std::string isoTime(Instant instant, std::chrono::minutes offset);

/// 2 d 3 h, 4 min 5 s, 17 s
std::string showDuration(Ticks duration);

}  // namespace sentiq
