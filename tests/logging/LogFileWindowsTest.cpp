// What only the system's own files show.
#include "logging/SessionFileWriter.h"
#include "logging/UniqueHandle.h"
#include "logging/WatchdogLog.h"
#include "tests/support/Logs.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace {

using sentiq::test::real;

DWORD attributesError = 0;
DWORD lastAccess = 0;
DWORD unwritten = 0;  // So much less does the system say that it has written.

}  // namespace

extern "C" {
decltype(&GetFileAttributesW) __imp_GetFileAttributesW = [](LPCWSTR path) {
  SetLastError(attributesError);
  return attributesError != 0 ? INVALID_FILE_ATTRIBUTES
                              : real<decltype(&GetFileAttributesW)>(L"kernel32", "GetFileAttributesW")(path);
};
decltype(&CreateFileW) __imp_CreateFileW = [](LPCWSTR path, DWORD access, auto... more) {
  lastAccess = access;
  return real<decltype(&CreateFileW)>(L"kernel32", "CreateFileW")(path, access, more...);
};
decltype(&WriteFile) __imp_WriteFile = [](HANDLE file, LPCVOID bytes, DWORD size, DWORD* written, OVERLAPPED* how) {
  const BOOL done = real<decltype(&WriteFile)>(L"kernel32", "WriteFile")(file, bytes, size, written, how);
  *written -= unwritten;
  return done;
};
}

namespace sentiq {
namespace {

HANDLE openForReading(const std::filesystem::path& path, DWORD share) {
  return CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
}

TEST(LogFileWindows, ALockedFileLosesTheLineAndTheNextOneIsThere) {
  const test::TempFolder folder;
  const std::filesystem::path path = folder / "locked.log";
  configureWatchdogLog(1, path.wstring(), L"", false);
  const auto write = [](const char* message) { writeLogLine(message, true, LogLevel::Info, LogTarget::WatchdogLog); };
  write("before");
  // The right to append and none to write: that is what makes the system put every line at the end.
  EXPECT_EQ(lastAccess, DWORD{FILE_APPEND_DATA});
  {
    const FileHandle alone(openForReading(path, 0));  // The log itself does not hold it.
    ASSERT_TRUE(alone);
    write("lost");
    truncateLog(LogTarget::WatchdogLog);
  }
  const FileHandle reader(openForReading(path, FILE_SHARE_READ | FILE_SHARE_WRITE));
  write("after");
  EXPECT_THAT(test::readLog(path), testing::ElementsAre("[SYSTEM] before", "[SYSTEM] after"));
  SessionFileWriter writer(path.string(), false, LogFile::Mode::Append);
  unwritten = 1;
  EXPECT_FALSE(writer.write("cut off", false, false));
  unwritten = 0;
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
    EXPECT_THAT(error.what(), testing::HasSubstr("exists"));
  }
  attributesError = 0;
}

}  // namespace
}  // namespace sentiq
