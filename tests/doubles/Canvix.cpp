// Stands in for Canvix: uses the desktop as every program with windows does, prints its process id, does nothing for
// the given number of seconds (an hour without one), and ends with 0.
//   Canvix.exe [SECONDS [LOGS SESSION [crash]]]
// With a folder and a session's id it starts the program beside it, as the example shows; with "crash" the session then
// ends abnormally.
#include <windows.h>

#include <shellapi.h>

#include <chrono>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <optional>
#include <thread>

#include "examples/StartSentiq.h"

int main() {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  GetDesktopWindow();
  std::optional<canvix::SentiqSession> session;
  if (count > 3) {
    session.emplace(arguments[2], arguments[3]);
    wchar_t self[1024];
    GetModuleFileNameW(nullptr, self, 1024);
    if (!session->start(std::filesystem::path(self).replace_filename(L"CanvixSentiq.exe"))) {
      return 1;
    }
  }
  std::printf("%lu\n", GetCurrentProcessId());
  std::fflush(stdout);
  std::this_thread::sleep_for(std::chrono::seconds(count > 1 ? std::wcstol(arguments[1], nullptr, 10) : 3600));
  if (session && count == 4) {
    session->endNormally();
  }
}
