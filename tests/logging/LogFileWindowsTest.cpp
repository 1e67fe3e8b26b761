// What only the system's own file sharing shows.
#include "logging/UniqueHandle.h"
#include "logging/WatchdogLog.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace {
using sentiq::test::real;

DWORD attributesError = 0;
DWORD lastAccess = 0;

DWORD WINAPI failingAttributes(LPCWSTR path) {
  if (attributesError == 0) {
    return real<decltype(&GetFileAttributesW)>(L"kernel32", "GetFileAttributesW")(path);
  }
  SetLastError(attributesError);
  return INVALID_FILE_ATTRIBUTES;
}

HANDLE WINAPI watchedCreateFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                DWORD disposition, DWORD flags, HANDLE templateFile) {
  lastAccess = access;
  return real<decltype(&CreateFileW)>(L"kernel32", "CreateFileW")(path, access, share, security, disposition, flags,
                                                                  templateFile);
}
}  // namespace

// The program calls through these pointers: defining them here takes the system's place.
extern "C" {
decltype(&GetFileAttributesW) __imp_GetFileAttributesW = failingAttributes;
decltype(&CreateFileW) __imp_CreateFileW = watchedCreateFile;
}

namespace sentiq {
namespace {

TEST(LogFileWindows, ALockedFileLosesTheLineAndTheNextOneIsThere) {
  const test::TempFolder folder;
  const std::filesystem::path path = folder / "locked.log";
  configureWatchdogLog(1, path.wstring(), L"", false);
  writeLogLine("before", true, LogLevel::Info, LogTarget::WatchdogLog);
  {
    const FileHandle alone(CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(alone);
    writeLogLine("lost", true, LogLevel::Info, LogTarget::WatchdogLog);
    truncateLog(LogTarget::WatchdogLog);
  }
  const FileHandle reader(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
  writeLogLine("after", true, LogLevel::Info, LogTarget::WatchdogLog);
  const auto lines = test::linesOf(test::readFile(path));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].substr(46) + " " + lines[1].substr(46), "before after");
  // The right to append and none to write: that is what makes the system put every line at the end.
  EXPECT_EQ(lastAccess, DWORD{FILE_APPEND_DATA});
}

TEST(LogFileWindows, OnlyAMissingFileCountsAsAbsent) {
  const test::TempFolder folder;
  configureWatchdogLog(1, (folder / "x.log").wstring(), L"", false);
  for (const DWORD absent : {2, 3, 53, 123}) {
    attributesError = absent;
    EXPECT_NO_THROW(truncateLog(LogTarget::WatchdogLog)) << absent;
  }
  attributesError = ERROR_ACCESS_DENIED;
  try {
    truncateLog(LogTarget::WatchdogLog);
    ADD_FAILURE() << "no exception";
  } catch (const std::filesystem::filesystem_error& error) {
    EXPECT_EQ(error.code().value(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(error.path1(), folder / "x.log");
    EXPECT_NE(std::string(error.what()).find("exists"), std::string::npos);
  }
  attributesError = 0;
}

}  // namespace
}  // namespace sentiq
