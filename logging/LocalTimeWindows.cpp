#include <windows.h>

#include <chrono>

#include "logging/FileTime.h"
#include "logging/LocalTime.h"
#include "logging/TextConversion.h"

namespace sentiq {

namespace {

constexpr std::int64_t year3001 = 32'535'244'800;

TIME_ZONE_INFORMATION currentZone() {
  TIME_ZONE_INFORMATION zone{};
  GetTimeZoneInformation(&zone);
  return zone;
}

// The bias of the standard time counts only in a zone that changes to it on some date.
std::int32_t standardSecondsWestIn(const TIME_ZONE_INFORMATION& zone) {
  return (zone.Bias + (zone.StandardDate.wMonth != 0 ? zone.StandardBias : 0)) * 60;
}

bool toLocalClock(std::int64_t seconds, SYSTEMTIME& local) {
  const FILETIME time = toFileTime(seconds);
  SYSTEMTIME utc{};
  return FileTimeToSystemTime(&time, &utc) != FALSE &&
         SystemTimeToTzSpecificLocalTime(/*lpTimeZoneInformation=*/nullptr, &utc, &local) != FALSE;
}

}  // namespace

// Of the zone everything is asked of the system. The runtime library keeps the zone that it met first, takes another
// one from the environment variable TZ, and has the names in the machine's code page only.
std::optional<std::tm> toLocalTime(std::int64_t seconds) {
  SYSTEMTIME clock{};
  if (seconds < 0 || seconds >= year3001 || !toLocalClock(seconds, clock)) {
    return std::nullopt;
  }
  using namespace std::chrono;
  const sys_days newYear = year{clock.wYear} / January / 1;
  const sys_days day = year{clock.wYear} / clock.wMonth / clock.wDay;
  std::tm local{};
  local.tm_year = clock.wYear - 1900;
  local.tm_mon = clock.wMonth - 1;
  local.tm_mday = clock.wDay;
  local.tm_hour = clock.wHour;
  local.tm_min = clock.wMinute;
  local.tm_sec = clock.wSecond;
  local.tm_wday = clock.wDayOfWeek;
  local.tm_yday = static_cast<int>((day - newYear).count());
  local.tm_isdst = -1;
  return local;
}

std::string zoneName(std::int64_t seconds) {
  const TIME_ZONE_INFORMATION zone = currentZone();
  SYSTEMTIME clock{};
  FILETIME local{};
  const bool standard = toLocalClock(seconds, clock) && SystemTimeToFileTime(&clock, &local) != FALSE &&
                        seconds - toSeconds(local) == standardSecondsWestIn(zone);
  return toUtf8(standard ? zone.StandardName : zone.DaylightName);
}

std::int32_t standardSecondsWest() {
  return standardSecondsWestIn(currentZone());
}

std::uint64_t uptimeMilliseconds() {
  return GetTickCount64();
}

}  // namespace sentiq
