// The watchdog's threads on real processes and a real window; single system calls are replaced to make them fail.
#include <windows.h>

#include <winevt.h>

#include <functional>
#include <stdexcept>

#include "logging/WatchdogLog.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCalls.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"
#include "watchdog/PowerEventListener.h"
#include "watchdog/Watchdog.h"
#include "watchdog/WatchdogState.h"

namespace {

bool windowFails = false;
bool queryThrows = false;
int failingRegistration = 0;
std::vector<GUID> registered;
std::vector<HPOWERNOTIFY> unregistered;

using sentiq::test::real;

HWND WINAPI createWindow(DWORD exStyle, LPCWSTR name, LPCWSTR title, DWORD style, int x, int y, int width, int height,
                         HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
  static const auto create = real<decltype(&CreateWindowExW)>(L"user32", "CreateWindowExW");
  return windowFails ? nullptr
                     : create(exStyle, name, title, style, x, y, width, height, parent, menu, instance, parameter);
}

HPOWERNOTIFY WINAPI registerSetting(HANDLE, LPCGUID setting, DWORD flags) {
  registered.push_back(*setting);
  const auto number = static_cast<int>(registered.size());
  if (number == failingRegistration || flags != DEVICE_NOTIFY_WINDOW_HANDLE) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
  return reinterpret_cast<HPOWERNOTIFY>(static_cast<INT_PTR>(number));
}

BOOL WINAPI unregisterSetting(HPOWERNOTIFY registration) {
  unregistered.push_back(registration);
  return TRUE;
}

EVT_HANDLE WINAPI query(EVT_HANDLE session, LPCWSTR path, LPCWSTR text, DWORD flags) {
  if (queryThrows) {
    throw std::runtime_error("query");
  }
  return real<decltype(&EvtQuery)>(L"wevtapi", "EvtQuery")(session, path, text, flags);
}

}  // namespace

// The program calls through these pointers: defining them here takes the system's place.
extern "C" {
decltype(&CreateWindowExW) __imp_CreateWindowExW = createWindow;
decltype(&RegisterPowerSettingNotification) __imp_RegisterPowerSettingNotification = registerSetting;
decltype(&UnregisterPowerSettingNotification) __imp_UnregisterPowerSettingNotification = unregisterSetting;
decltype(&EvtQuery) __imp_EvtQuery = query;
}

namespace sentiq {
namespace {

using namespace std::chrono_literals;
using test::ChildProcess;
using test::eventually;
using testing::_;
using testing::ElementsAre;

using test::processHead;
using test::systemHead;

const std::vector<std::string> emptyDump = {processHead + "App dumping Application log:",
                                            processHead + "App dumping System log:"};

class Watchdog : public testing::Test {
 protected:
  Watchdog() {
    SetEnvironmentVariableW(L"SENTIQ_EVENTS", (folder_ / "none").c_str());
    watchdogState().stopRequested = false;
    watchdogState().monitoredPid = canvix_.pid();
    watchdogState().sessionId = "id";
    configureWatchdogLog(static_cast<std::int32_t>(canvix_.pid()), log_.wstring(), initial_.wstring(), false);
    windowFails = queryThrows = false;
    failingRegistration = 0;
    registered.clear();
    unregistered.clear();
  }

  static std::vector<std::string> read(const std::filesystem::path& log) {
    auto lines = test::linesOf(test::readFile(log));
    std::transform(lines.begin(), lines.end(), lines.begin(), test::masked);
    return lines;
  }

  bool has(const std::string& line, int times = 1) const {
    const auto lines = read(log_);
    return std::count(lines.begin(), lines.end(), line) == times;
  }

  static HWND ownWindow() { return test::powerWindowOf(GetCurrentProcessId()); }

