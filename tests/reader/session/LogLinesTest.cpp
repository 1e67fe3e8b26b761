// What one log's lines become: kept records, copies of the event log, messages of several lines; and what is no log.
#include "reader/session/LogFileReader.h"
#include "tests/reader/session/SessionLogs.h"

namespace sentiq {

static Session sessionOf(const std::string& text, Keep keep = Keep::AllEvents) {
  LogFileInfo info;
  LogFileReader reader(info, 0, keep);
  reader.feed(text);
  reader.finish();
  return std::move(reader.takeOut().at(0).session);
}

static std::string eventOf(int recordId, const std::string& channel = "Application") {
  std::string line = eventLine("Other", 5, "2025-01-31T12:00:00Z", {std::to_string(recordId)}, channel) + "\n";
  return line.replace(line.find("<EventRecordID>7") + 15, 1, std::to_string(recordId));
}

TEST(KeptRecords, OfARowAreTheFirstTheLowestAndTheLast) {
  std::string log = header("a", "1");
  for (const int disk : {50, 60, 40, 70, 80, 90}) {
    log += record("13:00:" + std::to_string(disk / 2), "1", disk);
  }
  const Session session = sessionOf(log, Keep::Judgement);
  std::vector<std::int64_t> disks;
  for (const MetricSample& sample : session.metrics) {
    disks.push_back(sample.freeDisk);
  }
  EXPECT_THAT(disks, ElementsAre(50, 40, 90));
  EXPECT_EQ(sessionOf(log).metrics.size(), 6);
  EXPECT_EQ(session.entries.back().line, 8);
}

TEST(KeptRecords, AreThoseOfEachProcess) {
  std::string log = header("a", "1");
  for (int i = 10; i < 50; ++i) {
    log += record("13:00:" + std::to_string(i), std::to_string(i % 2 + 1));
  }
  EXPECT_THAT(inShort(readTexts({log}, Keep::Judgement).sessions),
              ElementsAre("a 1; records 13:00:10 13:00:48", " 2; records 13:00:11 13:00:49"));
}

TEST(ChannelCopies, TellHowFarTheyReach) {
  const std::string log = watchHead("13:00:00", "a", "1") + watch("13:00:01", "System Resume") +
                          copies("13:00:02", eventOf(9) + eventOf(7)) + eventOf(3, "System") +
                          watch("13:00:05", "App has exited") + copies("13:00:05", eventOf(9) + eventOf(5)) +
                          copies("13:02:05", watch("13:02:05", "") + eventOf(9));
  for (const Keep keep : {Keep::AllEvents, Keep::WhatMatters, Keep::Judgement}) {
    std::vector<std::string> seen;
    for (const ChannelCopy& copy : sessionOf(log, keep).copies) {
      seen.push_back(copy.channel.substr(0, 3) + ' ' + std::to_string(copy.events) + ": " +
                     std::to_string(copy.firstRecord) + " to " + std::to_string(copy.lastRecord) +
                     (copy.lostBefore ? " lost before " + showTime(*copy.lostBefore, 1h).substr(11, 8) : "") +
                     (copy.afterExit ? " after exit" : ""));
      EXPECT_EQ(copy.oldest.has_value(), copy.events > 0);
    }
    EXPECT_THAT(seen,
                ElementsAre("App 2: 7 to 9", "Sys 1: 3 to 3", "App 2: 5 to 9 after exit", "Sys 0: 0 to 0 after exit",
                            "App 1: 9 to 9 lost before 13:02:05 after exit", "Sys 0: 0 to 0 after exit"));
  }
  EXPECT_TRUE(sessionOf(initialHead("13:00:00", "a", "1") + eventOf(1)).copies.empty());
  EXPECT_TRUE(sessionOf(copies("13:00:00", "\x01\n")).copies.front().lostBefore) << "a damaged line";
}

TEST(LogLines, EachEventIsThereOnceAndOthersAreCounted) {
  const std::string log =
      watchHead("13:00:00", "a", "1") + eventOf(1) + crash("12:00:00") + eventOf(1) + eventOf(2) + crash("12:00:00");
  const Session all = sessionOf(log);
  EXPECT_EQ(all.events.size(), 3);
  EXPECT_EQ(all.eventCopies, 2);
  const Session some = sessionOf(log, Keep::WhatMatters);
  EXPECT_EQ(some.events.size(), 1);
  EXPECT_EQ(some.counted.size(), 2);
  EXPECT_EQ(some.eventCopies, 2);
  EXPECT_EQ(sessionOf(log, Keep::Judgement).events.size(), 1);
}

TEST(LogLines, WithoutTimeBelongToWhatStandsBeforeThem) {
  const Session session = sessionOf(header("a", "1") + record("13:00:00", "1") + watch("13:00:01", "two") +
                                    "lines\n\n" + "three\n" + "[TIMESTAMP_ERROR] [SYSTEM] [INFO]: four\n");
  const std::vector<LogEntry>& entries = session.entries;
  ASSERT_EQ(entries.size(), 6);
  EXPECT_EQ(entries[0].time, entries[2].time) << "a header has the time of what follows";
  EXPECT_EQ(entries[3].text, "two lines");
  EXPECT_EQ(entries[4].text, "three");
  EXPECT_EQ(entries[5].text, "four");
  EXPECT_EQ(entries[5].time, entries[3].time);
}

// In summer the header says local time with the offset of standard time; its line has the one in force.
TEST(LogLines, TheStartOfWindowsIsThatOfTheClockInForce) {
  const Session session = sessionOf(
      "2025-07-01T13:00:00.000+0200 [SYSTEM] [INFO]: OrbelSessionID: a\n"
      "2025-07-01T13:00:00.000+0200 [SYSTEM] [INFO]: LastBootTime: "
      "2025-07-01T10:00:00.000+01:00\n");
  EXPECT_EQ(showTime(session.booted.value_or(Instant{}), {}), "2025-07-01 08:00:00.000");
}

static std::string inUtf16(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) {
    (bytes += c) += '\0';
  }
  return bytes;
}

