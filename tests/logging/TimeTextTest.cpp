#include <cstdlib>
#include <limits>
#include <map>

#include "logging/LocalTime.h"
#include "logging/TimeText.h"
#include "tests/support/Test.h"

namespace sentiq {

constexpr std::int64_t winter = 1738328709;  // 2025-01-31 13:05:09 UTC
constexpr std::int64_t summer = 1753970709;  // 2025-07-31 14:05:09 UTC

// The texts that a zone gives; the build runs this test once in each of these zones where it can choose one.
TEST(TimeText, ZoneShowsInEveryForm) {
  const std::map<std::string, Lines> zones = {
      {"Europe/Berlin",
       {"2025-01-31T14:05:09.007+0100", "2025-07-31T16:05:09.007+0200", "+01:00", "1970-01-01T02:00:00.000+0100"}},
      {"Asia/Kolkata",
       {"2025-01-31T18:35:09.007+0530", "2025-07-31T19:35:09.007+0530", "+05:30", "1970-01-01T06:30:00.000+0530"}},
      {"America/St_Johns",
       {"2025-01-31T09:35:09.007-0330", "2025-07-31T11:35:09.007-0230", "-03:30", "1969-12-31T21:30:00.000-0330"}},
  };
  const char* const name = std::getenv("SENTIQ_TEST_ZONE");
  if (name == nullptr) {
    GTEST_SKIP() << "SENTIQ_TEST_ZONE names no zone";
  }
  const Lines& texts = zones.at(name);
  EXPECT_EQ(isoLocalTimestamp(winter * 10'000'000 + 79'999), texts[0]);
  EXPECT_EQ(isoLocalTimestamp(summer * 10'000'000 + 70'000), texts[1]);
  EXPECT_EQ(isoLocalTimestamp(std::int64_t{3600} * 10'000'000), texts[3]);  // In some zones, of the year before.
  EXPECT_THAT(timeZoneLine(summer), StartsWith("Time zone offset: " + texts[1].substr(23) + " Time Zone Name: "));
  EXPECT_GT(timeZoneLine(summer).size(), 41u);  // Some name.
  EXPECT_EQ(timeZoneLine(winter) == timeZoneLine(summer), texts[2] == "+05:30");
  // Summer shows in the clock time of the boot, not in its offset.
  EXPECT_EQ(lastBootTime(summer + 86'400, 86'400'123, standardSecondsWest()),
            texts[1].substr(0, 19) + ".123" + texts[2]);
  EXPECT_EQ(lastBootTime().substr(23), texts[2]);
}

TEST(TimeText, BootOffsetTakesItsSignFromTheHoursAlone) {
  const std::map<std::int32_t, std::string> cases = {{0, "+00:00"},     {18000, "-05:00"}, {-19800, "+05:30"},
                                                     {12600, "-03:30"}, {3599, "+00:59"},  {-45900, "+12:45"}};
  for (const auto& [secondsWest, offset] : cases) {
    EXPECT_EQ(lastBootTime(winter, 7, secondsWest).substr(19), ".007" + offset);
  }
}

TEST(TimeText, FormatsInEnglishToTheEndOfTheYear3000) {
  EXPECT_THAT(formatLocalTime(winter, "%b %d %H:%M:%S"), StartsWith("Jan 31 "));
  EXPECT_THAT(formatLocalTime(32'535'244'799, "%Y"), AnyOf("3000", "3001"));
  EXPECT_EQ(formatLocalTime(std::numeric_limits<std::int64_t>::max(), "%Y"), "");
#ifdef _WIN32
  EXPECT_EQ(formatLocalTime(-1, "%Y") + formatLocalTime(32'535'244'800, "%Y"), "");
#endif
}

TEST(TimeText, NowIsNow) {
  const std::int64_t now = std::time(nullptr);
  const auto bootAt = [](std::int64_t instant) {
    return lastBootTime(instant, uptimeMilliseconds(), standardSecondsWest());
  };
  EXPECT_THAT(isoLocalTimestamp(),
              AllOf(Ge(isoLocalTimestamp(now * 10'000'000)), Lt(isoLocalTimestamp((now + 60) * 10'000'000))));
  EXPECT_THAT(lastBootTime(), AllOf(Gt(bootAt(now - 60)), Lt(bootAt(now + 60))));
}

}  // namespace sentiq
