#include "tests/reader/judgement/Scenario.h"

namespace sentiq::scenario {

using testing::StartsWith;

TEST(Failure, OfTheWatchedProcessAtItsEndIsACrash) {
  EXPECT_THAT(said({lines(Crash{.at = "12:00:02"})}),
              StartsWith("crashed: Canvix crashed at 2025-01-31 13:00:02.000: module gfx.dll 3.1, exception 0xc0000374 "
                         "(heap corruption), offset 0xa1b2\n"));
}

TEST(Failure, ThatIsLoggedLateIsTheOneOfItsCreationTimeAtAnyDistance) {
  EXPECT_THAT(said({lines(Crash{.at = "12:40:00", .created = createdThen})}), StartsWith("crashed"));
  EXPECT_THAT(said({lines(Crash{.at = "12:40:00"})}), StartsWith("ended: Canvix ended normally"));
}

TEST(Failure, OfTheSameIdButAnotherCreationTimeIsOfAnotherCanvix) {
  EXPECT_THAT(said({lines(Crash{.at = "12:00:02", .created = createdBefore})}),
              AllOf(StartsWith("ended"), HasSubstr("Another Canvix, process 4242, crashed")));
}

TEST(Failure, WithACreationTimeBeyondAllDatesIsToldByItsId) {
  EXPECT_THAT(said({lines(Crash{.at = "12:00:02", .created = "8000000000000000"})}), StartsWith("crashed"));
}

TEST(Failure, OfAnotherProcessIsToldBesideTheOutcome) {
  EXPECT_THAT(said({lines(Crash{.at = "12:00:02", .pid = "0x1"})}),
              AllOf(StartsWith("ended"), HasSubstr("Another Canvix, process 1, crashed at 2025-01-31 13:00:02.000")));
}

TEST(Failure, BeforeTheSessionIsToldAsSuch) {
  EXPECT_THAT(said({lines(Crash{.at = "11:00:00"})}),
              AllOf(StartsWith("ended"), HasSubstr("Before this session: Canvix.exe 29.5 crashed")));
}

TEST(Failure, FromWhichTheProcessRanOnIsNoEnd) {
  const Lines records{recordLine("2025-01-31T12:59:50.000+0100"), recordLine("2025-01-31T14:00:00.000+0100")};
  EXPECT_THAT(
      said({.watchdog = lines(Crash{.at = "12:00:02", .created = createdThen}), .exited = false, .records = records}),
      AllOf(StartsWith("unknown"), HasSubstr("It ran on after this at 2025-01-31 13:00:02.000")));
}

TEST(Failure, ThatIsACrashCountsBeforeAHangBesideIt) {
  EXPECT_THAT(said({lines(Hang{"12:00:01"}, Crash{.at = "12:00:02"}, Hang{"12:00:03"})}),
              AllOf(StartsWith("crashed"), HasSubstr("It also stopped responding at 2025-01-31 13:00:03.000")));
  EXPECT_THAT(said({lines(Hang{"12:00:02", "Cross-thread"})}),
              StartsWith("hung: Canvix stopped responding and was closed at 2025-01-31 13:00:02.000: Cross-thread"));
}

TEST(Failure, OfWhichOnlyAReportTellsCountsAtTheEnd) {
  EXPECT_THAT(said({lines(Report{"12:00:06"})}),
              AllOf(StartsWith("crashed"), HasSubstr("0xc0000005 (access violation), offset 0xa1b2")));
  EXPECT_THAT(said({lines(Report{"12:00:06", "AppHangXProcB1"})}), StartsWith("hung"));
  EXPECT_THAT(said({lines(Report{"12:20:00"})}), StartsWith("ended"));
}

TEST(Failure, ReportedUnderTheIdOfAnEarlierOneIsThatOneSentAgain) {
  EXPECT_THAT(said({lines(Report{"11:00:00", "APPCRASH", "r"}, Report{"12:00:06", "APPCRASH", "r"})}),
              StartsWith("ended"));
  EXPECT_THAT(said({lines(Crash{.at = "11:00:00", .reportId = "r"}, Report{"12:00:06", "APPCRASH", "r"})}),
              StartsWith("ended"));
  EXPECT_THAT(said({lines(Report{"12:00:06", "APPCRASH", "", "Canvix.exe", "1"})}), StartsWith("ended"));
}

TEST(Failure, OfAnotherReportIdBesideItIsAnotherFailure) {
  EXPECT_THAT(
      said({lines(Crash{.at = "12:00:01", .pid = "0x1", .reportId = "r-1"}, Report{"12:00:03", "APPCRASH", "r-2"})}),
      AllOf(StartsWith("crashed: Canvix crashed at 2025-01-31 13:00:03"), HasSubstr("Another Canvix, process 1")));
  EXPECT_THAT(
      said({lines(Crash{.at = "12:00:01", .pid = "0x1", .reportId = "r-1"}, Report{"12:00:03", "APPCRASH", "r-1"})}),
      StartsWith("ended"));
}

TEST(Failure, OfWhichOnlyTheRuntimeOrThePopUpTellsCountsToo) {
  const std::string runtime =
      "Application: Canvix.exe\nCoreCLR Version: 8.0\nDescription: The process was terminated due "
      "to an unhandled exception.\nException Info: System.IO.IOException: gone\n   at A.B()";
  EXPECT_THAT(said({lines(Any{"12:00:02", ".NET Runtime", 1026, {runtime}})}),
              AllOf(StartsWith("crashed"), HasSubstr("System.IO.IOException")));
  EXPECT_THAT(said({lines(Any{"12:00:02",
                              "Application Popup",
                              26,
                              {"Caption=Canvix.exe - Application Error",
                               "Message=The instruction at 0x1 referenced memory at 0x0."}})}),
              StartsWith("crashed"));
}

TEST(Failure, ThatNamesNoProcessIsOfTheSessionWhoseExitIsNearest) {
  LogSet logs = read({lines(Report{"11:59:58"})});
  Session& session = logs.sessions.front();
  session.otherExits = {parseTime("2025-01-31T13:00:30.000+0100")->instant};
  EXPECT_EQ(judge(session).outcome, Outcome::Crashed);
  session.otherExits = {parseTime("2025-01-31T13:00:00.000+0100")->instant};
  EXPECT_EQ(judge(session).outcome, Outcome::Ended);
  EXPECT_THAT(
      judge(session).others,
      ElementsAre(testing::Field(&Statement::text, StartsWith("Another Canvix, crashed at 2025-01-31 12:59:58"))));
}

TEST(Failure, OfAnotherProgramALeakAndAHangThatRecoveredAreNoEnd) {
  EXPECT_THAT(said({lines(Report{"12:00:02", "APPCRASH", "", "Other.exe"})}),
              StartsWith("ended: Canvix ended normally"));
  EXPECT_THAT(said({lines(Report{"12:00:02", "AppHangTransient"})}),
              AllOf(StartsWith("ended"), HasSubstr("for a while and recovered")));
  EXPECT_THAT(said({lines(Report{"12:00:02", "RADAR_PRE_LEAK_64"})}),
              AllOf(StartsWith("ended"), HasSubstr("more and more memory")));
}

TEST(Failure, IsToldByAllThatTellOfIt) {
  const LogSet logs = read({lines(Crash{.at = "12:00:02", .reportId = "r-1"}, Report{"12:00:04", "APPCRASH", "r-1"})});
  const Evidence evidence = judge(logs.sessions.front()).evidence;
  ASSERT_TRUE(evidence.failure);
  EXPECT_EQ(evidence.failure->exception, 0xc0000374);
  EXPECT_EQ(evidence.failure->bucket, "hash");
  EXPECT_EQ(evidence.failure->reportPath, "C:\\Rep");
  EXPECT_THAT(evidence.failure->dumps, testing::ElementsAre("C:\\a.tmp.dmp"));
  EXPECT_EQ(evidence.entries.size(), 2);
}

}  // namespace sentiq::scenario
