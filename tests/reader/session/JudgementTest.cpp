#include "reader/events/EventTable.h"
#include "reader/judgement/Judgement.h"
#include "reader/views/Summary.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

using Data = std::vector<std::string>;

// Canvix, process 4242 (0x1092), runs from 12:59:40 to 13:00:05 local time, which is UTC plus one hour.
const std::string exitLine = "2025-01-31T13:00:05.000+0100 Exit Status - Canvix is no longer alive";
const std::string kernelPower = "Microsoft-Windows-Kernel-Power";

static std::string utc(const std::string& time) {
  return "2025-01-31T" + time + ".0000001Z";
}

static std::string crash(const std::string& time, const std::string& pid = "1092", const std::string& created = "",
                         const std::string& program = "Canvix.exe") {
  return eventLine(
      "Application Error", 1000, utc(time),
      {program, "29.5", "1", "gfx.dll", "3.1", "2", "c0000374", "00000000000a1b2", pid, created, "", "", "r-1"});
}

static std::string hang(const std::string& time, const std::string& kind = "") {
  return eventLine("application hang", 1002, utc(time), {"CANVIX.EXE", "29.5", "1092", "", "", "", "", "", "", kind});
}

static std::string report(const std::string& time, const std::string& kind, const std::string& program = "Canvix.exe",
                          const std::string& rechecking = "0") {
  return eventLine("Windows Error Reporting", 1001, utc(time),
                   {"",           "0",   kind,       "",         "0",    program, "29.5", "1",
                    "gfx.dll",    "3.1", "2",        "c0000005", "a1b2", "",      "",     "\nC:\\a.tmp.dmp\nC:\\b.xml",
                    "C:\\Report", "",    rechecking, "r-1",      "4",    "hash"});
}

static std::string restarted(const std::string& time, const Data& data = {"BugcheckCode=0", "SleepInProgress=0"}) {
  return eventLine(kernelPower, 41, utc(time), data, "System");
}

static std::string unexpected(const std::string& time, const std::string& clock, const std::string& date) {
  return eventLine("EventLog", 6008, utc(time), {clock, date, "", "", "184"}, "System");
}

static std::string shutdown(const std::string& time) {
  return eventLine("USER32", 1074, utc(time), {"a.exe", "PC", "Planned", "0x8", "restart", "", "me"}, "System");
}

static std::string stopped(const std::string& time) {
  return eventLine("EventLog", 6006, utc(time), {}, "System");
}

static std::string marker(const std::string& time, const std::string& text) {
  return "2025-01-31T" + time + ".000+0100 [SYSTEM] [INFO]: " + text;
}

static LogSet logsOf(const Data& watchdog, const Data& session) {
  std::string lines;
  for (const std::string& line : watchdog) {
    lines += encodedLine(line);
  }
  return readTexts({sessionLog(session), watchdogLog(lines)});
}

static Data session(bool exited) {
  Data lines{recordLine("2025-01-31T12:59:50.000+0100"), recordLine("2025-01-31T13:00:00.000+0100", 90)};
  if (exited) {
    lines.push_back(exitLine);
  }
  return lines;
}

