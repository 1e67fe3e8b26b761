#include <cstdlib>
#include <ctime>
#include <limits>

#include "logging/LocalTime.h"
#include "logging/TimeText.h"
#include "tests/support/Test.h"

namespace sentiq {
namespace {

constexpr std::int64_t winter = 1738328709;  // 2025-01-31 13:05:09 UTC
constexpr std::int64_t summer = 1753970709;  // 2025-07-31 14:05:09 UTC

// The texts that a zone gives; the build runs this test program once in each of these zones.
struct Zone {
  const char* name;
  const char* winterStamp;
  const char* summerStamp;
  const char* standardOffset;
};
constexpr Zone zones[] = {
    {"Europe/Berlin", "2025-01-31T14:05:09.007+0100", "2025-07-31T16:05:09.007+0200", "+01:00"},
    {"Asia/Kolkata", "2025-01-31T18:35:09.007+0530", "2025-07-31T19:35:09.007+0530", "+05:30"},
    {"America/St_Johns", "2025-01-31T09:35:09.007-0330", "2025-07-31T11:35:09.007-0230", "-03:30"},
};

TEST(TimeText, ZoneShowsInEveryForm) {
  const char* name = std::getenv("SENTIQ_TEST_ZONE");
  ASSERT_NE(name, nullptr) << "the build sets SENTIQ_TEST_ZONE";
  for (const Zone& zone : zones) {
    if (name != std::string(zone.name)) {
      continue;
    }
    EXPECT_EQ(isoLocalTimestamp(winter * 10'000'000 + 79'999), zone.winterStamp);
    EXPECT_EQ(isoLocalTimestamp(summer * 10'000'000 + 70'000), zone.summerStamp);
    const std::string offset = std::string(zone.summerStamp).substr(23);
    EXPECT_EQ(timeZoneLine(summer).find("Time zone offset: " + offset + " Time Zone Name: "), 0u);
    const std::string names = timeZoneLine(winter) + timeZoneLine(summer);
    EXPECT_EQ(timeZoneLine(winter) == timeZoneLine(summer), offset == "+0530") << names;

    // Summer shows in the clock time of the boot, not in its offset.
    const std::string boot = lastBootTime(summer + 86'400, 86'400'123, standardSecondsWest());
    EXPECT_EQ(boot, std::string(zone.summerStamp).substr(0, 19) + ".123" + zone.standardOffset);
    return;
  }
  FAIL() << "no such zone: " << name;
}

TEST(TimeText, BootOffsetTakesItsSignFromTheHoursAlone) {
  const struct {
    std::int32_t secondsWest;
    const char* offset;
  } cases[] = {{0, "+00:00"},    {-3600, "+01:00"}, {18000, "-05:00"}, {-19800, "+05:30"}, {12600, "-03:30"},
               {1800, "+00:30"}, {3599, "+00:59"},  {-1800, "+00:30"}, {-45900, "+12:45"}, {43200, "-12:00"}};
  for (const auto& [secondsWest, offset] : cases) {
    EXPECT_EQ(lastBootTime(winter, 7, secondsWest).substr(19), std::string(".007") + offset);
  }
}

TEST(TimeText, OffsetAcrossTheEndOfAYear) {
  std::tm local{};
  local.tm_year = 125;
  local.tm_mday = 1;
  local.tm_hour = 0;
  local.tm_min = 30;
  EXPECT_EQ(zoneOffset(local, 1735691400 - 3600), "+0100");  // The instant is still in 2024.
  EXPECT_EQ(zoneOffset(local, 1735691400 + 9 * 3600), "-0900");
}

TEST(TimeText, FormatsInEnglishAndRejectsWhatTheRuntimeRejects) {
  const std::string text = formatLocalTime(winter, "%b %d %H:%M:%S");
  EXPECT_EQ(text.substr(0, 7), "Jan 31 ");
  EXPECT_EQ(formatLocalTime(std::numeric_limits<std::int64_t>::max(), "%Y"), "");
}

}  // namespace
}  // namespace sentiq
