#include <atomic>
#include <set>

#include "logging/LogEncoding.h"
#include "logging/TextConversion.h"
#include "logging/WatchdogLog.h"
#include "tests/support/Decode.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq {
namespace {

using test::linesOf;
using test::masked;
using test::readFile;
using test::stamp;
using testing::StartsWith;

#ifdef _WIN32
constexpr const char* lineEnd = "\r\n";
#else
constexpr const char* lineEnd = "\n";
#endif

constexpr auto toWatchdog = LogTarget::WatchdogLog;
constexpr auto toInitial = LogTarget::WatchdogInitialLog;

std::wstring wide(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return toWide(std::string(utf8.begin(), utf8.end()));
}

class WatchdogLog : public testing::Test {
 protected:
  void configure(bool encode) { configureWatchdogLog(-42, wide(log_), wide(initial_), encode); }

  test::TempFolder folder_;
  std::filesystem::path log_ = folder_ / toPath(L"W\u00E4chter \u65E5\u672C.log");
  std::filesystem::path initial_ = folder_ / toPath(L"initial \U0001F600.log");
};

TEST_F(WatchdogLog, LayoutOfALine) {
  configure(false);
  const struct {
    std::uint32_t level;
    bool isSystem;
    const char* tags;
  } cases[] = {{0, true, " [SYSTEM] [INFO]: "},
               {1, false, " [PROCESS] [ALERT]: "},
               {2, true, " [SYSTEM] [ERROR]: "},
               {3, true, " [SYSTEM] [UNKNOWN]: "},
               {7, false, " [PROCESS] [UNKNOWN]: "}};
  for (const auto& [level, isSystem, tags] : cases) {
    writeLogLine("a  b", isSystem, static_cast<LogLevel>(level), toInitial);
    EXPECT_EQ(masked(linesOf(readFile(initial_)).back()), stamp + tags + "a  b");
  }
  EXPECT_FALSE(std::filesystem::exists(log_));
  writeLogLine("one\ntwo\n", true, LogLevel::Info, static_cast<LogTarget>(9));
  const std::string text = readFile(log_);
  EXPECT_EQ(text.substr(text.find("one")), std::string("one") + lineEnd + "two" + lineEnd + lineEnd);
}

TEST_F(WatchdogLog, EncodesTheWholeLineUnlessKeptPlain) {
  const struct {
    const char* message;
    bool encode, keepHeaderPlain, neverEncode, plain;
  } cases[] = {
      {"Faulting ProcessID 42", true, true, false, true},
      {"Faulting ProcessID 42", true, false, false, false},
      {"OrbelSessionID: x", true, true, false, true},
      {"orbelsessionid processid", true, true, false, false},
      {"anything", true, false, true, true},
      {"anything", true, true, false, false},
      {"anything", false, false, false, true},
      {"two\nlines", true, false, false, false},
  };
  for (const auto& [message, encode, keepHeaderPlain, neverEncode, plain] : cases) {
    configure(encode);
    truncateLog(toWatchdog);
    writeLogLine(message, true, LogLevel::Info, toWatchdog, keepHeaderPlain, neverEncode);
    std::string text;
    for (const std::string& line : linesOf(readFile(log_))) {
      text += (text.empty() ? "" : "\n") + (plain ? line : test::decodeLine(line));
    }
    ASSERT_GT(text.size(), 28u) << message;
    EXPECT_EQ(text.substr(28), std::string(" [SYSTEM] [INFO]: ") + message);
  }
}

TEST_F(WatchdogLog, HeaderAndSeparator) {
  for (const bool encode : {false, true}) {
    configure(encode);
    truncateLog(toWatchdog);
    writeWatchdogHeader("s-\u00FC", toWatchdog);
    writeSeparator(toWatchdog);
    std::vector<std::string> lines = linesOf(readFile(log_));
    ASSERT_EQ(lines.size(), 5u);
    if (encode) {
      lines[2] = test::decodeLine(lines[2]);
      lines[3] = test::decodeLine(lines[3]);
    }
    const std::string head = stamp + " [SYSTEM] [INFO]: ";
    EXPECT_EQ(masked(lines[0]), head + "OrbelSessionID: s-\u00FC");
    EXPECT_EQ(masked(lines[1]), head + "ProcessID: -42");
    EXPECT_THAT(masked(lines[2]), StartsWith(head + "Time zone offset: "));
    EXPECT_THAT(masked(lines[3]), StartsWith(head + "LastBootTime: 20"));
    EXPECT_EQ(lines[3].size(), head.size() + 43);
    EXPECT_EQ(lines[4], encodeText(std::string(39, '=')));
  }
}

TEST_F(WatchdogLog, WithoutAFileNothingHappens) {
  configureWatchdogLog(1, L"", wide(folder_ / "missing" / "x.log"), false);
  for (const LogTarget target : {toWatchdog, toInitial}) {
    writeLogLine("lost", true, LogLevel::Info, target);
    writeSeparator(target);
    truncateLog(target);
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "missing"));

  configureWatchdogLog(1, wide(folder_ / ""), wide(initial_), false);
  truncateLog(toWatchdog);
  truncateLog(toInitial);
  EXPECT_TRUE(std::filesystem::is_directory(folder_ / ""));
  EXPECT_FALSE(std::filesystem::exists(initial_));
  writeLogLine("first", true, LogLevel::Info, toInitial);
  truncateLog(toInitial);
  EXPECT_EQ(std::filesystem::file_size(initial_), 0u);
}

// Lines of eight threads on both files, emptied meanwhile: each line whole, and none lost after the last truncation.
TEST_F(WatchdogLog, ThreadsTearNoLineAndLoseNone) {
  configure(false);
  constexpr int threads = 8;
  constexpr int linesEach = 2500;
  std::atomic<int> running = threads;
  std::vector<std::thread> writers;
  for (int thread = 0; thread < threads; ++thread) {
    writers.emplace_back([thread, &running] {
      for (int i = 0; i < linesEach; ++i) {
        const std::string id = std::to_string(thread) + ":" + std::to_string(i);
        writeLogLine("<" + id + std::string(200, '.') + id + ">", true, LogLevel::Info,
                     thread % 2 == 0 ? toWatchdog : toInitial);
      }
      --running;
    });
  }
  // Only the watchdog log is emptied: the initial log shows that nothing is lost.
  while (running > 0) {
    truncateLog(toWatchdog);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  for (std::thread& writer : writers) {
    writer.join();
  }
  std::set<std::string> seen;
  for (const auto& file : {log_, initial_}) {
    for (const std::string& line : linesOf(readFile(file))) {
      const std::size_t start = line.find('<');
      ASSERT_EQ(start, 46u) << line;
      const std::string id = line.substr(start + 1, line.find('.', start) - start - 1);
      ASSERT_EQ(line.substr(start), "<" + id + std::string(200, '.') + id + ">");
      ASSERT_TRUE(seen.insert(id).second) << id;
    }
  }
  EXPECT_EQ(linesOf(readFile(initial_)).size(), threads / 2 * linesEach);
}

}  // namespace
}  // namespace sentiq
