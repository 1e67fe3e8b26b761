#include "startup/FaultHandler.h"

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <unordered_set>

namespace sentiq {
namespace {

// Other threads may still run, and fault, while the process destroys its statics.
std::atomic<bool> setIsGone = false;

struct CodeSet {  // NOLINT(cppcoreguidelines-special-member-functions): there is one, and it stays where it is.
  std::unordered_set<std::uint32_t> codes;
  ~CodeSet() { setIsGone = true; }
};

}  // namespace

std::unordered_set<std::uint32_t>& recordedExceptionCodes() {
  static CodeSet set;
  return set.codes;
}

// Takes no lock: a thread that faults while it holds one would wait for itself.
long recordExceptionCode(_EXCEPTION_POINTERS* pointers) {
  if (pointers != nullptr && pointers->ExceptionRecord != nullptr && !setIsGone) {
    recordedExceptionCodes().insert(pointers->ExceptionRecord->ExceptionCode);
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace sentiq
