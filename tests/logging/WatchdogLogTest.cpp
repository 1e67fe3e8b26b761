#include "logging/TextConversion.h"
#include "logging/WatchdogLog.h"
#include "tests/support/Logs.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq {
namespace {

using test::formOf;
using test::readLog;
using testing::ElementsAre;
using testing::StartsWith;

constexpr auto toWatchdog = LogTarget::WatchdogLog;
constexpr auto toInitial = LogTarget::WatchdogInitialLog;

std::wstring wide(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return toWide(std::string(utf8.begin(), utf8.end()));
}

class WatchdogLog : public testing::Test {
 protected:
  WatchdogLog() { configure(false); }
  void configure(bool encode) { configureWatchdogLog(-42, wide(log_), wide(initial_), encode); }

  test::TempFolder folder_;
  std::filesystem::path log_ = folder_ / toPath(L"W\u00E4chter \u65E5\u672C.log");
  std::filesystem::path initial_ = folder_ / toPath(L"initial \U0001F600.log");
};

TEST_F(WatchdogLog, LayoutOfALine) {
  for (const std::uint32_t level : {0, 1, 2, 3, 7}) {
    writeLogLine("a  b", level != 1, static_cast<LogLevel>(level), toInitial);
  }
  EXPECT_THAT(readLog(initial_), ElementsAre("[SYSTEM] a  b", "T [PROCESS] [ALERT]: a  b", "T [SYSTEM] [ERROR]: a  b",
                                             "T [SYSTEM] [UNKNOWN]: a  b", "T [SYSTEM] [UNKNOWN]: a  b"));
  EXPECT_FALSE(std::filesystem::exists(log_));
  writeLogLine("one\ntwo\n", true, LogLevel::Info, static_cast<LogTarget>(9));
  const std::string text = test::readFile(log_);
#ifdef _WIN32
  EXPECT_EQ(text.substr(text.find("one")), "one\r\ntwo\r\n\r\n");
#else
  EXPECT_EQ(text.substr(text.find("one")), "one\ntwo\n\n");
#endif
}

TEST_F(WatchdogLog, EncodesTheWholeLineUnlessKeptPlain) {
  const struct {
    const char* message;
    bool encode, keepHeaderPlain, neverEncode;
    const char* form;
  } cases[] = {
      {"Faulting ProcessID 42", true, true, false, "."},
      {"Faulting ProcessID 42", true, false, false, "#"},
      {"OrbelSessionID: x", true, true, false, "."},
      {"orbelsessionid processid", true, true, false, "#"},
      {"any thing", true, false, true, "."},
      {"any thing", false, false, false, "."},
      {"any thing", true, true, false, "#"},
      {"any thing\nof two", true, false, false, "##"},
  };
  for (const auto& [message, encode, keepHeaderPlain, neverEncode, form] : cases) {
    configure(encode);
    truncateLog(toWatchdog);
    writeLogLine(message, true, LogLevel::Info, toWatchdog, keepHeaderPlain, neverEncode);
    EXPECT_EQ(formOf(log_), form) << message;
    std::string text;
    for (const std::string& line : readLog(log_)) {
      text += line + "\n";
    }
    EXPECT_EQ(text, std::string("[SYSTEM] ") + message + "\n");
  }
}

TEST_F(WatchdogLog, HeaderAndSeparator) {
  for (const bool encode : {false, true}) {
    configure(encode);
    truncateLog(toWatchdog);
    writeWatchdogHeader("s-\u00FC", toWatchdog);
    writeSeparator(toWatchdog);
    EXPECT_THAT(readLog(log_), ElementsAre("[SYSTEM] OrbelSessionID: s-\u00FC", "[SYSTEM] ProcessID: -42",
                                           StartsWith("[SYSTEM] Time zone offset: "),
                                           StartsWith("[SYSTEM] LastBootTime: 20"), std::string(39, '=')));
    EXPECT_EQ(formOf(log_), encode ? "..###" : "....#");
  }
}

TEST_F(WatchdogLog, WithoutAFileNothingHappens) {
  truncateLog(toInitial);
  EXPECT_FALSE(std::filesystem::exists(initial_));
  configureWatchdogLog(1, L"", wide(folder_ / "missing" / "x.log"), false);
  for (const LogTarget target : {toWatchdog, toInitial}) {
    writeLogLine("lost", true, LogLevel::Info, target);
    writeSeparator(target);
    truncateLog(target);
  }
  configureWatchdogLog(1, wide(folder_ / ""), L"", false);
  truncateLog(toWatchdog);
  EXPECT_TRUE(std::filesystem::is_directory(folder_ / "") && std::filesystem::is_empty(folder_ / ""));
}

// Lines of eight threads on both files, of which one is emptied meanwhile: each line whole, none lost on the other.
TEST_F(WatchdogLog, ThreadsTearNoLineAndLoseNone) {
  constexpr int linesEach = 500;
  const std::string dots(200, '.');
  std::atomic<int> running = 8;
  std::vector<std::thread> writers;
  for (int thread = 0; thread < 8; ++thread) {
    writers.emplace_back([&, target = thread % 2 == 0 ? toWatchdog : toInitial] {
      for (int i = 0; i < linesEach; ++i) {
        writeLogLine(dots, true, LogLevel::Info, target);
      }
      --running;
    });
  }
  while (running > 0) {
    truncateLog(toWatchdog);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  for (std::thread& writer : writers) {
    writer.join();
  }
  EXPECT_EQ(readLog(initial_), std::vector(4 * linesEach, "[SYSTEM] " + dots));
  EXPECT_THAT(readLog(log_), testing::Each("[SYSTEM] " + dots));
}

}  // namespace
}  // namespace sentiq
