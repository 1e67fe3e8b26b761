// Keeps C++ exceptions of foreign code out of the program: those of the compiler that built the program, and in a build
// with GCC those of Visual C++, too.
#pragma once

#include <cstdint>

namespace sentiq {

constexpr std::uint32_t exceptionCaught = 0x43414E54;  // "CANT"

/// Calls function(context). @return 0, or exceptionCaught when such a C++ exception ended the call. Any other fault, an
/// access violation say, goes on to the system. Callable on any thread.
std::uint32_t callGuarded(void (*function)(void* context), void* context);

}  // namespace sentiq