  test::TempFolder folder_;
  std::filesystem::path log_ = folder_ / "watchdog.log";
  std::filesystem::path initial_ = folder_ / "initial.log";
  ChildProcess canvix_{L"Canvix.exe"};
};

TEST_F(Watchdog, StopsWhileCanvixRunsWithoutADump) {
  startWatchdog({canvix_.pid(), log_.wstring(), "id", initial_.wstring(), "", false});
  ASSERT_TRUE(eventually([&] { return ownWindow() != nullptr && has(processHead + "Inside  monitor app exit"); }));
  const auto start = std::chrono::steady_clock::now();
  stopWatchdog();
  EXPECT_GE(std::chrono::steady_clock::now() - start, 5s);
  EXPECT_TRUE(watchdogState().threads.empty());
  const auto lines = read(log_);
  EXPECT_EQ(lines.size(), 11u);
  EXPECT_EQ(lines.back(), systemHead + "Watchdog stopped cleanly.");
  EXPECT_TRUE(has(processHead + "Leaving App monitor app exit"));
  EXPECT_TRUE(has(processHead + "App has exited", 0));
  EXPECT_FALSE(std::filesystem::exists(initial_));
}

TEST_F(Watchdog, AnInitialCollectionThatThrowsLeavesNoSeparator) {
  queryThrows = true;
  runInitialMetricCollection("before");
  auto lines = read(initial_);
  ASSERT_EQ(lines.size(), 7u);
  EXPECT_EQ(lines[0], systemHead + "OrbelSessionID: before");
  EXPECT_EQ(lines[5], processHead + "Reading last shutdown details");
  EXPECT_EQ(lines[6], systemHead + "Initial metric collection done.");
}

TEST_F(Watchdog, BroadcastsSentAndPosted) {
  std::thread thread(runPowerThread);
  EXPECT_TRUE(eventually([] { return ownWindow() != nullptr; }));
  const HWND window = ownWindow();
  EXPECT_FALSE(IsWindowVisible(window));
  EXPECT_EQ(GetAncestor(window, GA_PARENT), GetDesktopWindow());

  const std::string done = systemHead + "Done dumping event logs";
  EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0), TRUE);
  EXPECT_EQ(read(log_), (std::vector<std::string>{systemHead + "inside power thread", systemHead + "System Resume",
                                                  emptyDump[0], emptyDump[1], done}));
  EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, PBT_POWERSETTINGCHANGE, 0), TRUE);
  EXPECT_TRUE(has(systemHead + "System Will enter/exit Standby"));

  // None of these says anything.
  for (const WPARAM code : {6, 9, 10, 18}) {
    EXPECT_EQ(SendMessageW(window, WM_POWERBROADCAST, code, 0), TRUE);
  }
  PostMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, 0);
  for (const WPARAM text : {4, 6, 10, 18, 99}) {
    PostMessageW(window, WM_USER, text, 0);
  }
  PostMessageW(window, WM_POWERBROADCAST, PBT_APMRESUMESUSPEND, 0);
  EXPECT_TRUE(eventually([&] { return has(systemHead + "System Resume", 2); }));
  EXPECT_TRUE(eventually([&] { return has(done, 3); }));
  EXPECT_EQ(read(log_).size(), 13u);

  // Sleep begins the log anew.
  PostMessageW(window, WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
  EXPECT_TRUE(eventually([&] { return has(done, 1) && has(systemHead + "System Will Sleep"); }));
  const auto lines = read(log_);
  EXPECT_THAT(lines, ElementsAre(systemHead + "OrbelSessionID: id", _, _, _, systemHead + "System Will Sleep",
                                 emptyDump[0], emptyDump[1], done));

  canvix_.end();
  thread.join();
  EXPECT_EQ(read(log_), lines);
  EXPECT_THAT(unregistered, ElementsAre(reinterpret_cast<HPOWERNOTIFY>(2)));
  ASSERT_EQ(registered.size(), 2u);
  const GUID traditional = {0xA1841308, 0xC1D9, 0x4EFD, {0xA7, 0x91, 0xF1, 0xB1, 0xD1, 0xD3, 0xB7, 0x16}};
  EXPECT_TRUE(IsEqualGUID(registered[0], traditional));
  EXPECT_TRUE(IsEqualGUID(registered[1], GUID_MONITOR_POWER_ON));
}

TEST_F(Watchdog, WhatCannotBeRegisteredIsSaid) {
  const std::string inside = systemHead + "inside power thread";
  watchdogState().stopRequested = true;
  windowFails = true;
  runPowerThread();
  EXPECT_EQ(read(log_), (std::vector<std::string>{inside, inside + ", window creation failed"}));

  windowFails = false;
  failingRegistration = 1;
  std::filesystem::remove(log_);
  std::thread(runPowerThread).join();
  EXPECT_EQ(read(log_), (std::vector<std::string>{inside, inside + ", registration failed for traditional sleep"}));
  EXPECT_EQ(unregistered.size(), 1u);

  failingRegistration = 2;
  registered.clear();
  std::filesystem::remove(log_);
  std::thread(runPowerThread).join();
  const auto lines = read(log_);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines[1], inside + ", registration failed for modern sleep");
  EXPECT_THAT(lines[2], testing::MatchesRegex(".*INFO.: .*denied.*"));
  EXPECT_EQ(unregistered.size(), 1u);
}

}  // namespace
}  // namespace sentiq
