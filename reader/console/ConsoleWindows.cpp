#include <windows.h>

#include <shellapi.h>

#include <cstdio>
#include <ios>
#include <memory>

#include <fcntl.h>
#include <io.h>

#include "logging/TextConversion.h"
#include "reader/console/Console.h"

namespace sentiq {
namespace {

bool isTerminal(DWORD standardHandle) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(standardHandle), &mode) != FALSE;
}

}  // namespace

void prepareConsole() {
  std::ios::sync_with_stdio(false);
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
  for (const DWORD standard : {STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    const HANDLE console = GetStdHandle(standard);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) != FALSE) {
      SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
  }
}

// The narrow arguments are in the machine's code page, which cannot hold every file name.
std::vector<std::string> consoleArguments(int /*argc*/, const char* const* /*argv*/) {
  int count = 0;
  const std::unique_ptr<LPWSTR[], decltype(&LocalFree)> arguments(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                  LocalFree);
  std::vector<std::string> texts;
  for (int i = 1; arguments && i < count; ++i) {
    texts.push_back(toUtf8(arguments[i]));
  }
  return texts;
}

bool outputIsTerminal() {
  return isTerminal(STD_OUTPUT_HANDLE);
}

bool messagesAreTerminal() {
  return isTerminal(STD_ERROR_HANDLE);
}

std::size_t outputWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) != FALSE;
  return known ? static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1) : 0;
}

bool openInBrowser(const std::filesystem::path& page) {
  constexpr INT_PTR greatestError = 32;
  const std::wstring file = std::filesystem::absolute(page).wstring();
  const HINSTANCE result = ShellExecuteW(/*hwnd=*/nullptr, L"open", file.c_str(), /*lpParameters=*/nullptr,
                                         /*lpDirectory=*/nullptr, SW_SHOWNORMAL);
  return reinterpret_cast<INT_PTR>(result) > greatestError;
}

}  // namespace sentiq
