#include "reader/commands/DecodeCommand.h"
#include "reader/commands/TimelineCommand.h"
#include "tests/reader/commands/CommandRun.h"

namespace sentiq {

static void follow(const std::string& shown, const std::atomic<bool>& stop,
                   const std::function<void(const Streams&)>& command) {
  std::ofstream out(pathFromText(shown), std::ios::binary);
  std::ostringstream said;
  Messages messages(said);
  command({.out = out, .messages = messages, .stop = stop});
}

static AssertionResult comesToHold(const std::string& file, const std::string& text) {
  std::string shown;
  for (int tries = 0; tries < 6000 && shown.find(text) == std::string::npos; ++tries) {
    std::this_thread::sleep_for(10ms);
    shown = readFile(pathFromText(file));
  }
  return AssertionResult(shown.find(text) != std::string::npos) << "no \"" << text << "\" in: " << shown;
}

TEST(Follow, OfDecodeTakesAFileThatAppearsIsEmptiedAndIsDeleted) {
  const SampleFolder folder;
  const std::string shown = folder.write("shown", "");
  std::atomic<bool> stop{false};
  std::jthread follower([&] {
    follow(shown, stop, [&](const Streams& streams) {
      decodeLogs({{folder.file("a.log"), folder.file("b.log")}, /*follow=*/true}, streams);
    });
  });
  folder.write("a.log", encodedLine(entry + " first"));
  EXPECT_TRUE(comesToHold(shown, "a.log  " + entry + " first\n"));
  folder.write("b.log", "ProcessID: 42\n");
  EXPECT_TRUE(comesToHold(shown, "b.log  ProcessID: 42\n"));
  const std::string half = encodedLine(entry + " in two parts");
  folder.write("a.log", half.substr(0, 30), std::ios::app);
  folder.write("a.log", half.substr(30), std::ios::app);
  EXPECT_TRUE(comesToHold(shown, " in two parts\n"));
  folder.write("a.log",
               encodedLine("2025-02-01T00:00:00.000+0100 emptied and longer than before" + std::string(200, '.')));
  EXPECT_TRUE(comesToHold(shown, "a.log  2025-02-01"));
  // On Windows it cannot go in the moment in which it is read.
  std::error_code error;
  do {
    std::filesystem::remove(pathFromText(folder.file("b.log")), error);
  } while (error);
  folder.write("b.log", "ProcessID: 7\n");
  EXPECT_TRUE(comesToHold(shown, "b.log  ProcessID: 7\n"));
  stop = true;
}

TEST(Follow, OfTheTimelineTakesFoldersAndFilesAndShowsEachEventOnce) {
  const SampleFolder folder, other;
  const std::string shown = other.write("shown", "");
  std::atomic<bool> stop{false};
  std::jthread follower([&] {
    follow(shown, stop, [&](const Streams& streams) {
      followTimeline({folder.file(""), other.file("watchdog.log")}, {.records = true}, streams);
    });
  });
  const std::string event = encodedLine(eventLine("Any", 5, "2025-01-31T12:00:02Z", {"said"}));
  folder.write("notes.log", "not a log of the program\n");
  folder.write("new.log", sessionLog({recordLine("2025-01-31T12:59:50.000+0100")}));
  EXPECT_TRUE(comesToHold(shown, "process 4242 Running\n"));
  other.write("watchdog.log", watchdogLog(event));
  EXPECT_TRUE(comesToHold(shown, "Any 5: said\n"));
  other.write("watchdog.log", watchdogLog(event + event + encodedLine(entry + " emptied before a sleep")));
  EXPECT_TRUE(comesToHold(shown, "emptied before a sleep\n"));
  stop = true;
  follower.join();
  const std::string text = readFile(pathFromText(shown));
  EXPECT_EQ(text.find("Any 5"), text.rfind("Any 5"));
  EXPECT_THAT(text, Not(HasSubstr("not a log")));
}

TEST(Follow, OfTheTimelineRedactsThePathsOfLogs) {
  const SampleFolder folder;
  const std::string shown = folder.write("shown", "");
  const std::string log = folder.write("Users/Anna/new.log", watchdogLog(""));
  std::atomic<bool> stop{false};
  std::jthread follower([&] {
    follow(shown, stop, [&](Streams streams) {
      streams.redact = true;
      followTimeline({log}, {.json = true}, streams);
    });
  });
  EXPECT_TRUE(comesToHold(shown, "\"line\":2}"));
  stop = true;
  follower.join();
  EXPECT_THAT(readFile(pathFromText(shown)), Not(HasSubstr("Anna")));
}

}  // namespace sentiq
