// The system's own count of time, and the seconds since 1970, UTC, that everything else here counts in.
#pragma once

#include <windows.h>

#include <cstdint>

namespace sentiq {

constexpr std::int64_t ticksPerSecond = 10'000'000;
constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;

/// @param seconds since 1970, not before 1601.
inline FILETIME toFileTime(std::int64_t seconds) {
  const std::int64_t ticks = (seconds + secondsFrom1601To1970) * ticksPerSecond;
  return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

/// Seconds since 1970; what is less than one is cut off.
inline std::int64_t toSeconds(const FILETIME& time) {
  const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return static_cast<std::int64_t>(ticks) / ticksPerSecond - secondsFrom1601To1970;
}

}  // namespace sentiq
