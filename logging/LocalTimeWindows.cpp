#include <windows.h>

#include "logging/LocalTime.h"
#include "logging/TextConversion.h"

namespace sentiq {

namespace {

constexpr std::int64_t ticksPerSecond = 10'000'000;
constexpr std::int64_t secondsFrom1601To1970 = 11'644'473'600;
constexpr std::int64_t year3000 = 32'503'680'000;

TIME_ZONE_INFORMATION currentZone() {
  TIME_ZONE_INFORMATION zone{};
  GetTimeZoneInformation(&zone);
  return zone;
}

}  // namespace

// Of the zone everything is asked of the system. The runtime library keeps the zone that it met first, takes another
// one from the environment variable TZ, and has the names in the machine's code page only.
std::optional<std::tm> toLocalTime(std::int64_t seconds) {
  if (seconds < 0 || seconds >= year3000) {
    return std::nullopt;
  }
  const std::int64_t ticks = (seconds + secondsFrom1601To1970) * ticksPerSecond;
  FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  SYSTEMTIME utc{};
  SYSTEMTIME local{};
  if (FileTimeToSystemTime(&time, &utc) == FALSE ||
      SystemTimeToTzSpecificLocalTime(/*lpTimeZoneInformation=*/nullptr, &utc, &local) == FALSE ||
      SystemTimeToFileTime(&local, &time) == FALSE) {
    return std::nullopt;
  }
  const auto localTicks = static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
  const std::int64_t localSeconds = localTicks / ticksPerSecond - secondsFrom1601To1970;
  const std::tm* const parts = _gmtime64(&localSeconds);  // Each thread has its own there.
  if (parts == nullptr) {
    return std::nullopt;
  }
  std::tm result = *parts;
  result.tm_isdst = seconds - localSeconds == standardSecondsWest() ? 0 : 1;
  return result;
}

std::string zoneName(const std::tm& local) {
  const TIME_ZONE_INFORMATION zone = currentZone();
  return toUtf8(local.tm_isdst > 0 ? zone.DaylightName : zone.StandardName);
}

std::int32_t standardSecondsWest() {
  const TIME_ZONE_INFORMATION zone = currentZone();
  return (zone.Bias + zone.StandardBias) * 60;
}

std::uint64_t uptimeMilliseconds() {
  return GetTickCount64();
}

}  // namespace sentiq
