#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <system_error>

#include "logging/LogFile.h"
#include "logging/UniqueHandle.h"

namespace sentiq {
namespace {

HANDLE asHandle(std::intptr_t file) {
  return reinterpret_cast<HANDLE>(file);  // NOLINT(performance-no-int-to-ptr): so the header needs no windows.h.
}

std::string withWindowsLineEnds(std::string_view text) {
  std::string converted;
  converted.reserve(text.size() + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
  for (const char c : text) {
    if (c == '\n') {
      converted += '\r';
    }
    converted += c;
  }
  return converted;
}

}  // namespace

LogFile::LogFile(const std::filesystem::path& path, Mode mode)
    : file_(reinterpret_cast<std::intptr_t>(CreateFileW(
          path.c_str(),
          // The right to append and no other makes the system put each write at the end, whoever else writes.
          mode == Mode::Truncate ? GENERIC_WRITE : FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
          /*lpSecurityAttributes=*/nullptr, mode == Mode::Truncate ? CREATE_ALWAYS : OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
          /*hTemplateFile=*/nullptr))) {}

LogFile::~LogFile() {
  if (isOpen()) {
    CloseHandle(asHandle(file_));
  }
}

bool LogFile::isOpen() const {
  return file_ != -1;
}

bool LogFile::append(std::string_view text) {
  const std::string converted = withWindowsLineEnds(text);
  DWORD written = 0;
  return WriteFile(asHandle(file_), converted.data(), static_cast<DWORD>(converted.size()), &written,
                   /*lpOverlapped=*/nullptr) != FALSE &&
         written == converted.size();
}

std::filesystem::path longPath(const std::filesystem::path& path) {
  const std::wstring prefix = L"\\\\?\\";
  std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
  full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
  if (full.size() < MAX_PATH || path.native().starts_with(prefix)) {
    return path;
  }
  if (full.starts_with(prefix) || full.starts_with(L"\\\\.\\")) {
    return prefix + full.substr(prefix.size());
  }
  // \\server\share becomes \\?\UNC\server\share.
  return full.starts_with(L"\\\\") ? prefix + L"UNC" + full.substr(1) : prefix + full;
}

bool logFileExists(const std::filesystem::path& path) {
  if (const DWORD attributes = GetFileAttributesW(path.c_str()); attributes != INVALID_FILE_ATTRIBUTES) {
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 ||
        FileHandle(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, shareAll, /*lpSecurityAttributes=*/nullptr,
                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, /*hTemplateFile=*/nullptr))) {
      return true;
    }
  }
  const DWORD error = GetLastError();
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
    case ERROR_INVALID_NAME:
      return false;
    default:
      throw std::filesystem::filesystem_error("exists", path,
                                              std::error_code(static_cast<int>(error), std::system_category()));
  }
}

}  // namespace sentiq
