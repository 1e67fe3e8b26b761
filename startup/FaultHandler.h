// Notes which exceptions the process has seen, its own thrown and caught ones included.
#pragma once

#include <cstdint>
#include <vector>

// The system's own, so that this header needs no windows.h.
struct _EXCEPTION_POINTERS;  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace sentiq {

/// A vectored exception handler; runs on whichever thread faults. Always lets the search for a handler go on.
long recordExceptionCode(_EXCEPTION_POINTERS* pointers);

/// Each code that recordExceptionCode has seen in this process, once, in no order. Callable on any thread.
std::vector<std::uint32_t> recordedExceptionCodes();

}  // namespace sentiq
