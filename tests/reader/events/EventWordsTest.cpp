#include "reader/events/EventWords.h"
#include "tests/reader/events/SampleEvents.h"

namespace sentiq {

static void expectWords(const SampleEvent& sample, Meaning meaning, const std::string& words) {
  const EventRecord event = sample.read();
  EXPECT_EQ(event.meaning, meaning) << words;
  EXPECT_EQ(std::string(severityName(event.severity)) + ": " + eventWords(event, 2h), words);
}

TEST(Words, SayHowTheMachineWas) {
  const std::string kernelGeneral = "microsoft-windows-kernel-general";
  expectWords({kernelPower, 41, {"BugcheckCode=313"}}, Meaning::BlueScreen,
              "error: The machine crashed with the blue screen 0x139 KERNEL_SECURITY_CHECK_FAILURE");
  expectWords({kernelPower, 41, {"SleepInProgress=4"}}, Meaning::PowerLoss,
              "error: The machine lost power during sleep");
  expectWords({kernelPower, 41, {"PowerButtonTimestamp=1"}}, Meaning::PowerLoss,
              "error: The power button was held until the machine went off");
  expectWords({"User32", 1074, {"a", "b", "Planned", "c", "restart", "", "me"}}, Meaning::ShutdownBegun,
              "warning: a began a restart for me: Planned");
  expectWords({kernelPower, 109, {"ShutdownActionType=5", "ShutdownReason=99"}}, Meaning::ShutdownDone,
              "notice: The kernel began to restart: code 99");
  expectWords({kernelGeneral, 13, {"StopTime=2018-07-12T00:41:44.511091100Z"}}, Meaning::ShutdownDone,
              "notice: Windows shut down at 2018-07-12 02:41:44.511");
  expectWords({kernelPower, 42, {"Reason=7"}}, Meaning::Sleep, "notice: The machine goes to sleep: idle");
  expectWords({kernelPower, 507, {"Reason=31"}}, Meaning::StandbyEnded, "notice: Modern standby ended: keyboard");
  expectWords({kernelPower, 105, {"AcOnline=false"}}, Meaning::Battery, "notice: The machine ran on its battery");
}

TEST(Words, SayWhatTroubleThereWas) {
  const std::string processes =
      "<M><ProcessInfo><Process_1><Name>a.exe</Name><CommitCharge>2097152</CommitCharge></Process_1></ProcessInfo></M>";
  expectWords({"Application Error", 1000, {"AppName=a", "ExceptionCode=c0000409", "FaultingOffset=0ff"}},
              Meaning::Other,
              "warning: a unknown crashed in unknown unknown: exception 0xc0000409 (fail fast or stack buffer overrun) "
              "at offset 0xff");
  expectWords(report("Other", {"a", "b", "c", "d", "", "", "", "h"}), Meaning::Other,
              "notice: Error report Other: a b, d h");
  expectWords(report("LiveKernelEvent", {"1b8"}), Meaning::Hardware,
              "warning: Error report LiveKernelEvent: the kernel met 0x1b8 VIDEO_MINIPORT_BLACK_SCREEN_LIVEDUMP and "
              "went on");
  expectWords({"Display", 4101, {"nvlddmkm"}}, Meaning::Display,
              "warning: The display driver nvlddmkm stopped responding and was restarted");
  expectWords({"Microsoft-Windows-Resource-Exhaustion-Detector", 2004, {}, "", 3, processes}, Meaning::Memory,
              "warning: The machine ran low on virtual memory; used most by a.exe (2 MiB)");
  expectWords({"disk", 153, {"\\Device\\Harddisk0"}, "", 3}, Meaning::Disk,
              "warning: A disk operation was tried again: \\Device\\Harddisk0");
  expectWords({"disk", 999, {"Size=7"}, "", 3}, Meaning::Disk, "warning: A disk or its file system reported: Size 7");
  expectWords({"disk", 999, {"Size=7"}, "", 4}, Meaning::Other, "info: disk 999: Size 7");
  expectWords({"Any", 9, {"a\n\tb", "Binary=00", std::string(64, '0'), "N=2018-07-12 00:41"}, "", 1}, Meaning::Other,
              "error: Any 9: a b, N 2018-07-12 00:41");
}

TEST(Words, BeginSmallWithinASentenceUnlessTheyAreAName) {
  EXPECT_EQ(inSentence("The machine"), "the machine");
  EXPECT_EQ(inSentence("An update"), "an update");
  EXPECT_EQ(inSentence("Error report"), "error report");
  EXPECT_EQ(inSentence("Canvix.exe crashed"), "Canvix.exe crashed");
  EXPECT_EQ(inSentence("Theme"), "Theme");
}

}  // namespace sentiq
