// What tests need of the system besides its headers. A test takes the place of a single system call by defining the
// pointer that the program calls through (__imp_ and the call's name), or the function itself where the SDK declares it
// without a pointer; real() is then the way to the system's own.
#pragma once

#include <windows.h>

namespace sentiq::test {

template <typename Function>
Function real(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(library), name)));
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
