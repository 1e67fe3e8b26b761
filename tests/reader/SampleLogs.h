// Logs as the program writes them, for the reader's tests.
#pragma once

#include <sstream>

#include <nlohmann/json.hpp>

#include "logging/LogEncoding.h"
#include "reader/console/Console.h"
#include "reader/session/LogSet.h"
#include "tests/support/Test.h"

namespace sentiq {

/// A folder of its own, gone at the end. File names and paths are UTF-8; folders in them are made.
class SampleFolder {
 public:
  std::string file(const std::string& name) const { return textFromPath(folder_ / pathFromText(name)); }
  std::string write(const std::string& name, const std::string& bytes,
                    std::ios::openmode mode = std::ios::trunc) const {
    const std::filesystem::path path = folder_ / pathFromText(name);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::out | mode) << bytes;
    return textFromPath(path);
  }

 private:
  test::TempFolder folder_;
};

inline std::string encodedLine(const std::string& text) {
  return encodeText(text) + '\n';
}

/// An event in a watchdog line, at 13:05:00 local time; the event's own time is given, UTC. A field may have a name:
/// "Name=value".
inline std::string eventLine(const std::string& provider, int id, const std::string& time,
                             const std::vector<std::string>& data, const std::string& channel = "Application") {
  std::string xml = "<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System><Provider Name='" +
                    provider + "'/><EventID Qualifiers='0'>" + std::to_string(id) +
                    "</EventID><Level>2</Level><TimeCreated SystemTime='" + time +
                    "'/><EventRecordID>7</EventRecordID><Channel>" + channel + "</Channel></System><EventData>";
  for (const std::string& value : data) {
    const std::size_t equals = value.find('=');
    xml += equals == std::string::npos
               ? "<Data>" + value + "</Data>"
               : "<Data Name='" + value.substr(0, equals) + "'>" + value.substr(equals + 1) + "</Data>";
  }
  return R"(2025-01-31T13:05:00.000+0100 [PROCESS] [INFO]: {"xmlData":)" +
         nlohmann::json(xml + "</EventData></Event>").dump() + '}';
}

/// That of Canvix, process 4242, in gfx.dll.
inline std::string crashLine(const std::string& time) {
  return eventLine("Application Error", 1000, time,
                   {"Canvix.exe", "29.5", "1", "gfx.dll", "3.1", "2", "c0000005", "a1b2", "0x1092"});
}

inline std::string recordLine(const std::string& time, int freeDisk = 100) {
  return R"({"appStartTime":"0 00:00:10","batteryPercentage":57,"freeDiskSpace":)" + std::to_string(freeDisk) +
         R"(,"freeSwapMemory":50,"processId":4242,"status":"Running","timestamp":")" + time +
         R"(","totalDiskSpace":1000,"totalSwapMemory":60})";
}

/// @param before what stands before each of its lines.
inline std::string header(const std::string& id, const std::string& processId, const std::string& before = "") {
  return before + "OrbelSessionID: " + id + "\n" + before + "ProcessID: " + processId + "\n";
}

inline std::string sessionLog(const std::vector<std::string>& lines) {
  std::string log = header("session-1", "4242");
  for (const std::string& line : lines) {
    log += encodedLine(line);
  }
  return log;
}

/// A watchdog log of the same session.
inline std::string watchdogLog(const std::string& lines) {
  return header("session-1", "4242", "2025-01-31T12:59:50.000+0100 [SYSTEM] [INFO]: ") + lines;
}

/// Reads the texts as the files of one session.
inline LogSet readTexts(const std::vector<std::string>& texts, Keep keep = Keep::RawLines) {
  const SampleFolder folder;
  std::vector<std::string> files;
  for (const std::string& text : texts) {
    files.push_back(folder.write(std::to_string(files.size()) + ".log", text));
  }
  return readLogs(findLogs(files), keep, false);
}

}  // namespace sentiq