TEST(Judgement, SaysHowASessionEnded) {
  const std::string copied = eventLine("Other", 5, utc("11:00:00"), {});  // At 13:05.
  std::string copiedAtExit = copied;
  copiedAtExit.replace(copiedAtExit.find("13:05:00"), 8, "13:00:06");
  const Data button{"BugcheckCode=0", "PowerButtonTimestamp=134278556317579862"};
  const Data asleep{"BugcheckCode=0", "ConnectedStandbyInProgress=true"};
  const std::string dumped =
      eventLine("BugCheck", 1001, utc("12:30:09"), {"0x0000003b (0x1, 0x2)", "C:\\M.DMP"}, "System");
  struct Case {
    Data watchdog;
    const char* outcome;
    const char* words;       // In the first line.
    const char* other = "";  // In another.
  };
  const std::vector<Case> exited{
      // Whose crash, and when.
      {{crash("12:00:02")}, "crashed", "module gfx.dll 3.1, exception 0xc0000374 (heap corruption), offset 0xa1b2"},
      {{crash("12:02:00", "0x1092")}, "crashed", "13:02:00"},
      {{crash("12:00:02", "1092", "01db73c6e3cad000")}, "ended", "normally", "Another Canvix, process 4242"},
      {{crash("11:00:00")}, "ended", "normally", "Before this session: Canvix.exe 29.5 crashed"},
      {{crash("12:00:02", "1")}, "ended", "normally", "Another Canvix, process 1, crashed"},
      {{crash("12:00:02", "1092", "", "Other.exe")}, "ended", "normally"},
      {{hang("11:59:50"), crash("12:00:02"), shutdown("12:00:01")}, "crashed", "gfx.dll", "CANVIX.EXE 29.5 stopped"},
      {{crash("12:00:02"), shutdown("12:00:01")}, "crashed", "gfx.dll", "About then a shutdown or restart"},
      {{hang("12:00:02", "Cross-thread")}, "hung", "closed at 2025-01-31 13:00:02.000: Cross-thread"},
      {{crash("12:00:01"), hang("12:00:02")}, "crashed", "gfx.dll", "It also stopped responding"},
      // A report alone, or of something else.
      {{report("12:00:06", "APPCRASH")}, "crashed", "exception 0xc0000005 (access violation), offset 0xa1b2"},
      {{report("12:00:06", "BEX64")}, "crashed", "exception 0xa1b2, offset 0xc0000005"},
      {{report("12:00:06", "MoAppCrash", "Canvix_1")}, "crashed", "module 3.1 2, exception 0xa1b2, offset unknown"},
      {{report("12:00:06", "AppHangXProcB1")}, "hung", "Cross-process"},
      {{report("12:00:02", "AppHangTransient"), copied}, "ended", "normally", "for a while and recovered"},
      {{report("12:00:02", "RADAR_PRE_LEAK_64"), copied}, "ended", "normally", "more and more memory"},
      {{report("12:00:06", "APPCRASH", "Other.exe"), copied}, "ended", "normally"},
      {{report("12:00:06", "APPCRASH", "Canvix.exe", "1"), copied}, "ended", "normally"},
      {{report("11:00:00", "APPCRASH"), report("12:00:06", "APPCRASH")}, "ended", "normally"},
      {{crash("11:00:00"), report("12:00:06", "APPCRASH")}, "ended", "normally"},
      {{crash("12:00:01", "1"), report("12:00:06", "APPCRASH")}, "ended", "normally", "process 1"},
      // The end of Canvix and of the machine.
      {{copiedAtExit}, "ended", "whether normally is unknown"},
      {{shutdown("12:00:09")}, "shutdown", "a.exe began a restart for me: Planned"},
      {{stopped("12:00:15")}, "shutdown", "a clean shutdown"},
      {{shutdown("12:00:20"), stopped("12:00:25"), copied}, "ended", "normally", "Later, 15 s after"},
  };
  const std::vector<Case> running{
      {{shutdown("12:00:03"), restarted("12:30:00")}, "power-loss", "lost power or froze"},
      {{shutdown("12:00:03"), stopped("12:00:09"), restarted("12:30:00")}, "shutdown", "began a restart"},
      {{shutdown("15:00:00")}, "unknown", "the logs stop while Canvix runs", "Later, 3 h 0 min"},
      {{restarted("12:30:00", button)}, "power-loss", "power button was held"},
      {{restarted("20:00:00")}, "unknown", "the logs stop", "Later, 8 h 0 min"},
      {{restarted("20:00:00"), unexpected("20:00:05", "12:55:04 PM", "\u200E1/31/\u200E2025")},
       "power-loss",
       "lost power"},
      {{restarted("20:00:00"), unexpected("20:00:05", "01.02.03", "25-01-31")}, "power-loss", "lost power or froze"},
      {{restarted("12:30:00"), unexpected("12:30:05", "13:25:04", "31.01.2025")}, "unknown", "the logs stop"},
      {{restarted("11:00:00")}, "unknown", "the logs stop", "Before this session: the machine lost power"},
      {{restarted("20:00:00", asleep)}, "power-loss", "lost power during sleep"},
      {{unexpected("12:30:05", "x", ""), restarted("12:30:01", {"BugcheckCode=313"})},
       "bluescreen",
       "0x139 KERNEL_SEC"},
      {{restarted("12:30:00"), dumped}, "bluescreen", "0x3b SYSTEM_SERVICE_EXCEPTION, dump C:\\M.DMP"},
      {{report("12:30:00", "BlueScreen", "50")}, "bluescreen", "0x50 PAGE_FAULT_IN_NONPAGED_AREA"},
      {{marker("13:00:01", "System Will Sleep")}, "asleep", "went to sleep at 2025-01-31 13:00:01.000"},
      {{marker("12:59:55", "System Will Sleep"), marker("13:00:01", "System Resume")}, "unknown", "logs stop"},
  };
  for (const auto* const cases : {&exited, &running}) {
    for (const Case& c : *cases) {
      const LogSet logs = logsOf(c.watchdog, session(cases == &exited));
      ASSERT_EQ(logs.sessions.size(), 1);
      const std::string text = summaryText(logs, /*colour=*/false);
      EXPECT_EQ(judge(logs.sessions.front()).outcome, c.outcome) << text;
      EXPECT_THAT(text.substr(0, text.find('\n')), HasSubstr(c.words));
      EXPECT_THAT(text, HasSubstr(c.other));
    }
  }
}

