
#include "logging/LocalTime.h"

namespace sentiq {

std::optional<std::tm> toLocalTime(std::int64_t seconds) {
  std::tm local{};
  const auto instant = static_cast<std::time_t>(seconds);
  if (localtime_r(&instant, &local) == nullptr) {
    return std::nullopt;
  }
  return local;
}

std::string zoneName(std::int64_t seconds) {
  const std::optional<std::tm> local = toLocalTime(seconds);
  char name[64];
  return {name, local ? std::strftime(name, sizeof name, "%Z", &*local) : 0};
}

std::int32_t standardSecondsWest() {
  tzset();
  return static_cast<std::int32_t>(timezone);
}

std::uint64_t uptimeMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
}

}  // namespace sentiq
