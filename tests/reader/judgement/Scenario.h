// One session in a few words: Canvix, process 4242 (0x1092), runs from 12:59:40 to 13:00:05 local time, which is UTC
// plus one hour. Times of events are UTC, on that day unless they name another one.
#pragma once

#include "reader/judgement/Judgement.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq::scenario {

using Lines = std::vector<std::string>;

inline std::string utc(const std::string& time) {
  return (time.size() > 8 ? time : "2025-01-31T" + time) + ".0000001Z";
}

/// When the process was created, as events tell it: 12:59:40 local time, and an hour before.
constexpr const char* createdThen = "01db73d79b67de00";
constexpr const char* createdBefore = "01db73cf39a37600";

struct Crash {
  std::string at;
  std::string pid = "1092";
  std::string created = "";
  std::string reportId = "";
};
inline std::string line(const Crash& c) {
  return eventLine("Application Error", 1000, utc(c.at),
                   {"Canvix.exe", "29.5", "1", "gfx.dll", "3.1", "2", "c0000374", "00000000000a1b2", c.pid, c.created,
                    "", "", c.reportId});
}

struct Hang {
  std::string at;
  std::string kind = "";
};
inline std::string line(const Hang& h) {
  return eventLine("application hang", 1002, utc(h.at), {"CANVIX.EXE", "29.5", "1092", "", "", "", "", "", "", h.kind});
}

struct Report {
  std::string at;
  std::string kind = "APPCRASH";
  std::string id = "";
  std::string program = "Canvix.exe";
  std::string rechecking = "0";
};
inline std::string line(const Report& r) {
  return eventLine("Windows Error Reporting", 1001, utc(r.at),
                   {"",        "0",   r.kind,       "",         "0",    r.program, "29.5", "1",
                    "gfx.dll", "3.1", "2",          "c0000005", "a1b2", "",        "",     "\nC:\\a.tmp.dmp\nC:\\b.xml",
                    "C:\\Rep", "",    r.rechecking, r.id,       "4",    "hash"});
}

struct Restart {  // Logged after the machine has fallen.
  std::string at;
  Lines data = {"BugcheckCode=0", "SleepInProgress=0"};
};
inline std::string line(const Restart& r) {
  return eventLine("Microsoft-Windows-Kernel-Power", 41, utc(r.at), r.data, "System");
}

struct Unexpected {
  std::string at;
  std::string clock;  // Local time, as the event has it.
  std::string date = "1/31/2025";
};
inline std::string line(const Unexpected& u) {
  return eventLine("EventLog", 6008, utc(u.at), {u.clock, u.date, "", "", "184"}, "System");
}

struct Boot {
  std::string at;
  std::string build = "19045";
};
inline std::string line(const Boot& b) {
  return eventLine(
      "Microsoft-Windows-Kernel-General", 12, utc(b.at),
      {"MajorVersion=10", "MinorVersion=0", "BuildVersion=" + b.build, "QfeVersion=1", "StartTime=" + utc(b.at)},
      "System");
}

struct Dump {  // A blue screen, logged at the next start.
  std::string at;
};
inline std::string line(const Dump& d) {
  return eventLine("BugCheck", 1001, utc(d.at), {"0x0000003b (0x1, 0x2)", "C:\\M.DMP"}, "System");
}

struct Shutdown {  // Asked for.
  std::string at;
};
inline std::string line(const Shutdown& s) {
  return eventLine("USER32", 1074, utc(s.at), {"a.exe", "PC", "Planned", "0x8", "restart", "", "me"}, "System");
}

struct Stopped {  // The event log, at a clean shutdown.
  std::string at;
};
inline std::string line(const Stopped& s) {
  return eventLine("EventLog", 6006, utc(s.at), {}, "System");
}

struct Power {  // An event of Kernel-Power: 42 sleep, 107 resume, 506 and 507 modern standby.
  std::string at;
  int id = 42;
  Lines data = {};
};
inline std::string line(const Power& p) {
  return eventLine("Microsoft-Windows-Kernel-Power", p.id, utc(p.at), p.data, "System");
}

struct Any {
  std::string at;
  std::string provider = "Any";
  int id = 5;
  Lines data = {};
};
inline std::string line(const Any& a) {
  return eventLine(a.provider, a.id, utc(a.at), a.data);
}

/// A line of the program; its time is local.
inline std::string marker(const std::string& time, const std::string& text) {
  return "2025-01-31T" + time + ".000+0100 [SYSTEM] [INFO]: " + text;
}

template <typename... Told>
Lines lines(const Told&... told) {
  return {line(told)...};
}

/// A copy of the Application events, of which the oldest one happened at that time (UTC); made at a local time.
inline Lines copyOf(const std::string& made, const std::string& oldest) {
  std::string event = line(Any{oldest});
  event.replace(11, 8, made);
  return {marker(made, "App dumping Application log:"), event};
}

struct Logs {
  Lines watchdog = {};
  bool exited = true;
  Lines records = {recordLine("2025-01-31T12:59:50.000+0100"), recordLine("2025-01-31T13:00:00.000+0100", 90)};
  Lines copies = copyOf("13:05:00", "11:00:00");
};

inline LogSet read(const Logs& logs) {
  std::string watchdog;
  for (const Lines* const part : {&logs.copies, &logs.watchdog}) {
    for (const std::string& text : *part) {
      watchdog += encodedLine(text);
    }
  }
  Lines session = logs.records;
  if (logs.exited) {
    session.push_back("2025-01-31T13:00:05.000+0100 Exit Status - Canvix is no longer alive");
  }
  return readTexts({sessionLog(session), watchdogLog(watchdog)});
}

/// What is said of it: the outcome, then each statement in a line of its own.
inline std::string said(const Logs& logs) {
  const LogSet set = read(logs);
  EXPECT_EQ(set.sessions.size(), 1);
  const Judgement judgement = judge(set.sessions.front());
  std::string text = std::string(outcomeWord(judgement.outcome)) + ": " + judgement.verdict.text + '\n';
  for (const Statement& statement : judgement.others) {
    text += statement.text + '\n';
  }
  return text;
}

}  // namespace sentiq::scenario
