// Logs of whole sessions on one day, with their own times, and what the reader makes of them in short words.
#pragma once

#include "tests/reader/SampleLogs.h"

namespace sentiq {

inline std::string stamp(const std::string& time) {
  return "2025-01-31T" + time + ".000+0100";
}

/// A line of the watchdog.
inline std::string watch(const std::string& time, const std::string& message) {
  return stamp(time) + " [SYSTEM] [INFO]: " + message + "\n";
}

inline std::string watchHead(const std::string& time, const std::string& id, const std::string& process,
                             const std::string& boot = "08:00:00") {
  return watch(time, "OrbelSessionID: " + id) + watch(time, "ProcessID: " + process) +
         watch(time, "LastBootTime: 2025-01-31T" + boot + ".500+01:00");
}

inline std::string initialHead(const std::string& time, const std::string& about, const std::string& process,
                               const std::string& boot = "08:00:00") {
  return watchHead(time, about, process, boot) + watch(time, "Starting initial metric collection.");
}

inline std::string record(const std::string& time, const std::string& process, int freeDisk = 100) {
  std::string line = recordLine(stamp(time), freeDisk);
  return line.replace(line.find("4242"), 4, process) + "\n";
}

inline std::string exitStatus(const std::string& time) {
  return stamp(time) + " Exit Status - Canvix is no longer alive\n";
}

/// A crash of Canvix, in the Application channel; the time is the event's own.
inline std::string crash(const std::string& time, const std::string& computer = "") {
  std::string line = crashLine("2025-01-31T" + time + ".000+0100") + "\n";
  return line.replace(line.find("<Channel>"), 0, "<Computer>" + computer + "</Computer>");
}

/// Copies of both channels, with what is in the first one.
inline std::string copies(const std::string& time, const std::string& events = "") {
  return watch(time, "App dumping Application log:") + events + watch(time, "App dumping System log:");
}

/// "a 100: records 12:59:50; exits 13:00:05; copies 13:00:05 13:02:05; crashes 13:00:02", leaving out what there is
/// none of. Of the copies those that follow an exit, Application's.
inline std::string inShort(const Session& session) {
  std::string records, exits, copied, crashes;
  const auto clock = [](Instant time) { return ' ' + showTime(time, std::chrono::hours(1)).substr(11, 8); };
  for (const LogEntry& entry : session.entries) {
    std::string* const list = entry.metric                      ? &records
                              : entry.meaning == Meaning::Exit  ? &exits
                              : entry.meaning == Meaning::Crash ? &crashes
                                                                : nullptr;
    if (list != nullptr) {
      *list += clock(*entry.time);
    }
  }
  for (const ChannelCopy& copy : session.copies) {
    copied += copy.afterExit && copy.channel == "Application" ? clock(copy.made) : "";
  }
  const auto part = [](const std::string& name, const std::string& list) {
    return list.empty() ? list : "; " + name + list;
  };
  return session.id + ' ' + session.processId + part("records", records) + part("exits", exits) +
         part("copies", copied) + part("crashes", crashes);
}

inline Lines inShort(const std::vector<Session>& sessions) {
  Lines lines;
  for (const Session& session : sessions) {
    lines.push_back(inShort(session));
  }
  return lines;
}

/// What the files of one folder hold.
inline Lines sessionsIn(const std::vector<std::string>& texts) {
  return inShort(readTexts(texts).sessions);
}

}  // namespace sentiq
