// The whole run with everything on, and shorter ones in which Canvix ends early. A full run takes over two
// minutes: the program stays for a second dump 120 s after Canvix has gone.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Lines = std::vector<std::string>;

const std::string system = stamp + " [SYSTEM] [INFO]: ";
const std::string process = stamp + " [PROCESS] [INFO]: ";

Lines header(const std::string& sessionId, const ChildProcess& canvix, const Lines& actual) {
  // The machine decides what stands in the time zone and boot lines; their form has its own tests.
  const auto line = [&](std::size_t i) { return i < actual.size() ? actual[i] : std::string("missing"); };
  EXPECT_THAT(line(2), StartsWith(system + "Time zone offset: "));
  EXPECT_THAT(line(3), StartsWith(system + "LastBootTime: "));
  return {system + "OrbelSessionID: " + sessionId, system + "ProcessID: " + std::to_string(canvix.pid()), line(2),
          line(3)};
}

void append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

/// The record numbers of a channel's sample events, newest first.
Lines sampleRecords(const std::string& channel, bool (*wanted)(const std::string& event)) {
  const std::string text = readFile(programFolder() / "events" / (channel + ".xml"));
  Lines records;
  for (std::size_t start = text.find("<Event "); start != std::string::npos; start = text.find("<Event ", start + 1)) {
    const std::string event = text.substr(start, text.find("</Event>", start) - start);
    const std::size_t number = event.find("<EventRecordID>") + 15;
    if (wanted(event)) {
      records.push_back("event " + event.substr(number, event.find('<', number) - number));
    }
  }
  std::reverse(records.begin(), records.end());
  return records;
}

bool anyEvent(const std::string&) {
  return true;
}
bool holds(const std::string& event, const std::string& text) {
  return event.find(text) != std::string::npos;
}
bool ofShutdown(const std::string& event) {
  return holds(event, ">1074<") || holds(event, ">6006<") || holds(event, ">6008<") || holds(event, ">109<") ||
         holds(event, ">41</EventID>");
}
bool ofCanvix(const std::string& event) {
  return (holds(event, ">1000</EventID>") || holds(event, ">1001</EventID>")) && holds(event, ">Canvix.exe<");
}

/// Puts "event <record number>" in place of each event line, after a look at its form.
Lines withEventNumbers(Lines lines) {
  for (std::string& line : lines) {
    const std::string head = process + "{\"xmlData\":\"";
    if (line.rfind(head, 0) == 0) {
      const std::string xml = nlohmann::json::parse(line.substr(process.size())).at("xmlData");
      EXPECT_THAT(xml, StartsWith("<Event xmlns="));
      const std::size_t number = xml.find("<EventRecordID>") + 15;
      line = "event " + xml.substr(number, xml.find('<', number) - number);
    }
  }
  return lines;
}

Lines dump() {
  Lines lines = {process + "App dumping Application log:"};
  append(lines, sampleRecords("Application", anyEvent));
  lines.push_back(process + "App dumping System log:");
  append(lines, sampleRecords("System", anyEvent));
  return lines;
}

