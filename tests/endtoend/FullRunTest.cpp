// Whole runs. They take over two minutes: the program stays for a second dump 120 s after Canvix.
#include <list>

#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"
#include "tests/support/Test.h"

namespace sentiq::test {
namespace {

using namespace std::chrono_literals;
using testing::MatchesRegex;
using testing::StartsWith;
using Expected = std::vector<testing::Matcher<std::string>>;

void append(Expected& lines, const Expected& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

// The machine decides what stands in the time zone and boot lines; their form has its own tests.
Expected header(const std::string& sessionId, const ChildProcess& canvix) {
  return {"[SYSTEM] OrbelSessionID: " + sessionId, "[SYSTEM] ProcessID: " + std::to_string(canvix.pid()),
          StartsWith("[SYSTEM] Time zone offset: "), StartsWith("[SYSTEM] LastBootTime: ")};
}

void appendEvents(Expected& lines, const std::vector<int>& recordNumbers) {
  for (const int number : recordNumbers) {
    lines.emplace_back("[PROCESS] " + std::to_string(number));
  }
}

void appendDump(Expected& lines) {
  lines.emplace_back("[PROCESS] App dumping Application log:");
  for (int number = 41223; number >= 41201; --number) {
    appendEvents(lines, {number});
  }
  lines.emplace_back("[PROCESS] App dumping System log:");
  for (int number = 88335; number >= 88311; --number) {
    appendEvents(lines, {number});
  }
}

TEST(FullRun, EveryLineOfEveryLog) {
  useSampleEvents();
  const RunFolder run;
  ChildProcess canvix(L"Canvix.exe");
  ChildProcess sentiq(program, pidOption(canvix) + L" --last-abnormal-session-id previous" + run.options());
  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 3; }));
  const auto firstRecord = std::chrono::steady_clock::now();

  // What the last session left in the event log, and the watchdog's start.
  ASSERT_TRUE(eventually([&] { return count(run.initial, std::string(39, '=')) == 1; }));
  Expected expected = header("previous", canvix);
  append(expected, {"[SYSTEM] Starting initial metric collection.", "[PROCESS] Reading last shutdown details"});
  appendEvents(expected, {88333, 88332, 88331, 88325, 88324, 88319, 88318, 88317});
  append(expected, {"[PROCESS] Reading last app termination details in Application logs"});
  appendEvents(expected, {41221, 41220, 41213, 41212, 41207});
  append(expected, {"[PROCESS] Reading last app termination details in System logs",
                    "[SYSTEM] Initial metric collection done.", std::string(39, '=')});
  EXPECT_THAT(readLog(run.initial), testing::ElementsAreArray(expected));

  ASSERT_TRUE(watchdogRuns(run, sentiq));
  Lines lines = readLog(run.watchdog);
  EXPECT_THAT(lines, testing::Contains("[SYSTEM] inside power thread"));
  lines.resize(5);
  expected = header("session-\u00FC", canvix);
  append(expected, {"[SYSTEM] Starting Watchdog application"});
  EXPECT_THAT(lines, testing::ElementsAreArray(expected));

  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 4; }));
  const auto secondRecord = std::chrono::steady_clock::now();
  EXPECT_GE(secondRecord - firstRecord, 8s);
  EXPECT_LE(secondRecord - firstRecord, 14s);

  // Sleep begins the watchdog log anew; resume and the end go on in it.
  for (const WPARAM code : {PBT_APMSUSPEND, PBT_APMRESUMEAUTOMATIC, PBT_APMRESUMESUSPEND}) {
    SendMessageW(powerWindowOf(sentiq.pid()), WM_POWERBROADCAST, code, 0);
  }
  canvix.end();
  const auto end = std::chrono::steady_clock::now();
  EXPECT_EQ(sentiq.wait(200s), 0u);
  EXPECT_GE(std::chrono::steady_clock::now() - end, 120s);
  EXPECT_LE(std::chrono::steady_clock::now() - end, 160s);

  lines = readLog(run.watchdog);
  EXPECT_EQ(std::erase(lines, "[SYSTEM] Attempting to stop Watchdog."), 1u);  // Of another thread.
  expected = header("session-\u00FC", canvix);
  for (const char* title : {"[SYSTEM] System Will Sleep", "[SYSTEM] System Resume"}) {
    append(expected, {title});
    appendDump(expected);
    append(expected, {"[SYSTEM] Done dumping event logs"});
  }
  append(expected, {"[PROCESS] App has exited"});
  appendDump(expected);
  appendDump(expected);
  append(expected, {"[PROCESS] Leaving App monitor app exit", "[SYSTEM] Watchdog stopped cleanly."});
  EXPECT_THAT(lines, testing::ElementsAreArray(expected));

  lines = readLog(run.session);
  EXPECT_EQ(std::erase(lines, exitLine), 1u);  // A record may follow it.
  EXPECT_EQ(lines.at(0) + " " + lines.at(1),
            "OrbelSessionID: session-\u00FC ProcessID: " + std::to_string(canvix.pid()));
  for (std::size_t i = 2; i < lines.size(); ++i) {
    EXPECT_EQ(nlohmann::json::parse(lines[i])["processId"], canvix.pid());
  }

  // Encoded files show in the clear which session and process they belong to, and nothing else.
  for (const auto& log : {run.initial, run.watchdog, run.session}) {
    EXPECT_THAT(formOf(log), MatchesRegex("\\.\\.#+"));
  }

  const auto page = run.folder / L"report \u65E5\U0001F600.html";
  ChildProcess reader(L"sentiq-logs.exe",
                      L"report \"" + (run.folder / "").wstring() + L".\" -o \"" + page.wstring() + L"\"");
  EXPECT_EQ(reader.wait(60s), 0u);
  EXPECT_THAT(readFile(page), testing::HasSubstr(">The machine slept 1 time<"));
}

// Side by side: Canvix ends while the program starts, and while a dump of the event log is under way.
TEST(FullRun, CanvixEndsAtBadMoments) {
  useSampleEvents();
  const RunFolder runs[2];
  std::list<ChildProcess> canvix, sentiq;
  for (const RunFolder& run : runs) {
    canvix.emplace_back(L"Canvix.exe");
    sentiq.emplace_back(program, pidOption(canvix.back()) + L" --encode-logs 0" + run.options());
    if (&run == &runs[1]) {
      ASSERT_TRUE(watchdogRuns(run, sentiq.back()));
      PostMessageW(powerWindowOf(sentiq.back().pid()), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
      std::this_thread::sleep_for(50ms);
    }
    canvix.back().end();
  }
  for (const RunFolder& run : runs) {
    EXPECT_EQ(sentiq.front().wait(200s), 0u);
    sentiq.pop_front();
    EXPECT_EQ(count(run.session, exitLine), 1);
    EXPECT_EQ(readLog(run.watchdog).back(), "[SYSTEM] Watchdog stopped cleanly.");
    EXPECT_EQ(formOf(run.watchdog).find('#'), std::string::npos);
    EXPECT_THAT(readLog(run.watchdog), testing::Each(StartsWith("[")));  // A torn line would begin otherwise.
  }
}

}  // namespace
}  // namespace sentiq::test
