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

// The texts that a zone gives; the build runs this test once in each of these zones where it can choose one.
TEST(TimeText, ZoneShowsInEveryForm) {
  const struct {
    std::string zone, winterStamp, summerStamp, standardOffset;
  } zones[] = {
      {"Europe/Berlin", "2025-01-31T14:05:09.007+0100", "2025-07-31T16:05:09.007+0200", "+01:00"},
      {"Asia/Kolkata", "2025-01-31T18:35:09.007+0530", "2025-07-31T19:35:09.007+0530", "+05:30"},
      {"America/St_Johns", "2025-01-31T09:35:09.007-0330", "2025-07-31T11:35:09.007-0230", "-03:30"},
  };
  const char* const name = std::getenv("SENTIQ_TEST_ZONE");
  const auto* const zone = std::find_if(std::begin(zones), std::end(zones),
                                        [&](const auto& z) { return name != nullptr && z.zone == name; });
  if (zone == std::end(zones)) {
    GTEST_SKIP() << "SENTIQ_TEST_ZONE names none of the zones";
  }
  EXPECT_EQ(isoLocalTimestamp(winter * 10'000'000 + 79'999), zone->winterStamp);
  EXPECT_EQ(isoLocalTimestamp(summer * 10'000'000 + 70'000), zone->summerStamp);
  const std::string offset = zone->summerStamp.substr(23);
  EXPECT_THAT(timeZoneLine(summer),
              testing::MatchesRegex("Time zone offset: ." + offset.substr(1) + " Time Zone Name: .+"));
  EXPECT_EQ(timeZoneLine(winter) == timeZoneLine(summer), offset == "+0530");
  // Summer shows in the clock time of the boot, not in its offset.
  EXPECT_EQ(lastBootTime(summer + 86'400, 86'400'123, standardSecondsWest()),
            zone->summerStamp.substr(0, 19) + ".123" + zone->standardOffset);
}

TEST(TimeText, BootOffsetTakesItsSignFromTheHoursAlone) {
  const std::pair<std::int32_t, std::string> cases[] = {{0, "+00:00"},      {18000, "-05:00"}, {-19800, "+05:30"},
                                                        {12600, "-03:30"},  {3599, "+00:59"},  {-1800, "+00:30"},
                                                        {-45900, "+12:45"}, {43200, "-12:00"}};
  for (const auto& [secondsWest, offset] : cases) {
    EXPECT_EQ(lastBootTime(winter, 7, secondsWest).substr(19), ".007" + offset);
  }
}

TEST(TimeText, OffsetAcrossTheEndOfAYear) {
  std::tm local{};
  local.tm_year = 125;
  local.tm_mday = 1;
  local.tm_min = 30;
  EXPECT_EQ(zoneOffset(local, 1735691400 - 3600), "+0100");  // The instant is still in 2024.
  EXPECT_EQ(zoneOffset(local, 1735691400 + 9 * 3600), "-0900");
}

TEST(TimeText, FormatsInEnglishAndRejectsWhatTheRuntimeRejects) {
  EXPECT_THAT(formatLocalTime(winter, "%b %d %H:%M:%S"), testing::StartsWith("Jan 31 "));
  EXPECT_EQ(formatLocalTime(std::numeric_limits<std::int64_t>::max(), "%Y"), "");
}

TEST(TimeText, NowIsNow) {
  const std::int64_t now = std::time(nullptr);
  const auto bootAt = [](std::int64_t instant) {
    return lastBootTime(instant, uptimeMilliseconds(), standardSecondsWest());
  };
  EXPECT_LE(isoLocalTimestamp(now * 10'000'000), isoLocalTimestamp());
  EXPECT_GE(isoLocalTimestamp((now + 60) * 10'000'000), isoLocalTimestamp());
  EXPECT_LE(bootAt(now - 60), lastBootTime());
  EXPECT_GE(bootAt(now + 60), lastBootTime());
  EXPECT_EQ(timeZoneLine(), timeZoneLine(now));
}

}  // namespace
}  // namespace sentiq
