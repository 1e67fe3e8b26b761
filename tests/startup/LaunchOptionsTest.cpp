#include <exception>
#include <locale>

#include "logging/TextConversion.h"
#include "startup/LaunchOptions.h"
#include "tests/support/Test.h"

namespace sentiq {

TEST(LaunchOptions, EveryOptionReachesItsField) {
  const std::wstring text = L"C:\\\u00FC \u65E5\u672C\\\U0001F600.log";
  const auto [exitCode, options, detached] =
      parseCommandLine({L"--analytics-identifier", L"0" + text, L"--pid=4242", L"--cr-detached-mode", L"--logs-path",
                        L"1" + text, L"--sentiq-logs-path", L"2" + text, L"--watchdog-logs-path=3" + text,
                        L"--watchdog-initial-logs-path", L"4" + text, L"--forcequit-log-path", L"5" + text,
                        L"--last-abnormal-session-id", L"6" + text, L"--encode-logs", L"no"});
  EXPECT_TRUE(detached && !exitCode && !options.encodeLogs);
  EXPECT_EQ(options.pid, 4242);
  EXPECT_THAT(
      (std::vector{toWide(options.analyticsIdentifier), options.logPath, options.sessionLogPath,
                   options.watchdogLogPath, options.initialWatchdogLogPath, options.forceQuitLogPath,
                   toWide(options.lastAbnormalSessionId), options.reservedPath}),
      ElementsAre(L"0" + text, L"1" + text, L"2" + text, L"3" + text, L"4" + text, L"5" + text, L"6" + text, L""));
  EXPECT_EQ(std::locale(), std::locale::classic());
  EXPECT_FALSE(parseCommandLine({L"--pid", L"1", L"--logs-path", L""}).crashReporterDetached);
}

TEST(LaunchOptions, DecidesWhetherToRun) {
  const std::string fails = "fails", encoded = "runs encoded", plain = "runs plain";
  const std::pair<std::string, std::vector<const wchar_t*>> cases[] = {
      {"0", {L"--help", L"--help --pid 1"}},
      {"1", {L"", L"--logs-path x --watchdog-logs-path y", L"--encode-logs 0"}},
      {encoded, {L"--pid 0", L"--pid -7", L"--pi 5", L"--pid 5 --encode-logs yes", L"--pid=5"}},
      {plain, {L"--pid 5 --encode-logs 0", L"--pid 5 --encode-logs=off", L"--pid 5 --encode-logs false"}},
      {fails, {L"--pid", L"--pid abc", L"--pid 2147483648", L"--pid 5 --pid 6", L"--unknown 5", L"--l 5"}},
      {fails, {L"C:\\CanvixSentiq.exe", L"--pid 5 stray", L"stray --pid 5", L"--pid 5 --cr-detached-mode=1"}},
      {fails, {L"--pid 5 --encode-logs", L"--pid 5 --encode-logs 2", L"--help --pid abc", L"--pid 5 --logs-path="}},
  };
  for (const auto& [expected, lines] : cases) {
    for (const std::wstring line : lines) {
      std::wistringstream words(line);
      const std::vector<std::wstring> tokens(std::istream_iterator<std::wstring, wchar_t>{words}, {});
      std::string outcome = fails;
      try {
        const CommandLine parsed = parseCommandLine(tokens);
        outcome = parsed.exitCode ? std::to_string(*parsed.exitCode) : parsed.options.encodeLogs ? encoded : plain;
      } catch (const std::exception&) {
      }
      EXPECT_EQ(outcome, expected) << PrintToString(line);
    }
  }
}

}  // namespace sentiq
