#include "logging/SessionFileWriter.h"
#include "logging/TextConversion.h"
#include "tests/support/Test.h"

namespace sentiq {

// Two writers, as two programs that were given the same path may be.
TEST(SessionFileWriter, AppendsWhatEachSaysAtOnceToAPathOfAnyScript) {
  const TempFolder folder;
  const std::filesystem::path file = folder / toPath(L"\u00FC \u65E5\u672C \U0001F600.log");
  const auto utf8 = file.u8string();
  const std::string path(utf8.begin(), utf8.end());
  EXPECT_TRUE(SessionFileWriter(path, false, LogFile::Mode::Truncate).write("z-0", false, false));
  SessionFileWriter plain(path, false, LogFile::Mode::Append);
  SessionFileWriter encoding(path, true, LogFile::Mode::Append);
  EXPECT_TRUE(plain.write("one", true, false));
  EXPECT_TRUE(encoding.write("A: 1\nB: 2", false, true));
  EXPECT_TRUE(plain.write("t-2", false, false));
  EXPECT_TRUE(encoding.write("stamped", true, false) && encoding.write("", false, false));
  EXPECT_THAT(readLog(file), ElementsAre("z-0", "T one", "A: 1", "B: 2", "t-2", "T stamped", ""));
  EXPECT_EQ(formOf(file), ".....#.");
  SessionFileWriter(path, false, LogFile::Mode::Truncate);
  EXPECT_EQ(readFile(file), "");
#ifndef _WIN32
  EXPECT_FALSE(SessionFileWriter("/dev/full", false, LogFile::Mode::Append).write("lost", false, false));
#endif
}

TEST(SessionFileWriter, SaysWhichFileItCannotOpen) {
  const TempFolder folder;
  const std::string path = (folder / "missing" / "x.log").string();
  const auto open = [&] { SessionFileWriter(path, false, LogFile::Mode::Append); };
  EXPECT_THAT(open, ThrowsMessage<std::runtime_error>("Failed to open file for writing: " + path));
}

}  // namespace sentiq
