#include <exception>
#include <locale>

#include "logging/TextConversion.h"
#include "startup/LaunchOptions.h"
#include "tests/support/Test.h"

namespace sentiq {
namespace {

TEST(LaunchOptions, EveryOptionReachesItsField) {
  const std::wstring path = L"C:\\\u00FC \u65E5\u672C\\\U0001F600.log";
  const std::wstring id = L"\u00FC\u65E5\U0001F600 x";
  const CommandLine parsed =
      parseCommandLine({L"--analytics-identifier", id, L"--pid=4242", L"--cr-detached-mode", L"--logs-path",
                        L"1" + path, L"--sentiq-logs-path", L"2" + path, L"--watchdog-logs-path=3" + path,
                        L"--watchdog-initial-logs-path", L"4" + path, L"--forcequit-log-path", L"5" + path,
                        L"--last-abnormal-session-id", L"l" + id, L"--encode-logs", L"no"});
  EXPECT_FALSE(parsed.exitCode);
  EXPECT_TRUE(parsed.crashReporterDetached);
  const LaunchOptions& options = parsed.options;
  EXPECT_EQ(options.analyticsIdentifier, toUtf8(id));
  EXPECT_EQ(options.lastAbnormalSessionId, "l" + toUtf8(id));
  EXPECT_EQ(options.pid, 4242);
  EXPECT_EQ(options.logPath, L"1" + path);
  EXPECT_EQ(options.sessionLogPath, L"2" + path);
  EXPECT_EQ(options.watchdogLogPath, L"3" + path);
  EXPECT_EQ(options.initialWatchdogLogPath, L"4" + path);
  EXPECT_EQ(options.forceQuitLogPath, L"5" + path);
  EXPECT_EQ(options.reservedPath, L"");
  EXPECT_FALSE(options.encodeLogs);
  EXPECT_EQ(std::locale(), std::locale::classic());
  EXPECT_FALSE(parseCommandLine({L"--pid", L"1"}).crashReporterDetached);
}

constexpr int fails = -1, runsEncoded = 2, runsPlain = 3;

// Of a line whose tokens end at blanks.
int outcomeOf(const std::wstring& line) {
  std::vector<std::wstring> tokens;
  std::wistringstream words(line);
  for (std::wstring word; words >> word;) {
    tokens.push_back(word);
  }
  try {
    const CommandLine parsed = parseCommandLine(tokens);
    return parsed.exitCode.value_or(parsed.options.encodeLogs ? runsEncoded : runsPlain);
  } catch (const std::exception&) {
    return fails;
  }
}

TEST(LaunchOptions, DecidesWhetherToRun) {
  const struct {
    int outcome;
    std::vector<const wchar_t*> lines;
  } cases[] = {
      {0, {L"--help", L"--help --pid 1"}},
      {1, {L"", L"--logs-path x --watchdog-logs-path y", L"--encode-logs 0"}},
      {runsEncoded, {L"--pid 0", L"--pid -7", L"--pi 5", L"--pid 5 --encode-logs yes", L"--pid=5"}},
      {runsPlain, {L"--pid 5 --encode-logs 0", L"--pid 5 --encode-logs=off", L"--pid 5 --encode-logs false"}},
      {fails,
       {L"--pid", L"--pid abc", L"--pid \u0665", L"--pid 2147483648", L"--pid 5 --pid 6", L"--unknown 5", L"--l 5"}},
      {fails, {L"C:\\CanvixSentiq.exe", L"--pid 5 stray", L"stray --pid 5", L"--pid 5 --cr-detached-mode=1"}},
      {fails, {L"--pid 5 --encode-logs", L"--pid 5 --encode-logs 2", L"--help --pid abc"}},
  };
  for (const auto& [outcome, lines] : cases) {
    for (const std::wstring line : lines) {
      EXPECT_EQ(outcomeOf(line), outcome) << testing::PrintToString(line);
    }
  }
  EXPECT_THROW(parseCommandLine({L""}), std::exception);
}

}  // namespace
}  // namespace sentiq
