#include "tests/reader/judgement/Scenario.h"

namespace sentiq::scenario {

using testing::StartsWith;

// The logs stop at 13:00:00.
static std::string saidOfStop(const Lines& watchdog) {
  return said({.watchdog = watchdog, .exited = false});
}

TEST(Fall, IsSaidToBeBetweenTheLastSignOfLifeAndTheTimeThatIsTold) {
  EXPECT_THAT(
      saidOfStop(lines(Boot{"20:00:00"}, Restart{"20:00:02"}, Unexpected{"20:00:05", "1:04:00 PM"})),
      StartsWith("power-loss: The machine lost power or froze, and restarted without shutting down first, while "
                 "Canvix ran, between 2025-01-31 13:00:00.000 and 2025-01-31 13:04:00.000; it was up again at "
                 "2025-01-31 21:00:00.000\n"));
  EXPECT_THAT(saidOfStop(lines(Restart{"20:00:02"}, Unexpected{"20:00:05", "12:59:50 PM"})),
              HasSubstr("shortly after 2025-01-31 13:00:00.000; it was up again"))
      << "noted once a minute only";
}

TEST(Fall, ThatIsToldToBeLongAfterTheLogsStopIsNotTheirEnd) {
  EXPECT_THAT(saidOfStop(lines(Restart{"12:30:00"}, Unexpected{"12:30:05", "13:25:04", "31.01.2025"})),
              StartsWith("unknown"));
  EXPECT_THAT(saidOfStop(lines(Restart{"20:00:00"})), AllOf(StartsWith("unknown"), HasSubstr("Later, 8 h 0 min")));
}

TEST(Fall, IsToldInEveryOrderOfDayAndMonth) {
  for (const char* const date : {"\u200E1/31/\u200E2025", "31.01.2025", "25-01-31"}) {
    EXPECT_THAT(saidOfStop(lines(Restart{"20:00:00"}, Unexpected{"20:00:05", "01:02:03", date})),
                StartsWith("power-loss"));
  }
}

TEST(Fall, AfterTheClockWasSetBackIsAfterTheLastLineNotTheLatest) {
  EXPECT_THAT(said({.watchdog = lines(Restart{"11:30:00"}),
                    .exited = false,
                    .records = {recordLine("2025-01-31T13:00:00.000+0100"), recordLine("2025-01-31T12:20:00.000+0100")},
                    .copies = {}}),
              StartsWith("power-loss"));
}

TEST(Fall, WithinAnHourOrDuringSleepNeedsNoToldTime) {
  EXPECT_THAT(saidOfStop(lines(Restart{"12:30:00"})), StartsWith("power-loss"));
  EXPECT_THAT(saidOfStop(lines(Restart{"20:00:00", {"BugcheckCode=0", "ConnectedStandbyInProgress=true"}})),
              StartsWith("power-loss: The machine lost power during sleep"));
  EXPECT_THAT(saidOfStop(lines(Power{"12:00:01", 506, {"Reason=12"}}, Restart{"20:00:00"})),
              AllOf(StartsWith("power-loss"), HasSubstr("after it went into modern standby at 2025-01-31 13:00:01")));
  EXPECT_THAT(saidOfStop(lines(Restart{"12:30:00", {"BugcheckCode=0", "PowerButtonTimestamp=134278556317579862"}})),
              StartsWith("power-loss: The power button was held"));
}

TEST(Fall, ThatIsLoggedWhileCanvixRunsWasBeforeTheSession) {
  const std::string text = said({lines(Dump{"11:59:59"})});
  EXPECT_THAT(text, AllOf(StartsWith("ended"), HasSubstr("Before this session: the machine crashed with the blue"),
                          Not(HasSubstr("Later"))));
  EXPECT_THAT(saidOfStop(lines(Report{"11:59:59", "BlueScreen", "r"})), StartsWith("unknown"));
}

TEST(Fall, ReportedAgainAfterTheSessionIsStillTheOneBeforeIt) {
  EXPECT_THAT(saidOfStop(lines(Report{"11:00:00", "BlueScreen", "r"}, Report{"12:30:00", "BlueScreen", "r"})),
              StartsWith("unknown"));
}

TEST(Fall, IsToldByTheEventThatTellsMost) {
  EXPECT_THAT(saidOfStop(lines(Unexpected{"12:30:05", "x", ""}, Restart{"12:30:01", {"BugcheckCode=313"}})),
              StartsWith("bluescreen: The machine crashed with the blue screen 0x139 KERNEL_SEC"));
  EXPECT_THAT(saidOfStop(lines(Restart{"12:30:00"}, Dump{"12:30:09"})),
              AllOf(StartsWith("bluescreen"), HasSubstr("0x3b SYSTEM_SERVICE_EXCEPTION, dump C:\\M.DMP")));
  EXPECT_THAT(saidOfStop(lines(Report{"12:30:00", "BlueScreen", "r"})), StartsWith("bluescreen"));
  EXPECT_THAT(said({lines(Dump{"11:20:00"}, Unexpected{"11:20:05", "x", ""})}),
              HasSubstr("Before this session: the machine crashed with the blue screen 0x3b"));
  const LogSet set =
      read({.watchdog = lines(Restart{"12:30:00", {"BugcheckCode=313"}}, Dump{"12:30:09"}), .exited = false});
  EXPECT_EQ(judge(set.sessions.front()).evidence.fall->stopCode, 0x3b) << "also its facts, which differ here";
}

TEST(Fall, AfterACleanShutdownOrAnotherStartIsNotTheEnd) {
  EXPECT_THAT(saidOfStop(lines(Shutdown{"12:00:03"}, Stopped{"12:00:09"}, Restart{"12:30:00"})),
              StartsWith("shutdown: The machine was shut down while Canvix ran: a.exe began a restart"));
  EXPECT_THAT(saidOfStop(lines(Boot{"12:10:00"}, Boot{"12:30:00"}, Restart{"12:30:02"})), StartsWith("unknown"));
  EXPECT_THAT(saidOfStop(lines(Shutdown{"12:00:03"}, Restart{"12:30:00"})), StartsWith("power-loss"));
}

TEST(Shutdown, BegunBeforeTheExitEndsTheSession) {
  EXPECT_THAT(said({lines(Shutdown{"12:00:09"})}),
              StartsWith("shutdown: Canvix ended at 2025-01-31 13:00:05.000 while the machine shut down"));
  EXPECT_THAT(said({lines(Stopped{"12:00:15"})}), StartsWith("shutdown"));
  EXPECT_THAT(said({lines(Shutdown{"12:00:20"}, Stopped{"12:00:25"})}),
              AllOf(StartsWith("ended"), HasSubstr("Later, 15 s after")));
  EXPECT_THAT(said({lines(Crash{.at = "12:00:02"}, Shutdown{"12:00:01"})}),
              AllOf(StartsWith("crashed"), HasSubstr("About then a shutdown or restart was asked for")));
}

}  // namespace sentiq::scenario
