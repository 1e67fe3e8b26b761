// Whole runs. They take over two minutes: the program stays for a second dump 120 s after Canvix.
#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"

namespace sentiq {

// Lines as they are to come.
class Expected {
 public:
  Expected& lines(const std::vector<Matcher<std::string>>& more) {
    all.insert(all.end(), more.begin(), more.end());
    return *this;
  }
  // The machine decides what stands in the time zone and boot lines; their form has its own tests.
  Expected& header(const std::string& sessionId, const ChildProcess& canvix) {
    return lines({"[SYSTEM] OrbelSessionID: " + sessionId, "[SYSTEM] ProcessID: " + std::to_string(canvix.pid()),
                  StartsWith("[SYSTEM] Time zone offset: "), StartsWith("[SYSTEM] LastBootTime: ")});
  }
  Expected& events(const std::vector<int>& recordNumbers) {
    for (const int number : recordNumbers) {
      all.emplace_back("[PROCESS] " + std::to_string(number));
    }
    return *this;
  }
  Expected& dump() {
    std::vector<int> application(23), system(25);
    std::iota(application.rbegin(), application.rend(), 41201);
    std::iota(system.rbegin(), system.rend(), 88311);
    lines({"[PROCESS] App dumping Application log:"}).events(application);
    return lines({"[PROCESS] App dumping System log:"}).events(system);
  }
  std::vector<Matcher<std::string>> all;
};

TEST(FullRun, EveryLineOfEveryLog) {
  useSampleEvents();
  const RunFolder run;
  ChildProcess canvix(L"Canvix.exe");
  ChildProcess sentiq(program, pidOption(canvix) + L" --last-abnormal-session-id previous" + run.options());
  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 3; }));
  const auto firstRecord = std::chrono::steady_clock::now();

  // What the last session left in the event log, and the watchdog's start.
  const std::string separator(39, '=');
  ASSERT_TRUE(eventually([&] { return Value(readLog(run.initial), Contains(separator)); }));
  EXPECT_THAT(readLog(run.initial),
              ElementsAreArray(Expected()
                                   .header("previous", canvix)
                                   .lines({"[SYSTEM] Starting initial metric collection.",
                                           "[PROCESS] Reading last shutdown details"})
                                   .events({88333, 88332, 88331, 88325, 88324, 88319, 88318, 88317})
                                   .lines({"[PROCESS] Reading last app termination details in Application logs"})
                                   .events({41221, 41220, 41213, 41212, 41207})
                                   .lines({"[PROCESS] Reading last app termination details in System logs",
                                           "[SYSTEM] Initial metric collection done.", separator})
                                   .all));
  ASSERT_TRUE(run.watchdogRuns(sentiq));
  Lines lines = readLog(run.watchdog);
  lines.resize(5);
  EXPECT_THAT(lines,
              ElementsAreArray(
                  Expected().header("session-\u00FC", canvix).lines({"[SYSTEM] Starting Watchdog application"}).all));

  ASSERT_TRUE(eventually([&] { return readLog(run.session).size() >= 4; }));
  EXPECT_THAT(std::chrono::steady_clock::now() - firstRecord, AllOf(Ge(8s), Le(14s)));

  // Sleep begins the watchdog log anew; resume and the end go on in it.
  for (const WPARAM code : {PBT_APMSUSPEND, PBT_APMRESUMEAUTOMATIC, PBT_APMRESUMESUSPEND}) {
    SendMessageW(powerWindowOf(sentiq.pid()), WM_POWERBROADCAST, code, 0);
  }
  canvix.end(7);
  const auto end = std::chrono::steady_clock::now();
  EXPECT_EQ(sentiq.wait(200s), 0u);
  EXPECT_THAT(std::chrono::steady_clock::now() - end, AllOf(Ge(120s), Le(160s)));

  lines = readLog(run.watchdog);
  EXPECT_EQ(std::erase(lines, "[SYSTEM] Attempting to stop Watchdog."), 1u);  // Of another thread.
  Expected expected;
  expected.header("session-\u00FC", canvix);
  for (const char* title : {"[SYSTEM] System Will Sleep", "[SYSTEM] System Resume"}) {
    expected.lines({title}).dump().lines({"[SYSTEM] Done dumping event logs"});
  }
  expected.lines({"[PROCESS] App has exited"}).dump().dump();
  expected.lines({"[PROCESS] Leaving App monitor app exit", "[SYSTEM] Watchdog stopped cleanly."});
  EXPECT_THAT(lines, ElementsAreArray(expected.all));

  lines = readLog(run.session);
  EXPECT_EQ(std::erase(lines, exitLine), 1u);  // A record may follow it.
  EXPECT_EQ(lines.at(0) + lines.at(1), "OrbelSessionID: session-\u00FCProcessID: " + std::to_string(canvix.pid()));
  for (std::size_t i = 2; i < lines.size(); ++i) {
    EXPECT_EQ(nlohmann::json::parse(lines[i])["processId"], canvix.pid());
  }

  // Encoded files show in the clear which session and process they belong to, and nothing else.
  for (const auto& log : {run.initial, run.watchdog, run.session}) {
    EXPECT_THAT(formOf(log), MatchesRegex("\\.\\.#+"));
  }
  const auto page = run.folder / L"report \u65E5\U0001F600.html";
  const auto inFolder = L"\"" + run.session.parent_path().wstring() + L"\" -o \"" + page.wstring() + L"\"";
  EXPECT_EQ(ChildProcess(L"sentiq-logs.exe", L"report " + inFolder).wait(60s), 0u);
  EXPECT_THAT(readFile(page), HasSubstr(">The machine slept 1 time<"));
}

// Side by side: Canvix ends while the program starts, and while a dump of the event log is under way.
TEST(FullRun, CanvixEndsAtBadMoments) {
  useSampleEvents();
  const RunFolder runs[2];
  ChildProcess canvix[] = {ChildProcess(L"Canvix.exe"), ChildProcess(L"Canvix.exe")};
  ChildProcess sentiq[] = {ChildProcess(program, pidOption(canvix[0]) + L" --encode-logs 0" + runs[0].options()),
                           ChildProcess(program, pidOption(canvix[1]) + L" --encode-logs 0" + runs[1].options())};
  canvix[0].end(7);
  ASSERT_TRUE(runs[1].watchdogRuns(sentiq[1]));
  PostMessageW(powerWindowOf(sentiq[1].pid()), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
  std::this_thread::sleep_for(50ms);
  canvix[1].end(7);
  for (const int i : {0, 1}) {
    EXPECT_EQ(sentiq[i].wait(200s), 0u);
    EXPECT_THAT(readLog(runs[i].session), Contains(exitLine));
    EXPECT_THAT(readLog(runs[i].watchdog), Each(StartsWith("[")));  // A torn line would begin otherwise.
    EXPECT_EQ(readLog(runs[i].watchdog).back(), "[SYSTEM] Watchdog stopped cleanly.");
    EXPECT_EQ(formOf(runs[i].watchdog).find('#'), std::string::npos);
  }
}

}  // namespace sentiq
