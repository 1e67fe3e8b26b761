// What the time texts need of the platform: all of one zone, the one that is set now.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace sentiq {

/// Local broken-down time of an instant (seconds since 1970, UTC); whether it is summer time there is not told. On
/// Windows nothing before 1970 or after the year 3000 (both UTC), elsewhere nothing that has no year in an int.
std::optional<std::tm> toLocalTime(std::int64_t seconds);

/// UTF-8; the standard or the daylight name of the zone, whichever holds at the instant (seconds since 1970, UTC).
std::string zoneName(std::int64_t seconds);

/// Seconds from local standard time to UTC, positive west of Greenwich; daylight saving is not in it.
std::int32_t standardSecondsWest();

/// Milliseconds since the system started.
std::uint64_t uptimeMilliseconds();

}  // namespace sentiq
