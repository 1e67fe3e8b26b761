#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#endif

#include <algorithm>
#include <exception>
#include <locale>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "logging/TextConversion.h"
#include "startup/LaunchOptions.h"

namespace sentiq {
namespace {

TEST(LaunchOptions, EveryOptionReachesItsField) {
  const std::wstring path = L"C:\\\u00FC \u65E5\u672C\\\U0001F600.log";
  const std::wstring id = L"\u00FC\u65E5\U0001F600 x";
  const CommandLine parsed = parseCommandLine(
      {L"--analytics-identifier", id, L"--pid=4242", L"--cr-detached-mode", L"--logs-path", L"1" + path,
       L"--sentiq-logs-path", L"2" + path, L"--watchdog-logs-path=3" + path, L"--watchdog-initial-logs-path",
       L"4" + path, L"--forcequit-log-path", L"5" + path, L"--last-abnormal-session-id", id, L"--encode-logs", L"no"});
  EXPECT_FALSE(parsed.exitCode);
  EXPECT_TRUE(parsed.crashReporterDetached);
  const LaunchOptions& options = parsed.options;
  EXPECT_EQ(options.analyticsIdentifier, toUtf8(id));
  EXPECT_EQ(options.lastAbnormalSessionId, toUtf8(id));
  EXPECT_EQ(options.pid, 4242);
  EXPECT_EQ(options.logPath, L"1" + path);
  EXPECT_EQ(options.sessionLogPath, L"2" + path);
  EXPECT_EQ(options.watchdogLogPath, L"3" + path);
  EXPECT_EQ(options.initialWatchdogLogPath, L"4" + path);
  EXPECT_EQ(options.forceQuitLogPath, L"5" + path);
  EXPECT_EQ(options.reservedPath, L"");
  EXPECT_FALSE(options.encodeLogs);
  EXPECT_EQ(std::locale(), std::locale::classic());
}

TEST(LaunchOptions, DecidesWhetherToRun) {
  const struct {
    std::vector<std::wstring> tokens;
    int outcome;  // 2: runs with encoding, 3: runs without, -1: a standard exception.
  } cases[] = {
      {{}, 1},
      {{L"--help"}, 0},
      {{L"--help", L"--pid", L"1"}, 0},
      {{L"--logs-path", L"x", L"--watchdog-logs-path", L"y"}, 1},
      {{L"--pid", L"0"}, 2},
      {{L"--pid", L"-7"}, 2},
      {{L"--pi", L"5"}, 2},
      {{L"--pid", L"5", L"--encode-logs", L"0"}, 3},
      {{L"--pid", L"5", L"--encode-logs=off"}, 3},
      {{L"--pid", L"5", L"--encode-logs", L"yes"}, 2},
      {{L"--pid", L"5", L"--encode-logs"}, -1},
      {{L"--pid", L"5", L"--encode-logs", L"2"}, -1},
      {{L"--pid", L"5", L"--cr-detached-mode=1"}, -1},
      {{L"C:\\CanvixSentiq.exe"}, -1},
      {{L"--pid", L"5", L"stray"}, -1},
      {{L"stray", L"--pid", L"5"}, -1},
      {{L""}, -1},
      {{L"--pid"}, -1},
      {{L"--pid", L"abc"}, -1},
      {{L"--pid", L"\u0665"}, -1},
      {{L"--pid", L"2147483648"}, -1},
      {{L"--pid", L"5", L"--pid", L"6"}, -1},
      {{L"--unknown", L"5"}, -1},
      {{L"--l", L"5"}, -1},
  };
  for (const auto& [tokens, outcome] : cases) {
    int seen = -1;
    try {
      const CommandLine parsed = parseCommandLine(tokens);
      seen = parsed.exitCode.value_or(parsed.options.encodeLogs ? 2 : 3);
    } catch (const std::exception&) {
    }
    EXPECT_EQ(seen, outcome) << testing::PrintToString(tokens);
  }
}

std::vector<std::wstring> split(const std::vector<std::wstring>& tokens) {
#ifdef _WIN32
  std::wstring line;
  for (const std::wstring& token : tokens) {
    line += token + L' ';
  }
  int count = 0;
  wchar_t** const parts = CommandLineToArgvW(line.c_str(), &count);
  std::vector<std::wstring> result(parts, parts + count);
  LocalFree(parts);
  return result;
#else
  return tokens;
#endif
}

// Command lines put together of what programs, people and accidents leave there.
TEST(LaunchOptions, AnyCommandLineRunsOrEndsWithZeroOrOne) {
  const std::vector<std::wstring> pieces = {L"--pid",
                                            L"--pid=42",
                                            L"--pi ",
                                            L" 4242",
                                            L"--help",
                                            L"--encode-logs",
                                            L"--encode-logs=0 ",
                                            L" off",
                                            L"-",
                                            L"--",
                                            L"=",
                                            L"\"",
                                            L"\\",
                                            L"\\\"",
                                            L"",
                                            L" ",
                                            L"99999999999999999999",
                                            L"-2147483649",
                                            L"0x10",
                                            L"--logs-path ",
                                            L"--l",
                                            L"/pid",
                                            L"@response",
                                            L"\xD800",
                                            L"\xDFFF\xD83D",
                                            L"\U0001F600",
                                            L"\x01",
                                            L"C:\\a b\\\u00FC.log",
                                            L"--analytics-identifier ",
                                            L"--last-abnormal-session-id=",
                                            L"--cr-detached-mode",
                                            std::wstring(5000, L'p')};
  std::mt19937 random(137);
  int runs = 0, zeros = 0, ones = 0;
  for (int i = 0; i < 20'000; ++i) {
    std::vector<std::wstring> tokens(random() % 6);
    for (std::wstring& token : tokens) {
      do {
        token += pieces[random() % pieces.size()];
      } while (random() % 3 == 0);
    }
    int exitCode = 0;
    try {
      exitCode = parseCommandLine(split(tokens)).exitCode.value_or(-1);
    } catch (const std::exception&) {
    }
    runs += exitCode == -1;
    zeros += exitCode == 0;
    ones += exitCode == 1;
  }
  EXPECT_EQ(runs + zeros + ones, 20'000);
  EXPECT_GT(std::min({runs, zeros, ones}), 50);  // Of each kind there was some.
}

}  // namespace
}  // namespace sentiq
