#include <windows.h>

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "logging/LocalTime.h"
#include "logging/TextConversion.h"

namespace sentiq {

std::optional<std::tm> toLocalTime(std::int64_t seconds) {
  std::tm local{};
  if (_localtime64_s(&local, &seconds) != 0) {
    return std::nullopt;
  }
  return local;
}

// Asked of the system, in wide text: the runtime library's "%Z" is in the machine's code page, not in UTF-8.
std::string zoneName(const std::tm& local) {
  TIME_ZONE_INFORMATION zone{};
  if (GetTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID) {
    return {};
  }
  return toUtf8(local.tm_isdst > 0 ? zone.DaylightName : zone.StandardName);
}

std::int32_t standardSecondsWest() {
  _tzset();
#ifdef _MSC_VER
  long seconds = 0;
  _get_timezone(&seconds);
  return seconds;
#else
  return _timezone;  // MinGW's import library lacks _get_timezone.
#endif
}

std::uint64_t uptimeMilliseconds() {
  return GetTickCount64();
}

}  // namespace sentiq
