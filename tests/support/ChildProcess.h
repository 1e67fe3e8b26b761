// Starts real programs that lie beside the test program.
#pragma once

#include <windows.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include "logging/UniqueHandle.h"

namespace sentiq::test {

inline std::filesystem::path programFolder() {
  wchar_t path[1024];
  GetModuleFileNameW(nullptr, path, 1024);
  return std::filesystem::path(path).parent_path();
}

class ChildProcess {
 public:
  /// @param arguments as they stand on the command line. @param folder of the program, and the one it runs
  /// in. @param security of the process. Ends with the object at the latest.
  explicit ChildProcess(const wchar_t* program, const std::wstring& arguments = L"",
                        const std::filesystem::path& folder = programFolder(),
                        SECURITY_ATTRIBUTES* security = nullptr) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const std::wstring path = (folder / program).wstring();
    std::wstring commandLine = L"\"" + path + L"\" " + arguments;
    const auto start = [&] {
      return CreateProcessW(path.c_str(), commandLine.data(), security, nullptr, FALSE, 0, nullptr, folder.c_str(),
                            &startup, &process) != FALSE;
    };
    // On a busy machine Wine fails so about once in two thousand starts, before anything of the program runs.
    if (!start() && (GetLastError() != ERROR_INTERNAL_ERROR || !start())) {
      throw std::runtime_error("CreateProcessW: " + std::to_string(GetLastError()));
    }
    const KernelHandle thread(process.hThread);
    process_ = KernelHandle(process.hProcess);
    pid_ = process.dwProcessId;
  }
  ~ChildProcess() { end(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  DWORD pid() const { return pid_; }
  HANDLE handle() const { return process_.get(); }

  void end(UINT code = 7) {
    TerminateProcess(process_.get(), code);
    WaitForSingleObject(process_.get(), 10'000);
  }

  /// The exit code, or nothing when the process still runs after that time.
  std::optional<DWORD> wait(std::chrono::milliseconds atMost) {
    DWORD code = 0;
    if (WaitForSingleObject(process_.get(), static_cast<DWORD>(atMost.count())) != WAIT_OBJECT_0 ||
        !GetExitCodeProcess(process_.get(), &code)) {
      return std::nullopt;
    }
    return code;
  }

 private:
  KernelHandle process_;
  DWORD pid_ = 0;
};

/// Whether the condition comes true within the time.
template <typename Condition>
bool eventually(Condition condition, std::chrono::seconds atMost = std::chrono::seconds(60)) {
  const auto end = std::chrono::steady_clock::now() + atMost;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

}  // namespace sentiq::test
