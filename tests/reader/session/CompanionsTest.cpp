// Two programs write the same files: Canvix was started again before the companion of the last one had ended.
#include "tests/reader/session/SessionLogs.h"

namespace sentiq {

// The old process lingers while the system reports its crash, and the new one is there by then.
const std::string lingering = header("a", "100") + record("12:59:40", "100") + record("12:59:50", "100") +
                              header("b", "200") + record("13:00:03", "200") + exitStatus("13:00:05") +
                              record("13:00:13", "200") + record("13:00:23", "200");
const std::string oldOnesRecords = "a 100; records 12:59:40 12:59:50; exits 13:00:05";
const std::string newOnesRecords = "b 200; records 13:00:03 13:00:13 13:00:23";

const std::string lateExit = watch("13:00:05", "App has exited") + copies("13:00:05", crash("13:00:01"));
const std::string secondCopies = copies("13:02:05") + watch("13:02:06", "Leaving App monitor app exit") +
                                 watch("13:02:07", "Watchdog stopped cleanly.");

TEST(Companions, AnExitIsOfTheSessionWhoseRecordsEndThere) {
  EXPECT_THAT(sessionsIn({lingering}), ElementsAre(oldOnesRecords, newOnesRecords));
}

TEST(Companions, TheWatchdogsExitAndBothItsCopiesGoWithIt) {
  const std::string log =
      watchHead("12:00:00", "a", "100") + watchHead("13:00:03", "b", "200") + lateExit + secondCopies;
  const LogSet logs = readTexts({lingering, log});
  EXPECT_THAT(inShort(logs.sessions),
              ElementsAre(oldOnesRecords + " 13:00:05; copies 13:00:05 13:02:05; crashes 13:00:01",
                          newOnesRecords + "; crashes 13:00:01"));
  EXPECT_EQ(logs.sessions.front().entries.back().text, "Watchdog stopped cleanly.");
}

TEST(Companions, ASleepOfTheNewOneLeavesOnlyTheSecondCopies) {
  const std::string log = watchHead("13:01:00", "b", "200") + watch("13:01:00", "System Will Sleep") +
                          copies("13:01:01") + watch("13:01:02", "Done dumping event logs") + secondCopies;
  EXPECT_THAT(sessionsIn({lingering, log}), ElementsAre(oldOnesRecords + "; copies 13:02:05", newOnesRecords));
}

TEST(Companions, AnExitThatIsKnownFromAboveTheNewHeaderExplainsTheSecondCopies) {
  const std::string log = watchHead("12:00:00", "a", "100") + watch("13:00:05", "App has exited") + copies("13:00:05") +
                          watchHead("13:00:20", "b", "200") + secondCopies + watch("14:00:00", "App has exited") +
                          copies("14:00:00") + copies("14:02:00");
  EXPECT_THAT(sessionsIn({log}), ElementsAre("a 100; exits 13:00:05; copies 13:00:05 13:02:05",
                                             "b 200; exits 14:00:00; copies 14:00:00 14:02:00"));
}

TEST(Companions, WhoHearsOfDisplayChangesLaterHasNotExited) {
  const std::string heads = watchHead("12:00:00", "a", "100") + watchHead("13:00:03", "b", "200");
  const std::string display = watch("13:05:00", "System Will enter/exit Standby") + copies("13:05:00");
  EXPECT_THAT(sessionsIn({heads + lateExit + display}),
              ElementsAre("a 100; exits 13:00:05; copies 13:00:05; crashes 13:00:01", "b 200; crashes 13:00:01"));
  EXPECT_THAT(sessionsIn({heads + lateExit}),
              ElementsAre("a 100; crashes 13:00:01", "b 200; exits 13:00:05; copies 13:00:05; crashes 13:00:01"))
      << "nothing speaks against the order in the file";
}

TEST(Companions, OfTwoExitsTheOlderOnesComesFirst) {
  const std::string records = header("a", "100") + record("12:59:50", "100") + header("b", "200") +
                              record("12:30:00", "200") + record("12:59:55", "200") + exitStatus("13:00:01") +
                              exitStatus("13:00:02");
  const std::string log = watchHead("12:00:00", "a", "100") + watchHead("12:30:00", "b", "200") +
                          watch("13:00:01", "App has exited") + watch("13:00:03", "App has exited");
  EXPECT_THAT(sessionsIn({records, log}), ElementsAre("a 100; records 12:59:50; exits 13:00:01 13:00:01",
                                                      "b 200; records 12:30:00 12:59:55; exits 13:00:02 13:00:03"));
}

TEST(Companions, TheOlderOneMayEndLast) {
  EXPECT_THAT(sessionsIn({header("a", "100") + record("12:00:00", "100") + header("b", "200") +
                          record("12:10:00", "200") + exitStatus("12:10:05") + record("12:10:06", "100") +
                          record("12:59:50", "100") + exitStatus("13:00:00")}),
              ElementsAre("a 100; records 12:00:00 12:10:06 12:59:50; exits 13:00:00",
                          "b 200; records 12:10:00; exits 12:10:05"));
}

TEST(Companions, AClockThatWasSetBackDoesNotPutTheExitBeforeTheRecords) {
  EXPECT_THAT(sessionsIn({header("a", "100") + record("13:00:00", "100") + record("13:00:10", "100") +
                              record("12:00:00", "100") + exitStatus("12:00:05"),
                          watchHead("12:59:00", "a", "100") + watch("12:00:05", "App has exited")}),
              ElementsAre("a 100; records 12:00:00 13:00:00 13:00:10; exits 12:00:05 12:00:05"));
}

TEST(Companions, ARecordIsOfTheProcessThatItNames) {
  EXPECT_THAT(sessionsIn({header("a", "100") + record("13:00:00", "100") + header("b", "200") +
                          record("13:00:05", "200") + record("13:00:10", "100") + record("13:00:15", "200")}),
              ElementsAre("a 100; records 13:00:00 13:00:10", "b 200; records 13:00:05 13:00:15"));
}

TEST(Companions, AnExitOfNobodyThatIsKnownEndsNoSession) {
  EXPECT_THAT(sessionsIn({header("b", "200") + record("13:00:03", "200") + exitStatus("13:00:05") +
                          record("13:00:13", "200") + record("13:00:23", "200")}),
              ElementsAre(newOnesRecords, " ; exits 13:00:05"));
  EXPECT_THAT(
      sessionsIn({header("b", "200") + record("13:00:03", "200") + exitStatus("13:00:05") + record("13:00:06", "200")}),
      ElementsAre("b 200; records 13:00:03 13:00:06; exits 13:00:05"))
      << "the last sample was under way";
}

}  // namespace sentiq
