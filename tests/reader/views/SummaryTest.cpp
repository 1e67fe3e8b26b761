#include <cstdlib>

#include "reader/views/JudgementJson.h"
#include "reader/views/Summary.h"
#include "reader/views/Timeline.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

TEST(Summary, NamesGapsDamageAndWhatIsMissing) {
  std::string later = recordLine("2025-01-31T13:00:30.000+0100", 70);
  later.replace(later.find("00:00:10"), 8, "00:00:50");  // So long Canvix had run by then.
  const std::string log = sessionLog({recordLine("2025-01-31T12:59:50.000+0100"), later});
  const LogSet logs = readTexts({log + "\x01\n\xff\n" + "torn"});
  EXPECT_THAT(gapsOf(logs.sessions.front()), ElementsAre("40 s from 2025-01-31 12:59:50.000"));
  EXPECT_THAT(problemsOf(logs), ElementsAre(HasSubstr("3 damaged or unfinished lines of 7"), "No watchdog log"));
  EXPECT_THAT(summaryText(logs, /*colour=*/false, /*width=*/0),
              HasSubstr("70 MiB of 1000 MiB at 2025-01-31 13:00:30.000"));
}

TEST(Summary, OfSeveralSessionsNamesTheDamageOfEachOnce) {
  LogSet logs;
  logs.files.resize(2);
  logs.files[1].name = "torn\r.log";
  logs.files[1].lines = 9;
  logs.files[1].damagedLines = 2;
  logs.sessions.resize(2);
  logs.sessions[1].entries.resize(2);
  logs.sessions[1].entries[1].file = 1;
  EXPECT_THAT(summaryJson(logs, logs.sessions[0]), HasSubstr(R"("problems":[]})"));
  EXPECT_THAT(summaryJson(logs, logs.sessions[1]),
              HasSubstr(R"("problems":["torn .log: 2 damaged or unfinished lines of 9"]})"));
}

// Written by the program itself under Wine, one folder with encoding and one without, beside the same process.
TEST(Summary, OfLogsThatTheProgramWrote) {
  const char* const data = std::getenv("SENTIQ_READER_DATA");
  ASSERT_NE(data, nullptr);
  for (const std::string form : {"encoded", "plain"}) {
    const LogSet logs = readLogs(findLogs({data + ("/" + form)}), Keep::AllEvents, false);
    ASSERT_EQ(logs.sessions.size(), 1);
    EXPECT_THAT(summaryText(logs, /*colour=*/false, /*width=*/0),
                AllOf(testing::StartsWith("Canvix crashed at 2026-11-24 21:12:24.500: module PaintCore.dll 29.5.0.137, "
                                          "exception 0xc0000005 (access violation), offset 0x4d21f7\n"),
                      HasSubstr("Before this session: error report AppHangXProcB1: Canvix.exe"),
                      HasSubstr("session-2\n"), HasSubstr("Machine                   STUDIO-07\n"),
                      HasSubstr("Abnormal session before   session-1\n"), HasSubstr("2 min 26 s\n")));
    EXPECT_THAT(problemsOf(logs), ElementsAre());
    std::ostringstream timeline;
    TimelineOptions options;
    options.records = true;
    writeTimeline(logs, options, timeline);
    EXPECT_THAT(timeline.str(), AllOf(HasSubstr("Pen \"A\" \u2014 \u5B8C\u4E86 \u2705 \\ C:\n"),
                                      HasSubstr("watchdog     info     Watchdog stopped cleanly.\n")));
  }
}

const Instant noon = parseTime("2025-01-31T12:00:00Z")->instant;

TEST(Evidence, OfACrashHoldsItsCodesInOneForm) {
  ProgramFailure crash;
  crash.module = "gfx.dll";
  crash.exception = 0xC0000005;
  crash.offset = 0xA1B2;
  Judgement judgement;
  judgement.time = {noon, noon};
  judgement.evidence.failure = crash;
  EXPECT_EQ(dumped(evidenceJson(judgement)),
            R"({"time":"2025-01-31T12:00:00.000+00:00","module":"gfx.dll","exception":"0xc0000005",)"
            R"("exceptionWords":"access violation","offset":"0xa1b2"})");
}

TEST(Evidence, OfAFallHoldsItsLimitsAndWhenTheMachineWasBack) {
  Judgement judgement;
  judgement.time = {noon, noon + std::chrono::minutes(1)};
  judgement.offset = std::chrono::hours(1);
  judgement.back = noon + std::chrono::hours(2);
  judgement.evidence.fall.emplace();
  judgement.evidence.fall->asleep = judgement.evidence.fall->powerButton = true;
  EXPECT_EQ(dumped(evidenceJson(judgement)),
            R"({"time":"2025-01-31T13:00:00.000+01:00","timeAtLatest":"2025-01-31T13:01:00.000+01:00",)"
            R"("back":"2025-01-31T15:00:00.000+01:00","asleep":true,"powerButton":true})");
}

TEST(Changes, AreListedWithHowLongBeforeAndWhetherTheyFailed) {
  Judgement judgement;
  judgement.changes.resize(1);
  judgement.changes.front().change = {ChangeKind::Driver, "nvlddmkm", "31.0", /*failed=*/true};
  judgement.changes.front().time = noon;
  judgement.changes.front().earlier = std::chrono::hours(3);
  EXPECT_EQ(dumped(changesJson(judgement)), R"([{"kind":"driver","name":"nvlddmkm","version":"31.0","failed":true,)"
                                            R"("time":"2025-01-31T12:00:00.000+00:00","secondsEarlier":10800,)"
                                            R"end("text":"driver nvlddmkm 31.0 (failed)"}])end");
}

}  // namespace sentiq
