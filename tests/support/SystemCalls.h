// What tests need of the system besides its headers. A test takes the place of a single system call by defining the
// pointer that the program calls through (__imp_ and the call's name); real() is then the way to the system's own.
#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

#include <winternl.h>

namespace sentiq::test {

template <typename Function>
Function real(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(library), name)));
}

/// How many handles this process holds. Not GetProcessHandleCount: Wine's always says 0.
inline std::size_t openHandles() {
  struct Entry {
    void* object;
    ULONG_PTR processId, handle;
    ULONG access;
    USHORT backTraceIndex, typeIndex;
    ULONG attributes, reserved;
  };
  struct Handles {
    ULONG_PTR count, reserved;
    Entry entries[1];
  };
  using Query = NTSTATUS(NTAPI*)(int kind, void* buffer, ULONG size, ULONG* needed);
  constexpr int extendedHandleInformation = 64;
  static const auto query = real<Query>(L"ntdll", "NtQuerySystemInformation");
  std::vector<std::byte> buffer(std::size_t{1} << 22);
  query(extendedHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr);
  const auto* const handles = reinterpret_cast<const Handles*>(buffer.data());
  std::size_t own = 0;
  for (ULONG_PTR i = 0; i < handles->count; ++i) {
    own += handles->entries[i].processId == GetCurrentProcessId();
  }
  return own;
}

/// The hidden window of a process, null when it has none (yet).
inline HWND powerWindowOf(DWORD pid) {
  HWND window = nullptr;
  DWORD owner = 0;
  do {
    window = FindWindowExW(nullptr, window, L"PowerEventWindowClass", L"Power Event Listener");
    GetWindowThreadProcessId(window, &owner);
  } while (window != nullptr && owner != pid);
  return window;
}

}  // namespace sentiq::test
