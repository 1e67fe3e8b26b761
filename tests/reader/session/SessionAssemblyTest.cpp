// Which logs belong to one session, and what the logs of another one tell of it.
#include "tests/reader/session/SessionLogs.h"

namespace sentiq {

// Files of several folders: the name holds the folder.
struct Sample {
  std::string name, text;
};
static LogSet readAll(const std::vector<Sample>& files, Keep keep = Keep::AllEvents) {
  const SampleFolder folder;
  for (const Sample& file : files) {
    folder.write(file.name, file.text);
  }
  return readLogs(findLogs({folder.file("")}), keep, false);
}
static Lines sessionsOf(const std::vector<Sample>& files) {
  return inShort(readAll(files).sessions);
}

TEST(Sessions, BeginWithTheirHeaders) {
  EXPECT_THAT(sessionsIn({header("a", "1") + record("13:00:00", "1") + header("b", "2") + record("14:00:00", "2"),
                          watchHead("13:00:00", "a", "1") + watch("13:00:05", "App has exited")}),
              ElementsAre("a 1; records 13:00:00; exits 13:00:05", "b 2; records 14:00:00"));
}

TEST(Sessions, WithoutHeaderAreToldByProcessAndTime) {
  const std::string head = record("13:00:00", "1") + record("13:00:10", "2");
  EXPECT_THAT(sessionsIn({head, watchHead("12:59:00", "a", "1"), watchHead("12:59:30", "b", "2")}),
              ElementsAre("a 1; records 13:00:00", "b 2; records 13:00:10"));
  EXPECT_THAT(sessionsIn({watchHead("12:00:00", "a", "1") + watch("12:30:00", "App has exited"), head}),
              ElementsAre("a 1; exits 12:30:00", " 1; records 13:00:00", " 2; records 13:00:10"))
      << "the system gives process ids again";
  EXPECT_THAT(sessionsIn({header("a", "1") + record("13:00:00", "1") + record("13:10:00", "1"),
                          watch("13:05:00", "App has exited")}),
              ElementsAre("a 1; records 13:00:00 13:10:00", " ; exits 13:05:00"));
  EXPECT_THAT(sessionsIn({header("a", "1") + record("13:00:06", "1"),
                          watch("13:00:00", "Starting Watchdog application") + watch("13:00:10", "App has exited")}),
              ElementsAre("a 1; records 13:00:06; exits 13:00:10"))
      << "the first record comes seconds after the first line";
}

TEST(Sessions, OfOneNameOnTwoMachinesStayTwo) {
  const auto log = [](const std::string& boot, const std::string& computer) {
    return watchHead("13:00:00", "a", "1", boot) + copies("13:00:01", crash("12:00:00", computer));
  };
  const std::string records = header("a", "1") + record("13:00:00", "1");
  const std::string before = watchHead("06:00:00", "a", "1", "05:00:00") + copies("06:00:01", crash("05:00:00", "X"));
  EXPECT_EQ(readAll({{"1.log", log("08:00:00", "X")}, {"2.log", before}}).sessions.size(), 2)
      << "Windows was started in between";
  EXPECT_EQ(readAll({{"1/w.log", log("08:00:00", "X")}, {"2/w.log", log("08:00:00", "Y")}}).sessions.size(), 2);
  EXPECT_EQ(readAll({{"1/w.log", log("08:00:00", "")}, {"2/w.log", log("08:05:00", "")}}).sessions.size(), 2);
  EXPECT_EQ(readAll({{"1/w.log", log("08:00:00", "")}, {"2/w.log", log("08:00:02", "")}}).sessions.size(), 1);
  EXPECT_EQ(readAll({{"1/w.log", log("08:00:00", "X")}, {"2/w.log", log("08:05:00", "x")}}).sessions.size(), 1)
      << "a clock that is set moves the start of Windows";
  EXPECT_EQ(readAll({{"1/s.log", records}, {"2/w.log", log("08:00:00", "X")}}).sessions.size(), 1)
      << "two different logs of one session";
  EXPECT_EQ(readAll({{"1/s.log", records}, {"2/s.log", header("a", "1") + record("13:00:05", "1")}}).sessions.size(),
            2);
}

TEST(Sessions, ThatAreThereTwiceAreOneAndSaySo) {
  const std::string begin = header("a", "1") + record("13:00:00", "1") + record("13:00:10", "1");
  for (const Keep keep : {Keep::AllEvents, Keep::Judgement}) {
    const LogSet logs = readAll({{"1/s.log", begin}, {"2/s.log", begin + exitStatus("13:00:15")}}, keep);
    EXPECT_THAT(inShort(logs.sessions), ElementsAre("a 1; records 13:00:00 13:00:10; exits 13:00:15"));
    EXPECT_THAT(logs.sessions.front().repeated, ElementsAre(testing::EndsWith("s.log")));
  }
  std::vector<Session> sessions;
  for (const std::string& text : {begin + exitStatus("13:00:15"), begin}) {
    sessions.push_back(readTexts({text}).sessions.front());
    sessions.back().folder = std::to_string(sessions.size());
  }
  std::vector<Session> told;
  joinSets(sessions, told);
  EXPECT_THAT(inShort(sessions), ElementsAre("a 1; records 13:00:00 13:00:10; exits 13:00:15"));
  EXPECT_THAT(sessions.front().repeated, ElementsAre("2"));
}

TEST(Sessions, LogLinesOfOneFileThatAreAlikeAreSeveral) {
  const std::string twice = watch("13:00:00", "System Resume") + watch("13:00:00", "System Resume");
  const std::string head = watchHead("13:00:00", "a", "1");
  const std::string later = watch("14:00:00", "System Resume");
  const LogSet logs = readTexts({head + twice + head + twice, head + later + later});
  ASSERT_EQ(logs.sessions.size(), 1);
  EXPECT_EQ(logs.sessions.front().entries.size(), 12) << "of another file only what is new";
  EXPECT_THAT(logs.sessions.front().repeated, ElementsAre(testing::EndsWith("1.log")));
}

TEST(InitialLogs, TellTheirWriterAndTheSessionThatTheyAreAbout) {
  const std::string initial = initialHead("13:10:00", "a", "2") + crash("13:00:20");
  const LogSet logs = readAll({{"s.log", header("a", "1") + record("13:00:00", "1")},
                               {"w.log", watchHead("13:10:00", "b", "2")},
                               {"i.log", initial}});
  EXPECT_THAT(inShort(logs.sessions), ElementsAre("a 1; records 13:00:00; crashes 13:00:20", "b 2; crashes 13:00:20"));
  EXPECT_EQ(logs.sessions.back().abnormalSessionId, "a");
  EXPECT_EQ(logs.sessions.front().bootText, "") << "that is the next session's";
  EXPECT_THAT(sessionsOf({{"i.log", initial}}), ElementsAre(" 2; crashes 13:00:20"));
}

TEST(InitialLogs, AreOfTheWriterThatBeganAtThatTime) {
  const std::string initial = initialHead("13:10:00", "a", "2") + crash("09:00:00");
  EXPECT_THAT(sessionsOf({{"w.log", watchHead("10:00:00", "x", "2") + watch("10:30:00", "App has exited") +
                                        watchHead("13:10:00", "b", "2")},
                          {"i.log", initial}}),
              ElementsAre("x 2; exits 10:30:00", "b 2; crashes 09:00:00"));
  EXPECT_THAT(sessionsOf({{"a.log", header("b", "2") + record("13:10:05", "2")},
                          {"w.log", watchHead("10:00:00", "x", "2") + watchHead("13:10:00", "b", "2")},
                          {"i.log", initial}}),
              ElementsAre("x 2", "b 2; records 13:10:05; crashes 09:00:00"))
      << "nobody says that the other had ended";
}

TEST(InitialLogs, AreAboutASessionAsItsOwnLinesTellOfIt) {
  EXPECT_THAT(sessionsOf({{"s.log", header("b", "2") + record("11:00:10", "2") + header("a", "1") +
                                        record("12:30:00", "1") + record("13:59:55", "2") + exitStatus("14:00:00")},
                          {"i.log", initialHead("13:00:00", "a", "3") + crash("12:30:05")}}),
              ElementsAre(testing::_, "a 1; records 12:30:00; crashes 12:30:05"))
      << "the exit below its header is the other's";
}

// The name alone would fit each time.
TEST(InitialLogs, TellNothingOfAnotherMachine) {
  const std::string log = watchHead("12:00:00", "a", "1") + copies("12:00:01", crash("11:00:00", "X"));
  const auto initial = [](const std::string& time, const std::string& boot, const std::string& computer) {
    return initialHead(time, "a", "2", boot) + crash("12:30:00", computer);
  };
  const auto crashes = [](const std::string& session, const std::string& told) {
    const Lines sessions = sessionsOf({{"1/a.log", session}, {"2/i.log", told}});
    return std::any_of(sessions.begin(), sessions.end(), [](const std::string& words) {
      return words.starts_with("a 1;") && words.find("12:30:00") != std::string::npos;
    });
  };
  EXPECT_TRUE(crashes(log, initial("13:00:00", "12:40:00", "X")));
  EXPECT_FALSE(crashes(log, initial("13:00:00", "12:40:00", "Y")));
  EXPECT_FALSE(crashes(log, initial("11:30:00", "08:00:00", "X"))) << "it was written before the session";
  const std::string unknown = watchHead("12:00:00", "a", "1");
  EXPECT_TRUE(crashes(unknown, initial("13:00:00", "08:00:01", "X"))) << "the same start of Windows";
  EXPECT_FALSE(crashes(unknown, initial("13:00:00", "12:40:00", "X"))) << "nothing speaks for it";
}

TEST(Sessions, HearOfTheirEventsFromTheNextOnesCopies) {
  const std::string events = crash("11:00:00", "X") + crash("12:30:00", "X") + crash("13:20:00", "X");
  const LogSet logs = readTexts({watchHead("12:00:00", "a", "1") + record("12:01:00", "1"),
                                 watchHead("13:00:00", "b", "2", "12:50:00") +
                                     watch("13:30:00", "System Will enter/exit Standby") + copies("13:30:00", events)});
  EXPECT_THAT(inShort(logs.sessions),
              ElementsAre("a 1; records 12:01:00; crashes 12:30:00", "b 2; crashes 11:00:00 12:30:00 13:20:00"));
  const Session& first = logs.sessions.front();
  EXPECT_TRUE(first.entries.back().borrowed);
  EXPECT_EQ(first.copies.size(), 1) << "it reaches back to the end of the first one";
  EXPECT_THAT(first.laterBoots, ElementsAre(logs.sessions.back().booted));
  EXPECT_FALSE(first.earlier);
  EXPECT_EQ(showTime(logs.sessions.back().earlier.value().end.instant, {}), "2025-01-31 11:01:00.000");
  const LogSet beside = readTexts({watchHead("11:30:00", "b", "2") + copies("13:30:00", events),
                                   watchHead("12:00:00", "a", "1") + watch("12:01:00", "App has exited")});
  EXPECT_EQ(beside.sessions.back().copies.size(), 1) << "of one that began earlier and ran on";
  EXPECT_EQ(beside.sessions.front().otherExits.size(), 1);
}

}  // namespace sentiq
