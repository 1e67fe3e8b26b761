#include "startup/FaultHandler.h"
#include "tests/support/Test.h"

namespace sentiq {

TEST(FaultHandler, RecordsEachCodeOnceFromAllThreadsAndNeverHandles) {
  EXCEPTION_POINTERS none{};
  EXPECT_EQ(recordExceptionCode(nullptr), EXCEPTION_CONTINUE_SEARCH);
  EXPECT_EQ(recordExceptionCode(&none), EXCEPTION_CONTINUE_SEARCH);
  std::vector<std::uint32_t> codes(500);
  std::iota(codes.begin(), codes.end(), 0xC0000005);
  codes[0] = 0;
  const auto record = [&] {
    for (const std::uint32_t code : codes) {
      EXCEPTION_RECORD raised{code, 0, nullptr, nullptr, 0, {}};
      EXCEPTION_POINTERS pointers{&raised, nullptr};
      EXPECT_EQ(recordExceptionCode(&pointers), EXCEPTION_CONTINUE_SEARCH);
    }
  };
  std::thread other(record);
  record();
  other.join();
  EXPECT_THAT(recordedExceptionCodes(), UnorderedElementsAreArray(codes));
}

}  // namespace sentiq
