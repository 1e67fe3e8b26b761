// Keeps exceptions of foreign code out of the program, whichever compiler that code was built with.
#pragma once

#include <cstdint>

namespace sentiq {

constexpr std::uint32_t exceptionCaught = 0x43414E54;  // "CANT"

/// Calls function(context). @return 0, or exceptionCaught when a C++ exception of this compiler or of Visual C++ ended
/// the call. Any other fault, an access violation say, goes on to the system. Callable on any thread.
std::uint32_t callGuarded(void (*function)(void* context), void* context);

}  // namespace sentiq
