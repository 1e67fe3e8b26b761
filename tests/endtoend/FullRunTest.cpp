// Whole runs. They take over two minutes: the program stays for a second dump 120 s after Canvix.
#include <deque>

#include <nlohmann/json.hpp>

#include "tests/endtoend/RunTest.h"

namespace sentiq {

static Lines operator+(Lines lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
  return lines;
}

// The machine decides what stands in the time zone and boot lines; their form has its own tests.
static Lines header(const std::string& sessionId, const ChildProcess& canvix, const Lines& actual) {
  EXPECT_THAT(actual.at(2), StartsWith("[SYSTEM] Time zone offset: "));
  EXPECT_THAT(actual.at(3), StartsWith("[SYSTEM] LastBootTime: "));
  return {"[SYSTEM] OrbelSessionID: " + sessionId, "[SYSTEM] ProcessID: " + std::to_string(canvix.pid()), actual[2],
          actual[3]};
}

static Lines events(int from, int downTo) {
  Lines lines;
  for (int number = from; number >= downTo; --number) {
    lines.push_back("[PROCESS] " + std::to_string(number));
  }
  return lines;
}

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
  Lines lines = readLog(run.initial);
  EXPECT_EQ(lines, (header("previous", canvix, lines) +
                    Lines{"[SYSTEM] Starting initial metric collection.", "[PROCESS] Reading last shutdown details"} +
                    events(88333, 88331) + events(88325, 88324) + events(88319, 88317) +
                    Lines{"[PROCESS] Reading last app termination details in Application logs"} + events(41221, 41220) +
                    events(41213, 41212) + events(41207, 41207) +
                    Lines{"[PROCESS] Reading last app termination details in System logs",
                          "[SYSTEM] Initial metric collection done.", separator}));
  const Lines started = {"[PROCESS] Inside  monitor app exit", "[SYSTEM] inside power thread",
                         "[SYSTEM] Done with start of Watchdog application"};
  ASSERT_TRUE(
      eventually([&] { return powerWindowOf(sentiq.pid()) && Value(readLog(run.watchdog), IsSupersetOf(started)); }));
  lines = readLog(run.watchdog);
  lines.resize(5);
  EXPECT_EQ(lines, header("session-\u00FC", canvix, lines) + Lines{"[SYSTEM] Starting Watchdog application"});

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
  const Lines dump = Lines{"[PROCESS] App dumping Application log:"} + events(41223, 41201) +
                     Lines{"[PROCESS] App dumping System log:"} + events(88335, 88311);
  const Lines done = {"[SYSTEM] Done dumping event logs"};
  EXPECT_EQ(lines, (header("session-\u00FC", canvix, lines) + Lines{"[SYSTEM] System Will Sleep"} + dump + done +
                    Lines{"[SYSTEM] System Resume"} + dump + done + Lines{"[PROCESS] App has exited"} + dump + dump +
                    Lines{"[PROCESS] Leaving App monitor app exit", "[SYSTEM] Watchdog stopped cleanly."}));

  lines = readLog(run.session);
  EXPECT_EQ(std::erase(lines, exitLine), 1u);  // A record may follow it.
  EXPECT_EQ(lines.at(0) + lines.at(1), "OrbelSessionID: session-\u00FCProcessID: " + std::to_string(canvix.pid()));
  for (std::size_t i = 2; i < lines.size(); ++i) {
    const auto record = nlohmann::json::parse(lines[i]);
    EXPECT_EQ(record["processId"], canvix.pid());
    EXPECT_THAT(std::string(record["appStartTime"]), StartsWith("0 00:0"));
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

// While the program starts, samples, dumps, and does what comes before a sleep. Large events make a dump last.
TEST(FullRun, CanvixEndsAtAnyMoment) {
  struct Run : RunFolder {
    ChildProcess canvix{L"Canvix.exe"};
    ChildProcess sentiq{program, pidOption(canvix) + L" --encode-logs 0" + options()};
  };
  const TempFolder events;
  for (int i = 0; i < 500; ++i) {
    std::ofstream(events / "System.xml", std::ios::app)
        << "<Event xmlns='x'>" << std::string(20'000, 'x') << "</Event>";
  }
  SetEnvironmentVariableW(L"SENTIQ_EVENTS", (events / "").c_str());
  std::deque<Run> runs;
  const std::pair<WPARAM, std::string> moments[] = {{0, ""}, {0, "{\"app"}, {7, "System Resume"}, {4, "Will Sleep"}};
  for (const auto& moment : moments) {
    Run& run = runs.emplace_back();
    EXPECT_TRUE(eventually([&] { return moment.first == 0 || powerWindowOf(run.sentiq.pid()) != nullptr; }));
    PostMessageW(powerWindowOf(run.sentiq.pid()), WM_POWERBROADCAST, moment.first, 0);
    EXPECT_TRUE(
        eventually([&] { return (readFile(run.session) + readFile(run.watchdog)).find(moment.second) + 1 != 0; }));
    run.canvix.end(7);
    EXPECT_THAT(readFile(run.watchdog), Not(HasSubstr("Done dumping")));
  }
  for (Run& run : runs) {
    EXPECT_EQ(run.sentiq.wait(200s), 0u);
    EXPECT_THAT(readLog(run.session), Contains(exitLine));
    const Lines lines = readLog(run.watchdog);
    EXPECT_THAT(lines, Each(StartsWith("[")));  // A torn line would begin otherwise.
    const auto exited = std::find(lines.begin(), lines.end(), "[PROCESS] App has exited");
    EXPECT_GE(std::count(exited, lines.end(), "[PROCESS] App dumping System log:"), 2);
    EXPECT_EQ(lines.back(), "[SYSTEM] Watchdog stopped cleanly.");
    EXPECT_EQ(formOf(run.watchdog).find('#'), std::string::npos);
  }
}

}  // namespace sentiq
