#include "startup/CrashReporter.h"

#include <cstdint>

#include "startup/Tarnwick.h"

namespace sentiq {
namespace {

constexpr const char* productName = "CanvixSentiq";
constexpr const char* productVersion = "29.5";
constexpr const char* productBuild = "137";

constexpr std::uint32_t exceptionCaught = 0x43414E54;  // "CANT"

// Process-wide; the main thread alone reads and writes it.
bool crashReporterActive = false;

std::uint32_t initializeGuarded(std::uintptr_t reserved, bool detached) {
  try {
    if (detached) {
      SetDetachedMode(productName, productVersion, productBuild, reserved);
    }
    if (!CrashReporterInitialize(0, productName, productVersion, productBuild, reserved, 0, 0, 0, 0, 0, 0, true, 0,
                                 false)) {
      GetCRLastErrorCode();
    }
    return 0;
  } catch (...) {
    return exceptionCaught;
  }
}

}  // namespace

// A client that refused to initialise is terminated all the same; one that threw is not.
void initCrashReporter(std::uintptr_t reserved, bool detached) {
  crashReporterActive = initializeGuarded(reserved, detached) == 0;
}

void terminateCrashReporter() {
  try {
    if (crashReporterActive) {
      VexaCrashReporterTerminate(0);
      crashReporterActive = false;
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch): the program ends here anyway.
  }
}

}  // namespace sentiq
