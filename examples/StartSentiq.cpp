#include "StartSentiq.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <system_error>
#include <utility>
#include <vector>

namespace canvix {
namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view prefix = L"session-";  // Nothing else in the folder of the logs is ever removed.

struct EarlierSession {
  fs::path folder;
  std::uint64_t changed;  // In the system's ticks: std::filesystem's times are whole seconds with some compilers.
};

std::vector<EarlierSession> newestFirst(const fs::path& logs) {
  std::vector<EarlierSession> sessions;
  std::error_code error;
  for (fs::directory_iterator entry(logs, error), end; !error && entry != end; entry.increment(error)) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (entry->path().filename().wstring().rfind(prefix, 0) == 0 &&
        GetFileAttributesExW(entry->path().c_str(), GetFileExInfoStandard, &data)) {
      const FILETIME& time = data.ftLastWriteTime;
      sessions.push_back({entry->path(), std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime});
    }
  }
  std::sort(sessions.begin(), sessions.end(), [](const auto& a, const auto& b) { return a.changed > b.changed; });
  return sessions;
}

// Left out when its value is empty: in one of its forms (--name=) that would end the program at once, without a word.
std::wstring option(const wchar_t* name, std::wstring_view value) {
  return value.empty() ? L"" : L" --" + std::wstring(name) + L' ' + quotedArgument(value);
}

}  // namespace

void SentiqSession::CloseMark::operator()(void* handle) const {
  CloseHandle(handle);
}

SentiqSession::SentiqSession(const fs::path& logs, std::wstring id, std::size_t kept)
    : id_(std::move(id)), folder_(logs / (std::wstring(prefix) + id_)) {
  std::error_code ignored;
  std::size_t ended = 0;
  for (const EarlierSession& session : newestFirst(logs)) {
    // Whoever still runs holds its mark open, and it cannot be deleted.
    const fs::path mark = session.folder / L"running";
    const bool abnormal = DeleteFileW(mark.c_str()) != FALSE;
    if (abnormal && lastAbnormal_.empty()) {
      lastAbnormal_ = session.folder.filename().wstring().substr(prefix.size());
    }
    if (!fs::exists(mark, ignored) && ++ended > kept) {
      fs::remove_all(session.folder, ignored);
    }
  }
  fs::create_directories(folder_, ignored);
  const HANDLE mark = CreateFileW((folder_ / L"running").c_str(), GENERIC_WRITE, /*dwShareMode=*/0,
                                  /*lpSecurityAttributes=*/nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                                  /*hTemplateFile=*/nullptr);
  mark_.reset(mark == INVALID_HANDLE_VALUE ? nullptr : mark);
}

bool SentiqSession::start(const fs::path& program) const {
  // The process id stands first: the program's list of arguments begins with a token that Windows reads by another
  // rule, in which blanks divide even between quotes that do not begin it.
  std::wstring commandLine =
      quotedArgument(program.wstring()) + L" --pid " + std::to_wstring(GetCurrentProcessId()) +
      option(L"analytics-identifier", id_) +
      option(L"sentiq-logs-path", (folder_ / L"CanvixSentiqSession.log").wstring()) +
      option(L"watchdog-logs-path", (folder_ / L"CanvixWatchdogInfoSession.log").wstring()) +
      option(L"watchdog-initial-logs-path", (folder_ / L"CanvixWatchdogInfoInitialSession.log").wstring()) +
      option(L"last-abnormal-session-id", lastAbnormal_);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_FORCEOFFFEEDBACK;  // No busy pointer: the program never shows a window that would end it.
  PROCESS_INFORMATION process{};
  const auto create = [&](DWORD flags) {
    // No handle is inherited, else files and pipes of the application would stay open two minutes longer. The current
    // folder is the program's own, else it would keep the application's from being removed.
    return CreateProcessW(program.c_str(), commandLine.data(), /*lpProcessAttributes=*/nullptr,
                          /*lpThreadAttributes=*/nullptr, /*bInheritHandles=*/FALSE, flags, /*lpEnvironment=*/nullptr,
                          program.parent_path().c_str(), &startup, &process) != FALSE;
  };
  // Out of a job that would end it together with the application; not every job lets its processes go.
  if (!create(CREATE_BREAKAWAY_FROM_JOB) && (GetLastError() != ERROR_ACCESS_DENIED || !create(0))) {
    return false;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

void SentiqSession::endNormally() {
  mark_.reset();
  DeleteFileW((folder_ / L"running").c_str());
}

std::wstring quotedArgument(std::wstring_view argument) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;  // Right before the current character: they count double only before a quote.
  for (const wchar_t c : argument) {
    if (c == L'"') {
      quoted.append(backslashes + 1, L'\\');
    }
    quoted += c;
    backslashes = c == L'\\' ? backslashes + 1 : 0;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

}  // namespace canvix
