#include "reader/events/EventFacts.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static std::string meant(const std::string& clock, const std::string& date,
                         const std::string& from = "2025-01-30T00:00:30Z",
                         const std::string& until = "2025-03-28T00:00:00Z", std::chrono::minutes offset = {}) {
  const MachineFall fall = machineFall(SampleEvent{"EventLog", 6008, {clock, date}}.read());
  const auto time = firstMeant(fall.told, at(from), at(until), offset);
  return time ? showTime(*time, {}).substr(0, 19) : "nothing";
}

TEST(ToldTime, IsReadInAnyOrderOfDayMonthAndYear) {
  for (const char* const date :
       {"1/31/2025", "31.01.2025", "2025-01-31", "\u200E2025/\u200E31/\u200E01", "25-01-31", "31. 1. 25"}) {
    EXPECT_EQ(meant("13:04:05", date), "2025-01-31 13:04:05") << date;
  }
}

TEST(ToldTime, OfAHalfDayIsTheFirstThatComesAfterTheLastSign) {
  EXPECT_EQ(meant("1:04:05 PM", "1/31/2025"), "2025-01-31 01:04:05");
  EXPECT_EQ(meant("1:04:05 PM", "1/31/2025", "2025-01-31T01:05:00Z"), "2025-01-31 13:04:05");
  EXPECT_EQ(meant("12:04:05 AM", "1/31/2025", "2025-01-30T23:00:00Z"), "2025-01-31 00:04:05");
  EXPECT_EQ(meant("12:04:05 PM", "1/31/2025", "2025-01-31T12:05:00Z"), "nothing");
  EXPECT_EQ(meant("\uC624\uC804 8:31:11", "2025-01-31"), "2025-01-31 08:31:11");
}

TEST(ToldTime, IsLocalAndWithinTheTimesGiven) {
  EXPECT_EQ(meant("00:30:00", "2025-02-01", "2025-01-31T22:00:00Z", "2025-01-31T23:30:00Z", 1h), "2025-01-31 23:30:00");
  EXPECT_EQ(meant("00:30:00", "2025-02-01", "2025-01-31T22:00:00Z", "2025-01-31T23:29:59Z", 1h), "nothing");
  EXPECT_EQ(meant("13:04:05", "2025-01-31", "2025-01-31T13:04:59Z"), "2025-01-31 13:04:05");
  EXPECT_EQ(meant("13:04:05", "2025-01-31", "2025-01-31T13:05:00Z"), "nothing");
}

TEST(ToldTime, WhoseDayAndMonthMayBeEitherIsTheFirst) {
  EXPECT_EQ(meant("13:04", "02/01/2025", "2025-01-01T00:00:00Z"), "2025-01-02 13:04:00");
  EXPECT_EQ(meant("13:04", "02/01/2025", "2025-01-03T00:00:00Z"), "2025-02-01 13:04:00");
}

TEST(ToldTime, OfTwoDigitsIsOfTheCenturiesGiven) {
  EXPECT_EQ(meant("13:04", "31.12.99", "1999-12-31T00:00:00Z", "2000-01-02T00:00:00Z"), "1999-12-31 13:04:00");
  EXPECT_EQ(meant("13:04", "01.01.00", "1999-12-31T00:00:00Z", "2000-01-02T00:00:00Z"), "2000-01-01 13:04:00");
}

TEST(ToldTime, ThatIsNoneMeansNothing) {
  for (const char* const clock : {"x", "13", "24:00", "13:60", "99999999999:00"}) {
    EXPECT_EQ(meant(clock, "2025-01-31"), "nothing") << clock;
  }
  for (const char* const date : {"", "31.01.", "31.13.2025", "30.02.2025", "1.31.2025.1", "99999999999/1/31"}) {
    EXPECT_EQ(meant("13:04", date), "nothing") << date;
  }
}

}  // namespace sentiq
