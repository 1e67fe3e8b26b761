// Bytes on their way in: forms of text, files that come and go, waits that end.
#include <cstdio>

#include "reader/input/FollowedFile.h"
#include "reader/input/InputFile.h"
#include "reader/input/LogTime.h"
#include "reader/input/Utf8Bytes.h"
#include "tests/reader/SampleLogs.h"

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace sentiq {

static std::string inUtf8(const std::string& bytes, std::size_t blockSize) {
  Utf8Bytes text;
  std::string result;
  for (std::size_t at = 0; at < bytes.size(); at += blockSize) {
    result += text.take(bytes.substr(at, blockSize));
  }
  return result + std::string(text.finish());
}

TEST(Utf8Bytes, ComeFromEveryFormWhereverBlocksEnd) {
  const std::string little(
      "\xFF\xFE"
      "a\0\xFC\0\xE5\x65\x3D\xD8\x3C\xDC\r\0\n\0",
      16);
  std::string big = little;
  for (std::size_t i = 0; i < big.size(); i += 2) {
    std::swap(big[i], big[i + 1]);
  }
  const std::string text = "aü日\U0001F43C\r\n";
  const std::pair<std::string, std::string> cases[]{{little, text},
                                                    {big, text},
                                                    {"\xEF\xBB\xBF" + text, text},
                                                    {text, text},
                                                    {"\xEF\xBB", "\xEF\xBB"},
                                                    {std::string("\xFF\xFE\x3D\xD8"
                                                                 "a\0\x3C\xDC"
                                                                 "b",
                                                                 9),
                                                     "\uFFFDa\uFFFD\uFFFD"},  // Halves of pairs, of a unit.
                                                    {"", ""}};
  for (const auto& [bytes, expected] : cases) {
    for (std::size_t blockSize = 1; blockSize <= bytes.size() + 1; ++blockSize) {
      EXPECT_EQ(inUtf8(bytes, blockSize), expected) << blockSize;
    }
  }
}

// Polls once, and tells what came: "!" for a start anew.
static std::string polled(FollowedFile& file) {
  std::string seen;
  file.poll({[&](std::string_view bytes) { seen += bytes; }, [&] { seen += '!'; }}, false);
  return seen;
}

TEST(FollowedFile, TellsWhatIsNewAndWhatIsAnotherFile) {
  const SampleFolder folder;
  const std::string name = folder.write("a.log", "one\n");
  FollowedFile file(pathFromText(name));
  EXPECT_EQ(polled(file), "one\n");
  EXPECT_EQ(polled(file), "");
  folder.write("a.log", "two\n", std::ios::app);
  EXPECT_EQ(polled(file), "two\n");
  std::filesystem::rename(pathFromText(name), pathFromText(name + ".away"));
  EXPECT_EQ(polled(file), "") << "it may come back";
  std::filesystem::rename(pathFromText(name + ".away"), pathFromText(name));
  EXPECT_EQ(polled(file), "") << "and has";
  folder.write("a.log", "three, longer than before\n");
  EXPECT_EQ(polled(file), "!three, longer than before\n");
  folder.write("a.log", "four\n");
  EXPECT_EQ(polled(file), "!four\n");
  const std::string head(200, 'a');
  folder.write("a.log", head + "\n\n");
  EXPECT_EQ(polled(file), "!" + head + "\n\n");
  folder.write("a.log", head);
  EXPECT_EQ(polled(file), "!" + head) << "it begins alike, but was emptied";
  folder.write("a.log", std::string("\xFF\xFE\x61\0", 4));
  EXPECT_EQ(polled(file), "!a");
  folder.write("a.log", "plain\n");
  EXPECT_EQ(polled(file), "!plain\n");
}

TEST(Input, EndsWhenAskedTo) {
  const SampleFolder folder;
  const std::string name = folder.write("a.log", std::string(1U << 20, 'a'));
  std::atomic<bool> stop = false;
  std::size_t size = 0;
  const auto count = [&](std::string_view bytes) {
    size += bytes.size();
    return size < 100'000;
  };
  EXPECT_TRUE(readInput(name, nullptr, stop, count));
  EXPECT_THAT(size, AllOf(testing::Ge(100'000), testing::Lt(1U << 20)));
  EXPECT_FALSE(readInput(folder.file("missing"), nullptr, stop, count));
  EXPECT_FALSE(readInput(folder.file(""), nullptr, stop, count));
#ifndef _WIN32
  const std::string pipe = folder.file("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  std::thread asks([&] {
    std::this_thread::sleep_for(50ms);
    stop = true;
  });
  EXPECT_TRUE(readInput(pipe, nullptr, stop, count)) << "nobody ever writes into it";
  asks.join();
#endif
}

TEST(LogTime, ReadsEveryFormAndRejectsTheRest) {
  const std::pair<const char*, const char*> cases[]{{"2025-01-31T14:05:09.042+0100", "2025-01-31T14:05:09.042+01:00"},
                                                    {"2025-01-31T14:05:09.042-03:30", "2025-01-31T14:05:09.042-03:30"},
                                                    {"2024-02-29T23:59:59Z", "2024-02-29T23:59:59.000+00:00"},
                                                    {"2025-02-29T10:00:00Z", ""},
                                                    {"2025-01-31T24:00:00Z", ""},
                                                    {"2025-01-31T14:0", ""},
                                                    {"2025-01-31T14:05:09+01", ""}};
  for (const auto& [text, shown] : cases) {
    const auto time = parseTime(text);
    EXPECT_EQ(time ? isoTime(time->instant, time->offset) : "", shown) << text;
  }
}

}  // namespace sentiq
