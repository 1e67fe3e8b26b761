// What only the system's own files show.
#include "logging/LogFile.h"
#include "logging/UniqueHandle.h"
#include "logging/WatchdogLog.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"

static DWORD attributesError = 0;
static bool isLink = false;

extern "C" {
constinit decltype(&GetFileAttributesW) __imp_GetFileAttributesW = [](LPCWSTR path) {
  const auto attributesOf = sentiq::test::real<decltype(&GetFileAttributesW)>(L"kernel32", "GetFileAttributesW");
  SetLastError(attributesError);
  return attributesError != 0 ? INVALID_FILE_ATTRIBUTES : isLink ? FILE_ATTRIBUTE_REPARSE_POINT : attributesOf(path);
};
}

namespace sentiq {

TEST(LogFileWindows, ALockedFileLosesTheLineAndTheNextOneIsThere) {
  const TempFolder folder;
  const std::filesystem::path path = folder / "locked.log";
  configureWatchdogLog(1, path.wstring(), L"", false);
  for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
    writeLogLine("before", true, LogLevel::Info, LogTarget::WatchdogLog);
    const FileHandle reader(CreateFileW(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);  // The log itself does not hold the file.
    writeLogLine("during", true, LogLevel::Info, LogTarget::WatchdogLog);
    if (share == 0) {
      truncateLog(LogTarget::WatchdogLog);
    }
  }
  EXPECT_THAT(readLog(path), ElementsAre("[SYSTEM] before", "[SYSTEM] before", "[SYSTEM] during"));
}

TEST(LogFileWindows, OnlyAMissingFileCountsAsAbsentALinkToOneToo) {
  const TempFolder folder;
  configureWatchdogLog(1, (folder / "x.log").wstring(), L"", false);
  for (const DWORD absent : {2, 3, 53, 123}) {
    attributesError = absent;
    EXPECT_NO_THROW(truncateLog(LogTarget::WatchdogLog)) << absent;
  }
  attributesError = ERROR_ACCESS_DENIED;
  using Error = std::filesystem::filesystem_error;
  EXPECT_THAT(
      [] { truncateLog(LogTarget::WatchdogLog); },
      Throws<Error>(AllOf(Property(&Error::code, std::error_code(5, std::system_category())),
                          Property(&Error::path1, folder / "x.log"), Property(&Error::what, HasSubstr("exists")))));
  attributesError = 0;
  isLink = true;
  truncateLog(LogTarget::WatchdogLog);
  isLink = false;
  EXPECT_FALSE(std::filesystem::exists(folder / "x.log"));  // It led nowhere, and does so still.
}

// With this form a path needs no setting of the machine.
TEST(LogFileWindows, LongPathsAreFullAndPrefixed) {
  const std::wstring tail = L"\\" + std::wstring(255, L'd') + L"\\x.log";
  const std::pair<std::wstring, std::wstring> cases[] = {
      {L"short.log", L"short.log"},
      {L"C:\\" + std::wstring(256, L'd'), L"C:\\" + std::wstring(256, L'd')},
      {L"C:/a/../b" + tail, L"\\\\?\\C:\\b" + tail},
      {L"\\\\server\\share" + tail, L"\\\\?\\UNC\\server\\share" + tail},
      {L"\\\\?\\C:" + tail, L"\\\\?\\C:" + tail},
      {L"//?/C:" + tail, L"\\\\?\\C:" + tail},
      {L"\\\\.\\C:" + tail, L"\\\\?\\C:" + tail},
  };
  for (const auto& [path, expected] : cases) {
    EXPECT_EQ(longPath(path).wstring(), expected);
  }
}

}  // namespace sentiq
