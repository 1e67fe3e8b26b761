#include "logging/TimeText.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iomanip>
#include <locale>
#include <optional>
#include <ratio>
#include <sstream>

#include "logging/LocalTime.h"
#include "logging/LogGrammar.h"

namespace sentiq {
namespace {

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

constexpr const char* isoFormat = "%Y-%m-%dT%H:%M:%S";

// In the classic locale, whatever the global one is: names are English.
std::string formatted(const std::tm& local, const char* format) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text << std::put_time(&local, format);
  return text.str();
}

std::string threeDigits(std::uint64_t number) {
  char digits[4];
  std::snprintf(digits, sizeof digits, "%03u", static_cast<unsigned>(number % 1000));
  return digits;
}

std::int64_t secondsNow() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
}

// Not strftime's "%z": one of the two runtime libraries of Windows puts the zone's name there.
std::string zoneOffset(const std::tm& local, std::int64_t seconds) {
  using namespace std::chrono;
  const sys_days day = year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday;
  const auto asUtc = day + hours{local.tm_hour} + minutes{local.tm_min} + std::chrono::seconds{local.tm_sec};
  const auto offset = static_cast<int>((asUtc.time_since_epoch().count() - seconds) / 60);
  char text[6];
  std::snprintf(text, sizeof text, "%c%02d%02d", offset < 0 ? '-' : '+', std::abs(offset) / 60 % 100,
                std::abs(offset) % 60);
  return text;
}

}  // namespace

std::string isoLocalTimestamp() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return isoLocalTimestamp(std::chrono::duration_cast<Ticks>(now).count());
}

std::string isoLocalTimestamp(std::int64_t ticks) {
  const std::int64_t seconds = ticks / Ticks::period::den;
  const std::optional<std::tm> local = toLocalTime(seconds);
  if (!local) {
    return {};
  }
  const auto milliseconds = static_cast<std::uint64_t>(ticks / 10'000 % 1000);
  return formatted(*local, isoFormat) + '.' + threeDigits(milliseconds) + zoneOffset(*local, seconds);
}

std::string timeZoneLine() {
  return timeZoneLine(secondsNow());
}

std::string timeZoneLine(std::int64_t seconds) {
  std::string offset;
  std::string name;
  if (const std::optional<std::tm> local = toLocalTime(seconds)) {
    offset = zoneOffset(*local, seconds);
    name = zoneName(seconds);
  }
  return grammar::headerLine(grammar::timeZone, offset).append(grammar::timeZoneName) + name;
}

std::string lastBootTime() {
  const std::uint64_t uptimeMs = uptimeMilliseconds();
  return lastBootTime(secondsNow(), uptimeMs, standardSecondsWest());
}

std::string lastBootTime(std::int64_t now, std::uint64_t uptimeMs, std::int32_t secondsWest) {
  // The sign comes from the hours alone, so less than an hour west of UTC shows a plus.
  const int hours = -secondsWest / 3600;
  const int minutes = std::abs(secondsWest) % 3600 / 60;
  char offset[8];  // One more than it takes: Clang counts the sign apart from the width.
  std::snprintf(offset, sizeof offset, "%+03d:%02d", hours % 100, minutes);
  // The fraction is the uptime's own remainder: the current time enters in whole seconds only.
  return formatLocalTime(now - static_cast<std::int64_t>(uptimeMs / 1000), isoFormat) + '.' + threeDigits(uptimeMs) +
         offset;
}

std::string formatLocalTime(std::int64_t seconds, const std::string& format) {
  const std::optional<std::tm> local = toLocalTime(seconds);
  return local ? formatted(*local, format.c_str()) : std::string{};
}

}  // namespace sentiq
