#include "startup/FaultHandler.h"

#include <windows.h>

namespace sentiq {

std::unordered_set<std::uint32_t>& recordedExceptionCodes() {
  static std::unordered_set<std::uint32_t> codes;
  return codes;
}

// Takes no lock: a thread that faults while it holds one would wait for itself.
long recordExceptionCode(_EXCEPTION_POINTERS* pointers) {
  if (pointers != nullptr && pointers->ExceptionRecord != nullptr) {
    recordedExceptionCodes().insert(pointers->ExceptionRecord->ExceptionCode);
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace sentiq
