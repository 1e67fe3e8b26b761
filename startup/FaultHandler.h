// Notes which exceptions the process has seen, its own thrown and caught ones included.
#pragma once

#include <cstdint>
#include <unordered_set>

// The system's own, so that this header needs no windows.h.
struct _EXCEPTION_POINTERS;  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace sentiq {

/// A vectored exception handler; runs on whichever thread faults. Always lets the search for a handler go on.
long recordExceptionCode(_EXCEPTION_POINTERS* pointers);

/// Process-wide: every code seen so far. Codes are only added, by recordExceptionCode, from any thread.
std::unordered_set<std::uint32_t>& recordedExceptionCodes();

}  // namespace sentiq
