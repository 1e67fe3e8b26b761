// Starts real programs that lie beside the test program.
#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>

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

/// The hidden window of a process, null when it has none (yet).
inline HWND powerWindowOf(DWORD pid) {
  HWND window = nullptr;
  for (DWORD owner = 0; owner != pid;) {
    window = FindWindowExW(nullptr, window, L"PowerEventWindowClass", L"Power Event Listener");
    owner = pid;
    GetWindowThreadProcessId(window, &owner);
  }
  return window;
}

/// Whether the condition comes true within a minute.
bool eventually(auto condition) {
  for (int tries = 0; tries < 1200 && !condition(); ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return condition();
}

}  // namespace sentiq::test
