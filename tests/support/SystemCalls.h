// How a test takes the place of a single system call: it defines the pointer that the program calls through (__imp_ and
// the call's name), constinit, because a static runtime library calls through it before it initialises anything; or the
// function itself where the SDK declares it without a pointer.
#pragma once

#include <windows.h>

namespace sentiq::test {

/// The system's own call, as real<decltype(&Call)>(library, "Call").
template <typename Function>
Function real(const wchar_t* library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(library), name)));
}

}  // namespace sentiq::test
