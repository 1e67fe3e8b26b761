#include "reader/judgement/RecordGaps.h"
#include "tests/reader/judgement/Scenario.h"

namespace sentiq::scenario {

using testing::ElementsAre;
using testing::StartsWith;

TEST(Outcome, IsNormalWhenTheCopiesReachFromBeforeTheExitToLongAfterIt) {
  EXPECT_THAT(said({}), StartsWith("ended: Canvix ended normally at 2025-01-31 13:00:05.000"));
  EXPECT_THAT(said({.copies = copyOf("13:00:06", "11:00:00")}),
              HasSubstr("made late enough, the last one at 2025-01-31 13:00:06"));
  EXPECT_THAT(said({.copies = {}}), HasSubstr("whether normally is unknown: the logs hold no copy"));
}

TEST(Outcome, IsNotNormalWhenABusyEventLogHasDroppedTheTimeOfTheExit) {
  EXPECT_THAT(said({.copies = copyOf("13:05:00", "12:03:10")}),
              HasSubstr("do not reach back to 2025-01-31 13:00:05.000, only to 2025-01-31 13:03:10"));
  Lines joined = copyOf("13:00:08", "11:00:00");
  for (const std::string& text : copyOf("13:05:00", "12:00:07")) {
    joined.push_back(text);
  }
  EXPECT_THAT(said({.copies = joined}), StartsWith("ended: Canvix ended normally"));
  Lines cleared = copyOf("13:00:08", "11:00:00");
  for (std::string text : copyOf("13:05:00", "12:03:10")) {
    const std::size_t number = text.find("ID>7<");
    cleared.push_back(number == std::string::npos ? text : text.replace(number, 5, "ID>1<"));
  }
  EXPECT_THAT(said({.copies = cleared}), HasSubstr("do not reach back")) << "its numbers began anew";
}

TEST(Outcome, IsNormalWhenWhatIsLostOfTheCopiesWasLongBefore) {
  const auto losing = [](const std::string& newest) {
    Lines copy = copyOf("13:05:00", newest);
    copy.push_back(marker("13:05:00", ""));
    copy.push_back(copyOf("13:05:00", "11:00:00").back());
    return said({.copies = copy});
  };
  EXPECT_THAT(losing("11:59:50"), StartsWith("ended: Canvix ended normally"));
  EXPECT_THAT(losing("12:00:20"), HasSubstr("events in the copies of the Application events cannot be read"));
}

TEST(Outcome, OfLogsThatEndWithASleepIsAsleep) {
  EXPECT_THAT(said({.watchdog = {marker("13:00:01", "System Will Sleep")}, .exited = false}),
              StartsWith("asleep: The machine went to sleep at 2025-01-31 13:00:01.000, and the logs end there"));
  EXPECT_THAT(said({.watchdog = {marker("13:00:01", "System Will Sleep"),
                                 line(Power{"12:00:00", 42, {"TargetState=5", "EffectiveState=5", "Reason=2"}})},
                    .exited = false}),
              AllOf(StartsWith("asleep: The machine hibernates"), HasSubstr("battery")));
  EXPECT_THAT(said({.watchdog = {marker("12:59:55", "System Will Sleep"), marker("13:00:01", "System Resume")},
                    .exited = false}),
              StartsWith("unknown"));
}

TEST(Before, IsToldInOrderAndOnce) {
  const LogSet logs = read(
      {.watchdog = lines(Crash{.at = "12:00:02"}, Report{"12:00:04"}, Any{"11:59:58", "DISPLAY", 4101, {"nvlddmkm"}},
                         Any{"11:59:57", "nvlddmkm", 13, {"\\Device\\Video3", "Error 0x2"}},
                         Any{"11:59:56", "nvlddmkm", 13, {"\\Device\\Video3", "Error 0x2"}},
                         Any{"11:55:00", "disk", 153, {"\\Device\\Harddisk0"}},
                         Any{"11:40:00", "disk", 7, {"long ago"}}, Power{"11:52:00", 107}),
       .records = {recordLine("2025-01-31T12:50:00.000+0100", 5)}});
  std::string before;
  for (const Before& fact : judge(logs.sessions.front()).before) {
    before += std::string(beforeName(fact.kind)) + ": " + fact.text + ", " + showDuration(fact.earlier) + '\n';
  }
  EXPECT_EQ(before,
            "resume: the machine has resumed from sleep, 8 min 2 s\n"
            "disk: a disk operation was tried again: \\Device\\Harddisk0, 5 min 2 s\n"
            "display: the graphics driver reported: \\Device\\Video3, Error 0x2, 5 s\n"
            "display: the display driver nvlddmkm stopped responding and was restarted, 4 s\n");
}

TEST(Before, NamesADiskThatIsNearlyFullAndABatteryNearlyEmpty) {
  std::string record = recordLine("2025-01-31T13:00:00.000+0100", 5);
  record.replace(record.find(":57,"), 4, ":3,");
  const LogSet logs = read({.watchdog = lines(Crash{.at = "12:00:02"}), .records = {record}});
  std::vector<std::string> texts;
  for (const Before& fact : judge(logs.sessions.front()).before) {
    texts.push_back(fact.text);
  }
  EXPECT_THAT(texts, ElementsAre("the disk was nearly full: 5 of 1000 MiB free", "the battery was at 3 %"));
}

TEST(Changes, OfTheDaysBeforeAreToldOnceAndTheNewestFirst) {
  const std::string update = "Microsoft-Windows-WindowsUpdateClient";
  const LogSet logs = read({lines(
      Any{"2025-01-01T10:00:00", update, 19, {"updateTitle=long ago"}},
      Any{"2025-01-30T10:00:00", update, 19, {"updateTitle=Definitions (Version 1)"}},
      Any{"2025-01-30T20:00:00", update, 19, {"updateTitle=Definitions (Version 2)"}},
      Any{"2025-01-29T10:00:00", update, 20, {"errorCode=0x8024001e", "updateTitle=KB5"}},
      Any{"2025-01-31T11:00:00", "MsiInstaller", 11707, {"Product: Pens -- Installation completed successfully."}},
      Any{"2025-01-31T11:00:01", "MsiInstaller", 1033, {"Pens", "4.0", "0", "0", "Maker"}},
      Boot{"2025-01-25T08:00:00", "19044"}, Boot{"2025-01-28T08:00:00", "19045"}, Crash{.at = "12:00:02"})});
  std::vector<std::string> changes;
  for (const Change& change : judge(logs.sessions.front()).changes) {
    changes.push_back(std::string(changeName(change.change.kind)) + ' ' + change.change.name +
                      (change.change.failed ? " failed, " : ", ") + showDuration(change.earlier));
  }
  EXPECT_THAT(changes, ElementsAre("program installed Pens, 1 h 0 min", "update Definitions (Version 2), 16 h 0 min",
                                   "update KB5 failed, 2 d 2 h", "Windows 10.0.19044.1 to 10.0.19045.1, 3 d 4 h"));
}

TEST(Machine, IsSaidToHaveSleptOnceForAllThatTellsOfOneSleep) {
  const Lines records{recordLine("2025-01-31T13:00:00.000+0100"), recordLine("2025-01-31T14:00:00.000+0100"),
                      recordLine("2025-01-31T16:00:10.000+0100")};
  Lines watchdog = lines(Power{"12:00:01", 42, {"Reason=7"}}, Power{"12:20:00", 107},
                         Any{"12:59:58",
                             "Microsoft-Windows-Power-Troubleshooter",
                             1,
                             {"SleepTime=2025-01-31T12:00:00.5Z", "WakeTime=2025-01-31T12:59:57Z"}},
                         Power{"14:10:00", 506, {"Reason=12"}}, Power{"14:20:00", 507, {"Reason=31"}},
                         Any{"15:00:05",
                             "Microsoft-Windows-Kernel-General",
                             1,
                             {"NewTime=2025-01-31T15:00:05Z", "OldTime=2025-01-31T14:00:05Z", "Reason=1"}});
  for (const auto& [time, text] : {std::pair("12:59:51", "System Will enter/exit Standby"),
                                   {"13:00:02", "System Will Sleep"},
                                   {"13:59:59", "System Resume"},
                                   {"15:10:01", "System Will enter/exit Standby"},
                                   {"15:40:00", "System Will enter/exit Standby"}}) {
    watchdog.push_back(marker(time, text));
  }
  const Logs logs{.watchdog = watchdog, .exited = false, .records = records};
  EXPECT_THAT(said(logs), HasSubstr("The machine slept 1 time\nModern standby began 1 time\n"
                                    "The display went on or off, or standby began or ended, 1 time\n"
                                    "The clock was set from 2025-01-31 15:00:05.000 to 2025-01-31 16:00:05.000, "
                                    "1 h 0 min forward\n"));
}

TEST(Machine, TellsNothingOfTheDisplayInASessionLogAlone) {
  const LogSet logs = readTexts({sessionLog(
      {recordLine("2025-01-31T12:59:50.000+0100"), "2025-01-31T13:00:00.000+0100 System Will enter/exit Standby"})});
  EXPECT_TRUE(judge(logs.sessions.front()).others.empty());
}

TEST(Gaps, AreMeasuredByHowLongCanvixRan) {
  const auto record = [](const std::string& time, const std::string& ran) {
    std::string text = recordLine("2025-01-31T" + time + ".000+0100");
    return text.replace(text.find("00:00:10"), 8, ran);
  };
  const LogSet logs = read({.exited = false,
                            .records = {record("13:00:00", "01:00:00"), record("15:00:10", "01:00:10"),  // Clock set.
                                        record("15:00:20", "01:00:20"), record("15:01:00", "01:01:00"),
                                        record("14:01:10", "01:01:10"), record("14:01:20", "01:01:20")}});
  std::vector<std::string> gaps;
  for (const RecordGap& gap : recordGaps(logs.sessions.front())) {
    gaps.push_back(showDuration(gap.length) + (gap.slept ? " slept" : ""));
  }
  EXPECT_THAT(gaps, ElementsAre("40 s"));
}

}  // namespace sentiq::scenario