bool contains(const std::filesystem::path& log, const std::string& line) {
  const Lines lines = readLog(log);
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

/// Takes the line out and says whether it was there: for lines of another thread, whose place is not fixed.
bool takeOut(Lines& lines, const std::string& line) {
  const auto found = std::find(lines.begin(), lines.end(), line);
  if (found == lines.end()) {
    return false;
  }
  lines.erase(found);
  return true;
}

void fullRun(bool encode) {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
  const RunFolder run;
  ChildProcess canvix(L"Canvix.exe");
  ChildProcess sentiq(L"CanvixSentiq.exe",
                      pidOption(canvix) + L" --last-abnormal-session-id previous --cr-detached-mode" +
                          run.sessionOption() + run.watchdogOptions() + (encode ? L"" : L" --encode-logs 0"));

  // The start: the watchdog's own lines, and what the last session left in the event log.
  ASSERT_TRUE(eventually([&] {
    const std::string raw = readFile(run.initial);
    return raw.find("bFRrUmJwXE9fUVhOSVJTWGIMCQ0FDw0PDmxUa1JicFxPX1FYTklS\r\n") != std::string::npos;
  }));
  ASSERT_TRUE(eventually([&] { return powerWindowOf(sentiq.pid()) != nullptr; }));
  ASSERT_TRUE(eventually([&] { return contains(run.watchdog, process + "Inside  monitor app exit"); }));
  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 3; }));
  Lines lines = readLog(run.initial);
  Lines expected = header("previous", canvix, lines);
  append(expected, {system + "Starting initial metric collection.", process + "Reading last shutdown details"});
  append(expected, sampleRecords("System", ofShutdown));
  expected.push_back(process + "Reading last app termination details in Application logs");
  append(expected, sampleRecords("Application", ofCanvix));
  append(expected, {process + "Reading last app termination details in System logs",
                    system + "Initial metric collection done.", masked(std::string(39, '='))});
  EXPECT_THAT(withEventNumbers(lines), ElementsAreArray(expected));

  lines = readLog(run.watchdog);
  expected = header("session-\u00FC", canvix, lines);
  append(expected, {system + "Starting Watchdog application", system + "Done with start of Watchdog application"});
  EXPECT_TRUE(takeOut(lines, process + "Inside  monitor app exit"));
  EXPECT_TRUE(takeOut(lines, system + "inside power thread"));
  EXPECT_THAT(lines, ElementsAreArray(expected));

  // Sleep begins the watchdog log anew; resume and the end go on in it.
  const HWND window = powerWindowOf(sentiq.pid());
  SendMessageW(window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
  SendMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, 0);
  SendMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
  canvix.end();
  EXPECT_EQ(sentiq.wait(200s), 0u);

  lines = withEventNumbers(readLog(run.watchdog));
  expected = header("session-\u00FC", canvix, lines);
  for (const char* title : {"System Will Sleep", "System Resume"}) {
    expected.push_back(system + title);
    append(expected, dump());
    expected.push_back(system + "Done dumping event logs");
  }
  expected.push_back(process + "App has exited");
  append(expected, dump());
  append(expected, dump());
  append(expected, {process + "Leaving App monitor app exit", system + "Watchdog stopped cleanly."});
  EXPECT_TRUE(takeOut(lines, system + "Attempting to stop Watchdog."));
  EXPECT_THAT(lines, ElementsAreArray(expected));

  lines = readLog(run.session);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), stamp + " Exit Status - Canvix is no longer alive"), 1);
  EXPECT_TRUE(takeOut(lines, stamp + " Exit Status - Canvix is no longer alive"));
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines[0] + " " + lines[1], "OrbelSessionID: session-\u00FC ProcessID: " + std::to_string(canvix.pid()));
  for (std::size_t i = 2; i < lines.size(); ++i) {
    EXPECT_EQ(nlohmann::json::parse(lines[i])["processId"], canvix.pid());
  }

  EXPECT_THAT(readerReport(run), AllOf(HasSubstr(">Canvix ended normally at "), HasSubstr(">The machine slept 1 time<"),
                                       HasSubstr("<dd>previous</dd>"), Not(HasSubstr("Missing or damaged"))));

  // Encoded files show in the clear which session and process they belong to, and nothing else.
  for (const auto& log : {run.initial, run.watchdog, run.session}) {
    const Lines raw = linesOf(readFile(log));
    const bool session = log == run.session;
    for (std::size_t i = 0; i < raw.size(); ++i) {
      const bool plain = !encode || i < 2;
      const bool separator = log == run.initial && i + 1 == raw.size();
      EXPECT_EQ(raw[i].find_first_of(session ? ":" : "[") != std::string::npos, plain && !separator) << raw[i];
    }
  }
}

TEST(FullRun, EveryLineEncoded) {
  fullRun(true);
}
TEST(FullRun, EveryLinePlain) {
  fullRun(false);
}

// Canvix ends while the program starts: the run must end by itself, at the latest after the second dump.
TEST(FullRun, CanvixEndsWhileTheProgramStarts) {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (programFolder() / "events").c_str());
  const RunFolder run;
  ChildProcess canvix(L"Canvix.exe");
  ChildProcess sentiq(L"CanvixSentiq.exe", pidOption(canvix) + run.sessionOption() + run.watchdogOptions());
  ASSERT_TRUE(eventually([&] { return std::filesystem::exists(run.session); }));
  canvix.end();
  EXPECT_EQ(sentiq.wait(200s), 0u);
  const Lines lines = readLog(run.watchdog);
  EXPECT_EQ(lines.back(), system + "Watchdog stopped cleanly.");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), process + "App dumping System log:"), 2);
  EXPECT_FALSE(std::filesystem::exists(run.initial));
}

}  // namespace
}  // namespace sentiq::test
