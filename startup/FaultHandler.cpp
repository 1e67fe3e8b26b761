#include "startup/FaultHandler.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>

namespace sentiq {
namespace {

// A hash set that needs neither a lock, which the thread that faults may hold, nor the heap, which the fault may have
// broken. Codes only come: a free place is taken once, and stays taken. A zero is free, so each code stands there with
// one added. What finds no room is left out; a process meets a dozen codes.
constexpr std::size_t room = 1024;
constinit std::array<std::atomic<std::uint64_t>, room> places{};

void insert(std::uint32_t code) {
  const std::uint64_t value = std::uint64_t{code} + 1;
  const std::size_t first = std::hash<std::uint32_t>{}(code);
  for (std::size_t i = 0; i < room; ++i) {
    std::uint64_t found = 0;
    if (places[(first + i) % room].compare_exchange_strong(found, value) || found == value) {
      return;
    }
  }
}

}  // namespace

long recordExceptionCode(_EXCEPTION_POINTERS* pointers) {
  if (pointers != nullptr && pointers->ExceptionRecord != nullptr) {
    insert(pointers->ExceptionRecord->ExceptionCode);
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

std::vector<std::uint32_t> recordedExceptionCodes() {
  std::vector<std::uint32_t> codes;
  for (const std::atomic<std::uint64_t>& place : places) {
    if (const std::uint64_t value = place; value != 0) {
      codes.push_back(static_cast<std::uint32_t>(value - 1));
    }
  }
  return codes;
}

}  // namespace sentiq