TEST(LogLines, GoOnBehindTheZerosThatAPowerLossLeaves) {
  EXPECT_THAT(sessionsIn({header("a", "1") + record("13:00:00", "1") + R"({"appStart)" + std::string(99, '\0') +
                          header("b", "2") + record("13:10:00", "2")}),
              ElementsAre("a 1; records 13:00:00", "b 2; records 13:10:00"));
}

TEST(Files, WithoutALineOfOursAreNoLogs) {
  const std::string log = watch("13:00:00", "Starting Watchdog application");
  const SampleFolder folder;
  const std::string foreign =
      "2025-01-31 13:00:00 [main] [INFO]: started\n{\"timestamp\":\"2025-01-31T13:00:00\",\"processId\":7}\n[a]\n";
  const std::string names[]{folder.write("of-others.log", foreign),
                            folder.write("ours.log", "torn\xff\n" + log),
                            folder.write("ours.log.1", encodedLine(log)),
                            folder.write("ours.txt", inUtf16(log)),
                            folder.write("empty.log", ""),
                            folder.write("exit.txt", exitStatus("13:00:00"))};
  const std::string list = folder.write("users.txt", foreign);
  folder.write("ours.log.old", log);
  const auto read = [&](const std::vector<std::string>& inputs) {
    return readLogs(findLogs(inputs), Keep::Judgement, false);
  };
  const LogSet found = read({folder.file(""), names[1]});
  EXPECT_THAT(found.leftOut, ElementsAre(names[0]));
  Lines files;
  for (const LogFileInfo& file : found.files) {
    files.push_back(file.name);
  }
  EXPECT_THAT(files, UnorderedElementsAre(names[1], names[2], names[3], names[4], names[5]));
  const LogSet named = read({list, folder.write("any.name", log)});
  EXPECT_THAT(named.foreign, ElementsAre(list));
  EXPECT_EQ(named.sessions.size(), 1);
  EXPECT_EQ(named.files.size(), 1);
}

}  // namespace sentiq
