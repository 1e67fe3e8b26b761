// The least that appending a line to a file can cost on Windows.
#pragma once

#include <windows.h>

#include <string>

namespace sentiq::bench {

/// Opens, writes once and closes.
inline void appendBare(const std::wstring& path, const std::string& bytes) {
  const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
}

}  // namespace sentiq::bench
