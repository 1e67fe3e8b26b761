#include "logging/TextConversion.h"
#include "tests/support/Test.h"

namespace sentiq {

TEST(TextConversion, KeepsEveryPlaneAndRejectsWhatIsMalformed) {
  const std::string text = "a\u00FC\u65E5\U0001F600\U0010FFFF";
  EXPECT_EQ(toUtf8(toWide(text)), text);
  for (const char* bad : {"\xFF", "\xC3", "a\xF0\x9F\x98", "\xC0\xAF", "\xED\xA0\x80"}) {
    EXPECT_THROW(toWide(bad), std::range_error) << PrintToString(bad);
  }
#ifdef _WIN32  // Surrogates are a matter of UTF-16.
  for (const wchar_t* bad : {L"\xD800", L"a\xDC00z", L"\xD83Dz", L"\xD83D\xD83D\xDE00"}) {
    EXPECT_THROW(toUtf8(bad), std::range_error);
  }
#endif
}

}  // namespace sentiq
