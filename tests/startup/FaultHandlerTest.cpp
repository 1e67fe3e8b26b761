#include "startup/FaultHandler.h"
#include "tests/support/Test.h"

namespace sentiq {

TEST(FaultHandler, RecordsEachCodeOnceAndNeverHandles) {
  EXCEPTION_POINTERS none{};
  EXPECT_EQ(recordExceptionCode(nullptr), EXCEPTION_CONTINUE_SEARCH);
  EXPECT_EQ(recordExceptionCode(&none), EXCEPTION_CONTINUE_SEARCH);
  for (const DWORD code : {EXCEPTION_ACCESS_VIOLATION, DWORD{0xE06D7363}, EXCEPTION_ACCESS_VIOLATION}) {
    EXCEPTION_RECORD record{code, 0, nullptr, nullptr, 0, {}};
    EXCEPTION_POINTERS pointers{&record, nullptr};
    EXPECT_EQ(recordExceptionCode(&pointers), EXCEPTION_CONTINUE_SEARCH);
  }
  EXPECT_THAT(recordedExceptionCodes(), UnorderedElementsAre(EXCEPTION_ACCESS_VIOLATION, 0xE06D7363));
}

}  // namespace sentiq
