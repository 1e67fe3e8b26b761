// Every text time that the program writes. The forms differ on purpose in source, precision and form of the
// zone offset: each is fixed by what reads it. The functions without an instant are shells around those that
// take one. All are callable on any thread and keep nothing between calls.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace sentiq {

/// 2025-01-31T14:05:09.042+0100, with the offset in force; empty when the local time is not known.
std::string isoLocalTimestamp();
/// @param ticks 100-nanosecond ticks since 1970, UTC.
std::string isoLocalTimestamp(std::int64_t ticks);

/// "Time zone offset: +0100 Time Zone Name: " and the zone's name.
std::string timeZoneLine();
/// @param seconds since 1970, UTC.
std::string timeZoneLine(std::int64_t seconds);

/// 2025-01-31T08:12:45.123+01:00, always with the standard offset, in summer too.
std::string lastBootTime();
/// @param now seconds since 1970, UTC. @param secondsWest from local standard time to UTC.
std::string lastBootTime(std::int64_t now, std::uint64_t uptimeMs, std::int32_t secondsWest);

/// Local time in std::put_time's notation with English names; empty when the instant cannot be converted.
/// @param seconds since 1970, UTC.
std::string formatLocalTime(std::int64_t seconds, const std::string& format);

}  // namespace sentiq
