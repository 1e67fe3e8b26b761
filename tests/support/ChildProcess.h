// Starts real programs that lie beside the test program.
#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace sentiq::test {

inline std::filesystem::path programFolder() {
  wchar_t path[1024];
  GetModuleFileNameW(nullptr, path, 1024);
  return std::filesystem::path(path).parent_path();
}

class ChildProcess {
 public:
  /// @param arguments as they stand on the command line. The process ends with the object at the latest.
  explicit ChildProcess(const wchar_t* program, const std::wstring& arguments = L"") {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    const std::wstring path = (programFolder() / program).wstring();
    std::wstring line = L"\"" + path + L"\" " + arguments;
    const auto start = [&] {
      return CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &started_);
    };
    // On a busy machine Wine fails so about once in two thousand starts, before anything of the program runs.
    if (!start() && (GetLastError() != ERROR_INTERNAL_ERROR || !start())) {
      throw std::runtime_error("CreateProcessW: " + std::to_string(GetLastError()));
    }
  }
  ~ChildProcess() {
    end(7);
    CloseHandle(started_.hThread);
    CloseHandle(started_.hProcess);
  }
  ChildProcess(ChildProcess&&) = delete;

  HANDLE handle() const { return started_.hProcess; }
  DWORD pid() const { return started_.dwProcessId; }

  void end(UINT code) {
    TerminateProcess(started_.hProcess, code);
    wait(std::chrono::seconds(10));
  }

  /// The exit code, or STILL_ACTIVE when the process still runs after that time.
  DWORD wait(std::chrono::milliseconds atMost) {
    WaitForSingleObject(started_.hProcess, static_cast<DWORD>(atMost.count()));
    DWORD code = 0;
    return GetExitCodeProcess(started_.hProcess, &code) ? code : STILL_ACTIVE;
  }

 private:
  PROCESS_INFORMATION started_{};
};

/// The hidden window of a process, null when it has none (yet). Not by FindWindowExW, which loses its way when a window
/// of another process goes meanwhile.
inline HWND powerWindowOf(DWORD pid) {
  std::pair<DWORD, HWND> search(pid, nullptr);
  const auto look = [](HWND window, LPARAM to) -> BOOL {
    auto& [wanted, found] = *reinterpret_cast<std::pair<DWORD, HWND>*>(to);
    wchar_t name[64] = {};
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    GetClassNameW(window, name, 64);
    found = owner == wanted && name == std::wstring(L"PowerEventWindowClass") ? window : nullptr;
    return found == nullptr;
  };
  EnumWindows(look, reinterpret_cast<LPARAM>(&search));
  return search.second;
}

/// Whether the condition comes true within a minute.
bool eventually(auto condition) {
  int tries = 1200;
  while (!condition() && --tries != 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return tries != 0;
}

}  // namespace sentiq::test
