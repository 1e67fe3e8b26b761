#include <windows.h>

#include <shellapi.h>

#include "examples/StartSentiq.h"
#include "logging/UniqueHandle.h"
#include "tests/endtoend/RunTest.h"

namespace sentiq {
namespace {

using canvix::SentiqSession;

TEST(StartSentiq, ArgumentsAreReadBackAsTheyWere) {
  for (const wchar_t* const argument :
       {L"", L"plain", L"C:\\My Logs\\", L"two\\\\", L"a\"b", L"a\\\"b\\\\\" c", L"\"", L"\t", L"\u65E5\U0001F600"}) {
    const std::wstring line = L"program.exe " + canvix::quotedArgument(argument) + L" next";
    int count = 0;
    wchar_t** const read = CommandLineToArgvW(line.c_str(), &count);
    ASSERT_EQ(count, 3) << std::filesystem::path(line);
    EXPECT_EQ(std::wstring(read[1]), argument) << std::filesystem::path(line);
    LocalFree(read);
  }
}

TEST(StartSentiq, OnlyWhoNeitherRunsNorEndedNormallyIsAbnormalAndOldLogsGo) {
  const TempFolder folder;
  const auto logs = folder / L"made \u65E5" / L"too";
  const auto begin = [&](const wchar_t* id) { return SentiqSession(logs, id, 2); };
  EXPECT_EQ(begin(L"crashed").lastAbnormal(), L"");
  SentiqSession second = begin(L"second");
  EXPECT_EQ(second.lastAbnormal(), L"crashed");
  SentiqSession third = begin(L"third");
  EXPECT_EQ(third.lastAbnormal(), L"");
  second.endNormally();
  std::filesystem::create_directory(logs / "foreign");
  third.endNormally();
  EXPECT_EQ(begin(L"fourth").lastAbnormal(), L"");
  EXPECT_FALSE(std::filesystem::exists(logs / "session-crashed"));
  for (const char* const kept : {"session-second", "session-third", "session-fourth", "foreign"}) {
    EXPECT_TRUE(std::filesystem::exists(logs / kept)) << kept;
  }
}

// The first job lets its processes go and ends those that stay; the second lets none go. The programs end by
// themselves, two minutes later.
TEST(StartSentiq, TheProgramOutlivesTheJobAndTheNextOneHearsOfTheEnd) {
  const TempFolder folder;
  const auto logs = folder / L"My logs \U0001F600";
  useSampleEvents();
  const std::tuple<std::wstring, DWORD, Lines> runs[] = {
      {L"first", JOB_OBJECT_LIMIT_BREAKAWAY_OK | JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE, {}},
      {L"second", 0, {"[SYSTEM] OrbelSessionID: first"}},
  };
  for (const auto& [session, limits, before] : runs) {
    const auto own = logs / (L"session-" + session);
    KernelHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION information{};
    information.BasicLimitInformation.LimitFlags = limits;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &information, sizeof information);
    ChildProcess canvix(L"Canvix.exe", L"3600 \"" + logs.wstring() + L"\" " + session);
    ASSERT_TRUE(AssignProcessToJobObject(job.get(), canvix.handle()));
    EXPECT_TRUE(eventually([&] { return readLog(own / "CanvixSentiqSession.log").size() >= 3; }));
    job = KernelHandle();
    canvix.end(7);
    EXPECT_TRUE(eventually([&] { return Value(readLog(own / "CanvixSentiqSession.log"), Contains(exitLine)); }));
    Lines initial = readLog(own / "CanvixWatchdogInfoInitialSession.log");
    initial.resize(std::min<std::size_t>(initial.size(), 1));
    EXPECT_EQ(initial, before);
  }
}

}  // namespace
}  // namespace sentiq
