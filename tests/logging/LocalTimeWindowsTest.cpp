// Zones that the machine of a test seldom has.
#include "logging/LocalTime.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"

static std::optional<TIME_ZONE_INFORMATION> told;

extern "C" {
constinit decltype(&GetTimeZoneInformation) __imp_GetTimeZoneInformation = [](auto zone) -> DWORD {
  const auto ask = sentiq::test::real<decltype(&GetTimeZoneInformation)>(L"kernel32", "GetTimeZoneInformation");
  return told ? (*zone = *told, TIME_ZONE_ID_UNKNOWN) : ask(zone);
};
}

namespace sentiq {

TEST(LocalTimeWindows, StandardBiasCountsInZonesThatChangeOnly) {
  for (const auto& [month, seconds] : {std::pair<WORD, int>(0, -3600), {10, -5400}}) {
    told = {-60, {}, {0, month, 0, 0, 0, 0, 0, 0}, -30, {}, {}, 0};
    EXPECT_EQ(standardSecondsWest(), seconds);
  }
  told.reset();
}

}  // namespace sentiq
