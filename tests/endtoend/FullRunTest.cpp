// The whole run with everything on. It takes over two minutes: the program stays for a second dump 120 s after Canvix.
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"
#include "tests/support/Test.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

Lines header(const std::string& sessionId, const ChildProcess& canvix, const Lines& actual) {
  // The machine decides what stands in the time zone and boot lines; their form has its own tests.
  const auto line = [&](std::size_t i) { return i < actual.size() ? actual[i] : std::string("missing"); };
  EXPECT_THAT(line(2), StartsWith(systemHead + "Time zone offset: "));
  EXPECT_THAT(line(3), StartsWith(systemHead + "LastBootTime: "));
  return {systemHead + "OrbelSessionID: " + sessionId, systemHead + "ProcessID: " + std::to_string(canvix.pid()),
          line(2), line(3)};
}

void append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

/// The log's lines, with an event's record number in place of its line, after a look at the line's form.
Lines readWithRecordNumbers(const std::filesystem::path& log) {
  Lines lines = readLog(log);
  for (std::string& line : lines) {
    if (line.rfind(processHead + "{\"xmlData\":\"", 0) == 0) {
      const std::string xml = nlohmann::json::parse(line.substr(processHead.size())).at("xmlData");
      EXPECT_THAT(xml, StartsWith("<Event xmlns="));
      const std::size_t number = xml.find("<EventRecordID>") + 15;
      line = xml.substr(number, xml.find('<', number) - number);
    }
  }
  return lines;
}

/// All sample events, newest first.
Lines dump() {
  Lines lines = {processHead + "App dumping Application log:"};
  for (int number = 41223; number >= 41201; --number) {
    lines.push_back(std::to_string(number));
  }
  lines.push_back(processHead + "App dumping System log:");
  for (int number = 88335; number >= 88311; --number) {
    lines.push_back(std::to_string(number));
  }
  return lines;
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
  useSampleEvents();
  const RunFolder run;
  ChildProcess canvix(L"Canvix.exe");
  ChildProcess sentiq(L"CanvixSentiq.exe",
                      pidOption(canvix) + L" --last-abnormal-session-id previous --cr-detached-mode" +
                          run.sessionOption() + run.watchdogOptions() + (encode ? L"" : L" --encode-logs 0"));

  // The start: the watchdog's own lines, and what the last session left in the event log.
  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 3; }));
  const auto firstRecord = std::chrono::steady_clock::now();
  ASSERT_TRUE(watchdogRuns(run, sentiq));
  ASSERT_TRUE(eventually([&] { return count(run.initial, separatorLine) == 1; }));
  Lines lines = readWithRecordNumbers(run.initial);
  Lines expected = header("previous", canvix, lines);
  append(expected, {systemHead + "Starting initial metric collection.", processHead + "Reading last shutdown details",
                    "88333", "88332", "88331", "88325", "88324", "88319", "88318", "88317",
                    processHead + "Reading last app termination details in Application logs", "41221", "41220", "41213",
                    "41212", "41207", processHead + "Reading last app termination details in System logs",
                    systemHead + "Initial metric collection done.", separatorLine});
  EXPECT_THAT(lines, ElementsAreArray(expected));

  lines = readLog(run.watchdog);
  expected = header("session-\u00FC", canvix, lines);
  append(expected,
         {systemHead + "Starting Watchdog application", systemHead + "Done with start of Watchdog application"});
  EXPECT_TRUE(takeOut(lines, processHead + "Inside  monitor app exit"));
  EXPECT_TRUE(takeOut(lines, systemHead + "inside power thread"));
  EXPECT_THAT(lines, ElementsAreArray(expected));

  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 4; }));
  const auto secondRecord = std::chrono::steady_clock::now();
  EXPECT_GE(secondRecord - firstRecord, 8s);
  EXPECT_LE(secondRecord - firstRecord, 14s);

  // Sleep begins the watchdog log anew; resume and the end go on in it.
  const HWND window = powerWindowOf(sentiq.pid());
  SendMessageW(window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
  SendMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, 0);
  SendMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
  canvix.end();
  const auto end = std::chrono::steady_clock::now();
  EXPECT_EQ(sentiq.wait(200s), 0u);
  EXPECT_GE(std::chrono::steady_clock::now() - end, 120s);

  lines = readWithRecordNumbers(run.watchdog);
  expected = header("session-\u00FC", canvix, lines);
  for (const char* title : {"System Will Sleep", "System Resume"}) {
    expected.push_back(systemHead + title);
    append(expected, dump());
    expected.push_back(systemHead + "Done dumping event logs");
  }
  expected.push_back(processHead + "App has exited");
  append(expected, dump());
  append(expected, dump());
  append(expected, {processHead + "Leaving App monitor app exit", systemHead + "Watchdog stopped cleanly."});
  EXPECT_TRUE(takeOut(lines, systemHead + "Attempting to stop Watchdog."));
  EXPECT_THAT(lines, ElementsAreArray(expected));

  lines = readLog(run.session);
  EXPECT_TRUE(takeOut(lines, exitLine));
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
    for (std::size_t i = 0; i < raw.size(); ++i) {
      const bool separator = log == run.initial && i + 1 == raw.size();
      EXPECT_EQ(raw[i].find_first_of(log == run.session ? ":" : "[") != std::string::npos,
                (!encode || i < 2) && !separator)
          << raw[i];
    }
  }
}

TEST(FullRun, EveryLineEncoded) {
  fullRun(true);
}
TEST(FullRun, EveryLinePlain) {
  fullRun(false);
}

}  // namespace
}  // namespace sentiq::test
