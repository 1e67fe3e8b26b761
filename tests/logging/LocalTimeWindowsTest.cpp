// Zones that the machine of a test seldom has.
#include "logging/LocalTime.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"

static const TIME_ZONE_INFORMATION* zoneToTell = nullptr;

extern "C" {
constinit decltype(&GetTimeZoneInformation) __imp_GetTimeZoneInformation = [](auto zone) {
  if (zoneToTell == nullptr) {
    return sentiq::test::real<decltype(&GetTimeZoneInformation)>(L"kernel32", "GetTimeZoneInformation")(zone);
  }
  *zone = *zoneToTell;
  return DWORD{TIME_ZONE_ID_UNKNOWN};
};
}

namespace sentiq {

TEST(LocalTimeWindows, StandardBiasCountsInZonesThatChangeOnly) {
  for (const auto& [month, seconds] : {std::pair<WORD, int>(0, -3600), {10, -5400}}) {
    TIME_ZONE_INFORMATION zone{};
    zone.Bias = -60;
    zone.StandardBias = -30;
    zone.StandardDate.wMonth = month;
    zoneToTell = &zone;
    EXPECT_EQ(standardSecondsWest(), seconds);
    zoneToTell = nullptr;
  }
}

}  // namespace sentiq