TEST(Judgement, SaysInOrderWhatWentBefore) {
  const LogSet logs = logsOf(
      {crash("12:00:02"), report("12:00:04", "APPCRASH"), eventLine("DISPLAY", 4101, utc("11:59:58"), {"nvlddmkm", ""}),
       eventLine("nvlddmkm", 13, utc("11:59:57"), {"\\Device\\Video3", "Error 0x2"}),
       eventLine("nvlddmkm", 13, utc("11:59:56"), {"\\Device\\Video3", "Error 0x2"}),
       eventLine("disk", 153, utc("11:55:00"), {"\\Device\\Harddisk0"}),
       eventLine("disk", 7, utc("11:40:00"), {"long ago"}), eventLine(kernelPower, 107, utc("11:52:00"), {})},
      {recordLine("2025-01-31T12:50:00.000+0100", 5), exitLine});
  const Judgement judgement = judge(logs.sessions.front());
  std::string before;
  for (const Before& fact : judgement.before) {
    before += fact.kind + ": " + beforeText(fact) + '\n';
  }
  EXPECT_EQ(before,
            "resume: Before it: the machine has resumed from sleep, 8 min 2 s earlier\n"
            "disk: Before it: a disk operation was tried again: \\Device\\Harddisk0, 5 min 2 s earlier\n"
            "display: Before it: the graphics driver reported: \\Device\\Video3, Error 0x2, 5 s earlier\n"
            "display: Before it: the display driver nvlddmkm stopped responding and was restarted, 4 s earlier\n");
  EXPECT_EQ(judgement.evidence.text("reportPath"), "C:\\Report");
  EXPECT_EQ(judgement.evidence.text("bucket"), "hash");
  EXPECT_THAT(judgement.evidence.dumps, testing::ElementsAre("C:\\a.tmp.dmp"));
}

