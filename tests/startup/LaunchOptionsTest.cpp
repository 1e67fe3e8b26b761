#ifdef _WIN32
#include <windows.h>

#include <shellapi.h>
#endif

#include <exception>
#include <locale>
#include <map>
#include <random>
#include <sstream>

#include "logging/TextConversion.h"
#include "startup/LaunchOptions.h"
#include "tests/support/Test.h"

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

// The tokens of a command line, as the program splits it; elsewhere at each blank.
std::vector<std::wstring> split(const std::wstring& line) {
  std::vector<std::wstring> tokens;
#ifdef _WIN32
  int count = 0;
  wchar_t** const parts = line.empty() ? nullptr : CommandLineToArgvW(line.c_str(), &count);
  tokens.assign(parts, parts + count);
  LocalFree(parts);
#else
  std::wistringstream words(line);
  for (std::wstring word; words >> word;) {
    tokens.push_back(word);
  }
#endif
  return tokens;
}

constexpr int fails = -1, runsEncoded = 2, runsPlain = 3;

int outcomeOf(const std::wstring& line) {
  try {
    const CommandLine parsed = parseCommandLine(split(line));
    return parsed.exitCode.value_or(parsed.options.encodeLogs ? runsEncoded : runsPlain);
  } catch (const std::exception&) {
    return fails;
  }
}

std::vector<std::wstring> partsOf(const std::wstring& text) {
  std::vector<std::wstring> parts;
  std::wistringstream stream(text);
  for (std::wstring part; std::getline(stream, part, L'|');) {
    parts.push_back(part);
  }
  return parts;
}

TEST(LaunchOptions, DecidesWhetherToRun) {
  const struct {
    int outcome;
    const wchar_t* lines;
  } cases[] = {
      {0, L"--help|--help --pid 1"},
      {1, L"|--logs-path x --watchdog-logs-path y|--encode-logs 0"},
      {runsEncoded, L"--pid 0|--pid -7|--pi 5|--pid 5 --encode-logs yes|--pid=5"},
      {runsPlain, L"--pid 5 --encode-logs 0|--pid 5 --encode-logs=off"},
      {fails, L"--pid|--pid abc|--pid \u0665|--pid 2147483648|--pid 5 --pid 6|--unknown 5|--l 5"},
      {fails, L"C:\\CanvixSentiq.exe|--pid 5 stray|stray --pid 5|--pid 5 --cr-detached-mode=1"},
      {fails, L"--pid 5 --encode-logs|--pid 5 --encode-logs 2"},
  };
  for (const auto& [outcome, lines] : cases) {
    for (const std::wstring& line : partsOf(lines)) {
      EXPECT_EQ(outcomeOf(line), outcome) << testing::PrintToString(line);
    }
  }
  EXPECT_THROW(parseCommandLine({L""}), std::exception);
}

// Command lines put together of what programs, people and accidents leave there; on Windows split by the system's
// rules.
TEST(LaunchOptions, AnyCommandLineRunsOrEndsWithZeroOrOne) {
  std::vector<std::wstring> pieces = partsOf(
      L"--pid|--pid=42|--pi | 4242|--help|--encode-logs|--encode-logs=0 | off|-|--|=|\"|\\|\\\"|\"\"| |@response|"
      L"99999999999999999999|-2147483649|0x10|--logs-path |--l|/pid|\xD800|\xDFFF\xD83D|\U0001F600|\x01|C:\\a "
      L"b\\\u00FC");
  pieces.emplace_back(5000, L'p');
  std::mt19937 random(137);
  std::map<int, int> outcomes;
  for (int i = 0; i < 20'000; ++i) {
    std::wstring line;
    for (auto count = random() % 10; count > 0; --count) {
      line += pieces[random() % pieces.size()] + (random() % 3 == 0 ? L"" : L" ");
    }
    ++outcomes[outcomeOf(line)];
  }
  EXPECT_EQ(outcomes.size(), 5u);  // Each kind of outcome came, and no other one.
}

}  // namespace
}  // namespace sentiq
