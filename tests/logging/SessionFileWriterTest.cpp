#include <stdexcept>

#include "logging/SessionFileWriter.h"
#include "logging/TextConversion.h"
#include "tests/support/Decode.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq {
namespace {

TEST(SessionFileWriter, AppendsToANarrowPathOfAnyScript) {
  const test::TempFolder folder;
  const std::filesystem::path file = folder / toPath(L"\u00FC \u65E5\u672C \U0001F600.log");
  const auto utf8 = file.u8string();
  const std::string path(utf8.begin(), utf8.end());
  EXPECT_TRUE(SessionFileWriter(path, false, LogFile::Mode::Truncate).write("one", false, false));
  {
    SessionFileWriter writer(path, true, LogFile::Mode::Append);
    EXPECT_TRUE(writer.write("A: 1\nB: 2", false, true));
    EXPECT_TRUE(writer.write("stamped", true, false));
    EXPECT_TRUE(writer.write("", false, false));
  }
  std::vector<std::string> lines = test::linesOf(test::readFile(file));
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0] + lines[1] + lines[2], "oneA: 1B: 2");
  EXPECT_EQ(test::decodeLine(lines[3]).substr(28), " stamped");
  EXPECT_EQ(lines[4], "");
}

TEST(SessionFileWriter, SaysWhichFileItCannotOpen) {
  const test::TempFolder folder;
  const std::string path = (folder / "missing" / "x.log").string();
  try {
    const SessionFileWriter writer(path, false, LogFile::Mode::Append);
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "Failed to open file for writing: " + path);
  }
}

TEST(TextConversion, KeepsEveryPlaneAndRejectsWhatIsMalformed) {
  const std::string text = "a\u00FC\u65E5\U0001F600\U0010FFFF";
  EXPECT_EQ(toUtf8(toWide(text)), text);
  for (const char* bad : {"\xFF", "\xC3", "a\xF0\x9F\x98"}) {
    EXPECT_THROW(toWide(bad), std::range_error) << testing::PrintToString(bad);
  }
  if constexpr (sizeof(wchar_t) == 2) {  // Surrogates are a matter of UTF-16.
    for (const std::wstring bad : {L"\xD800", L"a\xDC00z", L"\xD83Dz"}) {
      EXPECT_THROW(toUtf8(bad), std::range_error);
    }
  }
}

}  // namespace
}  // namespace sentiq
