#include "logging/TextConversion.h"
#include "logging/WatchdogLog.h"
#include "tests/support/Test.h"

namespace sentiq {

constexpr auto toWatchdog = LogTarget::WatchdogLog;
constexpr auto toInitial = LogTarget::WatchdogInitialLog;

class WatchdogLog : public Test {
 protected:
  WatchdogLog() { configureWatchdogLog(-42, wide(log_), wide(initial_), false); }
  static std::wstring wide(const std::filesystem::path& path) {
    const auto utf8 = path.u8string();
    return toWide(std::string(utf8.begin(), utf8.end()));
  }

  TempFolder folder_;
  std::filesystem::path log_ = folder_ / toPath(L"W\u00E4chter \u65E5\u672C.log");
  std::filesystem::path initial_ = folder_ / toPath(L"initial \U0001F600.log");
};

TEST_F(WatchdogLog, LayoutOfALine) {
  for (const std::uint32_t level : {0, 1, 2, 3, 7}) {
    writeLogLine("a  b", level != 1, static_cast<LogLevel>(level), toInitial);
  }
  EXPECT_THAT(readLog(initial_), ElementsAre("[SYSTEM] a  b", "T [PROCESS] [ALERT]: a  b", "T [SYSTEM] [ERROR]: a  b",
                                             "T [SYSTEM] [UNKNOWN]: a  b", "T [SYSTEM] [UNKNOWN]: a  b"));
  writeLogLine("one\ntwo\n", true, LogLevel::Info, static_cast<LogTarget>(9));
  const std::string end = sizeof(wchar_t) == 2 ? "\r\n" : "\n";  // On Windows, and elsewhere.
  EXPECT_THAT(readFile(log_), EndsWith(": one" + end + "two" + end + end));
}

TEST_F(WatchdogLog, EncodesTheWholeLineUnlessKeptPlain) {
  const std::tuple<std::string, bool, bool, std::string> cases[] = {{"Faulting ProcessID 42", true, false, "."},
                                                                    {"Faulting ProcessID 42", false, false, "#"},
                                                                    {"OrbelSessionID: x", true, false, "."},
                                                                    {"orbelsessionid processid", true, false, "#"},
                                                                    {"any thing", false, true, "."},
                                                                    {"any thing\nof two", true, false, "##"}};
  for (const auto& [message, keepHeaderPlain, neverEncode, form] : cases) {
    configureWatchdogLog(-42, wide(log_), L"", /*encodeLogs=*/true);
    truncateLog(toWatchdog);
    writeLogLine(message, true, LogLevel::Info, toWatchdog, keepHeaderPlain, neverEncode);
    EXPECT_EQ(formOf(log_), form) << message;
    EXPECT_EQ(readLog(log_), linesOf("[SYSTEM] " + message));
  }
}

// Encoded they are seen in the logs of the whole program.
TEST_F(WatchdogLog, PlainHeaderAndASeparatorThatIsEncodedAllTheSame) {
  writeWatchdogHeader("s-\u00FC", toWatchdog);
  writeSeparator(toWatchdog);
  EXPECT_THAT(readLog(log_), ElementsAre("[SYSTEM] OrbelSessionID: s-\u00FC", "[SYSTEM] ProcessID: -42",
                                         StartsWith("[SYSTEM] Time zone offset: "),
                                         StartsWith("[SYSTEM] LastBootTime: 20"), std::string(39, '=')));
  EXPECT_EQ(formOf(log_), "....#");
}

TEST_F(WatchdogLog, WithoutAFileNothingHappens) {
  truncateLog(toInitial);
  configureWatchdogLog(1, L"", wide(folder_ / "missing" / "x.log"), false);
  for (const LogTarget target : {toWatchdog, toInitial}) {
    writeLogLine("lost", true, LogLevel::Info, target);
    writeSeparator(target);
    truncateLog(target);
  }
  configureWatchdogLog(1, wide(folder_ / ""), L"", false);
  truncateLog(toWatchdog);
  EXPECT_TRUE(std::filesystem::is_empty(folder_ / ""));
}

// Lines of six threads on both files, of which one is emptied meanwhile: each line whole, none lost on the other.
TEST_F(WatchdogLog, ThreadsTearNoLineAndLoseNone) {
  const std::string dots(200, '.');
  {
    std::vector<std::jthread> writers;
    for (const LogTarget target : {toWatchdog, toInitial, toInitial, toWatchdog, toInitial, toInitial}) {
      writers.emplace_back([&dots, target] {
        for (int i = 0; i < 2000; ++i) {
          writeLogLine(dots, true, LogLevel::Info, target);
        }
      });
    }
    for (int i = 0; i < 50; ++i) {
      truncateLog(toWatchdog);
    }
  }
  EXPECT_EQ(readLog(initial_), Lines(4 * 2000, "[SYSTEM] " + dots));
  EXPECT_THAT(readLog(log_), Each("[SYSTEM] " + dots));
}

}  // namespace sentiq
