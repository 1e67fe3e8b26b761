// The watchdog's threads on real processes and a real window; single system calls are replaced to make them fail.
#include "logging/WatchdogLog.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "watchdog/AppExitMonitor.h"
#include "watchdog/PowerEvent.h"
#include "watchdog/PowerEventListener.h"
#include "watchdog/Watchdog.h"
#include "watchdog/WatchdogState.h"

static bool windowFails = false;
static INT_PTR failingRegistration = 0;
static INT_PTR registrations = 0;
static std::vector<HPOWERNOTIFY> unregistered;

extern "C" {
constinit decltype(&CreateWindowExW) __imp_CreateWindowExW = [](auto... arguments) {
  using Create = decltype(&CreateWindowExW);
  return windowFails ? nullptr : sentiq::test::real<Create>(L"user32", "CreateWindowExW")(arguments...);
};
constinit decltype(&RegisterPowerSettingNotification) __imp_RegisterPowerSettingNotification = [](auto, auto setting,
                                                                                                  auto flags) {
  EXPECT_EQ(IsEqualGUID(*setting, GUID_MONITOR_POWER_ON), registrations == 1 && flags == 0);
  SetLastError(ERROR_ACCESS_DENIED);
  return ++registrations == failingRegistration ? nullptr : reinterpret_cast<HPOWERNOTIFY>(registrations);
};
constinit decltype(&UnregisterPowerSettingNotification) __imp_UnregisterPowerSettingNotification =
    [](auto registration) {
      unregistered.push_back(registration);
      return TRUE;
    };
}

namespace sentiq {

static const std::string inside = "[SYSTEM] inside power thread";
static const std::string leaving = "[PROCESS] Leaving App monitor app exit";

class Watchdog : public Test {
 protected:
  Watchdog() {
    SetEnvironmentVariableW(L"SENTIQ_EVENTS", (folder_ / "none").c_str());
    watchdogState().stopRequested = false;
    watchdogState().monitoredPid = canvix_.pid();
    configureWatchdogLog(1, log_.wstring(), initial_.wstring(), false);
    unregistered.clear();
    registrations = failingRegistration = 0;
  }

  // What it writes with one of its registrations failing.
  Lines powerThread(INT_PTR failing) {
    std::filesystem::remove(log_);
    registrations = 0;
    failingRegistration = failing;
    std::thread(runPowerThread).join();
    return readLog(log_);
  }

  bool eventuallyHas(const std::string& line) const {
    return eventually([&] { return powerWindowOf(GetCurrentProcessId()) && Value(readLog(log_), Contains(line)); });
  }

  TempFolder folder_;
  std::filesystem::path log_ = folder_ / "watchdog.log";
  std::filesystem::path initial_ = folder_ / "initial.log";
  ChildProcess canvix_{L"Canvix.exe"};
};

TEST_F(Watchdog, StopsWhileCanvixRunsWithoutADump) {
  startWatchdog({canvix_.pid(), log_.wstring(), "id", initial_.wstring(), "", false});
  ASSERT_TRUE(eventuallyHas("[PROCESS] Inside  monitor app exit"));
  const auto start = std::chrono::steady_clock::now();
  stopWatchdog();
  EXPECT_THAT(std::chrono::steady_clock::now() - start, AllOf(Ge(5s), Lt(10s)));
  EXPECT_TRUE(watchdogState().threads.empty());
  EXPECT_THAT(readLog(log_), AllOf(Not(Contains(HasSubstr("dump"))), Contains(leaving)));
  EXPECT_EQ(readLog(log_).back(), "[SYSTEM] Watchdog stopped cleanly.");
  EXPECT_FALSE(std::filesystem::exists(initial_));
  EXPECT_EQ(unregistered.size(), 1u);
  monitorAppExit();  // Stopped before it starts, it says that it came and went.
  EXPECT_EQ(readLog(log_).back(), leaving);
}

TEST_F(Watchdog, AnInitialCollectionThatThrowsLeavesNoSeparator) {
  SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", L"EvtQuery:0:thrown");
  runInitialMetricCollection("before");
  SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", nullptr);
  EXPECT_EQ(readLog(initial_).back(), "[SYSTEM] Initial metric collection done.");
}

TEST_F(Watchdog, FewPowerMessagesMeanSomething) {
  const std::pair<std::uintptr_t, std::string> cases[] = {{4, "[SYSTEM] System Will Sleep"},
                                                          {7, "[SYSTEM] System Resume"},
                                                          {0x8013, "[SYSTEM] System Will enter/exit Standby"},
                                                          {6, ""},
                                                          {9, ""},
                                                          {10, ""},
                                                          {18, ""}};
  for (const auto& [code, title] : cases) {
    recordPowerEvent(powerEventOf(code));
    const Lines lines = readLog(log_);
    EXPECT_EQ(lines.empty() ? "" : lines.end()[-4], title) << code;  // Before the two channels and the end.
    std::filesystem::remove(log_);
  }
}

TEST_F(Watchdog, BroadcastsSentAndPosted) {
  std::jthread thread(runPowerThread);
  ASSERT_TRUE(eventuallyHas(inside));
  const HWND window = powerWindowOf(GetCurrentProcessId());
  EXPECT_FALSE(IsWindowVisible(window));
  EXPECT_EQ(GetAncestor(window, GA_PARENT), GetDesktopWindow());
  EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, 0), TRUE);
  EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, PBT_POWERSETTINGCHANGE, 0), TRUE);
  PostThreadMessageW(GetWindowThreadProcessId(window, nullptr), WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
  EXPECT_TRUE(eventuallyHas("[SYSTEM] System Will enter/exit Standby") && eventuallyHas("[SYSTEM] System Resume"));
  PostMessageW(window, WM_CLOSE, 0, 0);  // Dispatched, as every other message.
  EXPECT_TRUE(eventually([&] { return !IsWindow(window); }));
  canvix_.end(7);
  thread.join();
  EXPECT_THAT(unregistered, ElementsAre(reinterpret_cast<HPOWERNOTIFY>(2)));
}

TEST_F(Watchdog, WhatCannotBeRegisteredIsSaid) {
  watchdogState().stopRequested = true;
  windowFails = true;
  EXPECT_EQ(powerThread(0), (Lines{inside, inside + ", window creation failed"}));
  windowFails = false;
  EXPECT_EQ(powerThread(1), (Lines{inside, inside + ", registration failed for traditional sleep"}));
  Lines lines = powerThread(2);
  lines.resize(3);  // The system's text brings line ends of its own.
  EXPECT_THAT(lines, ElementsAre(inside, inside + ", registration failed for modern sleep",
                                 AllOf(StartsWith("[SYSTEM] "), HasSubstr("denied"))));
  EXPECT_EQ(unregistered.size(), 1u);
}

}  // namespace sentiq