TEST(Judgement, CountsASleepOnceAndMakesNoGapOfAClockThatWasSet) {
  const std::string troubleshooter = "Microsoft-Windows-Power-Troubleshooter";
  const Data records{recordLine("2025-01-31T13:00:00.000+0100"), recordLine("2025-01-31T14:00:00.000+0100"),
                     recordLine("2025-01-31T16:00:10.000+0100")};
  const LogSet logs = logsOf(
      {marker("12:59:51", "System Will enter/exit Standby"), eventLine(kernelPower, 42, utc("12:00:01"), {"Reason=7"}),
       marker("13:00:02", "System Will Sleep"), eventLine(kernelPower, 107, utc("12:20:00"), {}),
       eventLine(troubleshooter, 1, utc("12:59:58"), {"SleepTime=2025-01-31T12:00:00.5Z"}),
       marker("13:59:59", "System Resume"), marker("15:59:00", "System Will enter/exit Standby"),
       eventLine(kernelPower, 506, utc("14:59:00"), {"Reason=12"}),
       eventLine("Microsoft-Windows-Kernel-General", 1, utc("15:00:05"),
                 {"NewTime=2025-01-31T15:00:05Z", "OldTime=2025-01-31T13:00:05Z", "Reason=1"})},
      records);
  const Summary summary = summarize(logs, logs.sessions.front());
  std::string text;
  for (const Statement& statement : summary.judgement.others) {
    text += statement.text + '\n';
  }
  EXPECT_EQ(text,
            "The machine slept 1 time\nModern standby began 1 time\n"
            "The clock was set from 2025-01-31 14:00:05.000 to 2025-01-31 16:00:05.000, 2 h 0 min forward\n");
  EXPECT_THAT(summary.gaps, testing::ElementsAre("1 h 0 min from 2025-01-31 13:00:00.000 (the machine slept)"));
}

TEST(EventTable, PutsEveryFormOfAnEventIntoWords) {
  const struct {
    const char* provider;
    int id;
    const char* data;  // What follows <System>.
    const char* words;
  } cases[]{
      {"Application Hang", 1002,
       "<EventData><Data>a.exe</Data><Data>1</Data><Binary>54006F0070000000</Binary></EventData>",
       "a.exe 1 stopped responding and was closed: Top"},
      {"microsoft-windows-kernel-power", 42, "<EventData><Data Name='Reason'>7</Data></EventData>",
       "The machine goes to sleep: idle"},
      {"Microsoft-Windows-Kernel-Power", 507, "<EventData><Data Name='Reason'>99</Data></EventData>",
       "Modern standby ended: code 99"},
      {"Microsoft-Windows-Kernel-General", 13,
       "<EventData><Data Name='StopTime'>2018-07-12T00:41:44.511091100Z</Data></EventData>",
       "Windows shut down at 2018-07-12 02:41:44.511"},
      {"Windows Error Reporting", 1001,
       "<EventData><Data Name='EventName'>LiveKernelEvent</Data><Data Name='P1'>1b8</Data></EventData>",
       "Error report LiveKernelEvent: the kernel met 0x1b8 VIDEO_MINIPORT_BLACK_SCREEN_LIVEDUMP and went on"},
      {"Microsoft-Windows-Resource-Exhaustion-Detector", 2004,
       "<UserData><M><ProcessInfo><Process_1><Name>a.exe</Name><CommitCharge>2097152</CommitCharge></Process_1>"
       "</ProcessInfo></M></UserData>",
       "The machine ran low on virtual memory; used most by a.exe (2 MiB)"},
      {"Any", 9,
       "<EventData><Data>&#x202E;a\n\tb&#x2028;c</Data><Binary>00</Binary></EventData><DebugData><Function>f</Function>"
       "</DebugData><ProcessingErrorData><ErrorCode>13</ErrorCode></ProcessingErrorData><RenderingInfo Culture='en'>"
       "<Message>Said</Message></RenderingInfo>",
       "Any 9: Said: a b c, DebugData.Function f, ProcessingErrorData.ErrorCode 13"},
  };
  for (const auto& c : cases) {
    const auto event = parseEvent("<Event><System><Provider Name='" + std::string(c.provider) + "'/><EventID>" +
                                  std::to_string(c.id) + "</EventID></System>" + c.data + "</Event>");
    ASSERT_TRUE(event);
    EXPECT_EQ(describeEvent(*event, std::chrono::minutes(120)).words, c.words);
  }
  const auto event = parseEvent("<Event><System><EventID>1</EventID></System><EventData><Data>" +
                                std::string(100'000, 'x') + "</Data></EventData></Event>");
  EXPECT_LT(event->data.front().second.size(), 10'000);
  EXPECT_THAT(describeEvent(*event, {}).words, testing::EndsWith("xxx\u2026"));
}

}  // namespace sentiq
