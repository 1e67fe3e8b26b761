#include "watchdog/PowerEventListener.h"

#include <windows.h>

#include <chrono>
#include <string>

#include "logging/LogGrammar.h"
#include "logging/UniqueHandle.h"
#include "logging/WatchdogLog.h"
#include "watchdog/PowerEvent.h"
#include "watchdog/WatchdogState.h"

namespace sentiq {
namespace {

constexpr const wchar_t* windowClass = L"PowerEventWindowClass";
constexpr const wchar_t* windowTitle = L"Power Event Listener";
constexpr std::chrono::seconds idleWait(1);

// Used byte for byte as it stands, although no system header names it.
constexpr GUID traditionalSleep = {0xA1841308, 0xC1D9, 0x4EFD, {0xA7, 0x91, 0xF1, 0xB1, 0xD1, 0xD3, 0xB7, 0x16}};
// The system's GUID_MONITOR_POWER_ON.
constexpr GUID modernSleep = {0x02731015, 0x4510, 0x4526, {0x99, 0xE6, 0xE5, 0xA1, 0x7E, 0xBD, 0x1A, 0xEA}};

struct LocalMemoryKind {
  using Type = char*;
  static Type none() { return nullptr; }
  static void close(Type memory) { LocalFree(memory); }
};
using LocalText = UniqueHandle<LocalMemoryKind>;

struct PowerRegistrationKind {
  using Type = HPOWERNOTIFY;
  static Type none() { return nullptr; }
  static void close(Type registration) { UnregisterPowerSettingNotification(registration); }
};
using PowerRegistration = UniqueHandle<PowerRegistrationKind>;

// Called from the window procedure too, which must let no exception out into the system.
void handlePowerBroadcast(WPARAM code) noexcept {
  try {
    recordPowerEvent(powerEventOf(code));
  } catch (...) {  // NOLINT(bugprone-empty-catch): only the log itself can fail here.
  }
}

LRESULT CALLBACK powerWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_POWERBROADCAST) {
    handlePowerBroadcast(wParam);
    return TRUE;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

HWND createHiddenWindow() {
  const HINSTANCE module = GetModuleHandleW(nullptr);
  WNDCLASSW description{};
  description.lpfnWndProc = powerWindowProc;
  description.lpszClassName = windowClass;
  RegisterClassW(&description);  // When it fails, so does the window.
  return CreateWindowExW(/*dwExStyle=*/0, windowClass, windowTitle, /*dwStyle=*/0, CW_USEDEFAULT, CW_USEDEFAULT,
                         CW_USEDEFAULT, CW_USEDEFAULT, /*hWndParent=*/nullptr,
                         /*hMenu=*/nullptr, module,
                         /*lpParam=*/nullptr);
}

void writeErrorText(DWORD error) {
  char* text = nullptr;
  FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, /*lpSource=*/nullptr, error,
                 /*dwLanguageId=*/0, reinterpret_cast<char*>(&text), /*nSize=*/0, /*Arguments=*/nullptr);
  if (const LocalText owned(text); owned) {
    writeSystemLine(owned.get());
  }
}

void writeTrouble(const char* what) {
  writeSystemLine(std::string(grammar::powerThreadTrouble) + what);
}

// The second registration, which is given back; the first one, the window and its class are left to the
// process's end. None when the thread cannot go on.
PowerRegistration listen() {
  const HWND window = createHiddenWindow();
  if (window == nullptr) {
    writeTrouble("window creation failed");
    return {};
  }
  if (RegisterPowerSettingNotification(window, &traditionalSleep, DEVICE_NOTIFY_WINDOW_HANDLE) == nullptr) {
    writeTrouble("registration failed for traditional sleep");
  }
  PowerRegistration modern(RegisterPowerSettingNotification(window, &modernSleep, DEVICE_NOTIFY_WINDOW_HANDLE));
  if (!modern) {
    const DWORD error = GetLastError();  // Writing a line would leave an error of its own.
    writeTrouble("registration failed for modern sleep");
    writeErrorText(error);
    return {};
  }
  return modern;
}

std::string powerStateText(WPARAM state) {
  switch (state) {
    case PBT_APMSUSPEND:
      return "System is going to sleep";
    case PBT_APMRESUMECRITICAL:
      return "System has resumed from a critical state";
    case PBT_APMPOWERSTATUSCHANGE:
      return "Power status has changed";
    case PBT_APMRESUMEAUTOMATIC:
      return "System has resumed automatically";
    default:
      return "Unknown power state change";
  }
}

// A posted broadcast is handled here and not dispatched; the system sends its own, and those reach the window
// procedure from inside PeekMessageW.
void handleQueued(const MSG& message) {
  if (message.message == WM_POWERBROADCAST) {
    handlePowerBroadcast(message.wParam);
    return;
  }
  static_cast<void>(powerStateText(message.wParam));  // Told to nobody, on purpose.
  TranslateMessage(&message);
  DispatchMessageW(&message);
}

void pumpMessages() {
  while (!watchdogState().stopRequested && monitoredProcessRuns()) {
    MSG message{};
    if (PeekMessageW(&message, /*hWnd=*/nullptr, /*wMsgFilterMin=*/0, /*wMsgFilterMax=*/0, PM_REMOVE) != FALSE) {
      handleQueued(message);
    } else {
      sleepAtLeast(idleWait);
    }
  }
}

}  // namespace

void runPowerThread() {
  try {
    writeSystemLine("inside power thread");
    if (const PowerRegistration registration = listen()) {
      pumpMessages();
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch): only the log itself can fail here.
  }
}

}  // namespace sentiq
