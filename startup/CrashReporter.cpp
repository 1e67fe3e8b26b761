#include "startup/CrashReporter.h"

#include "startup/CallGuard.h"
#include "startup/Tarnwick.h"

namespace sentiq {
namespace {

constexpr const char* productName = "CanvixSentiq";
constexpr const char* productVersion = "29.5";
constexpr const char* productBuild = "137";

// Process-wide; the main thread alone reads and writes it.
bool crashReporterActive = false;

struct Initialization {
  std::uintptr_t reserved;
  bool detached;
};

void initialize(void* context) {
  const auto [reserved, detached] = *static_cast<const Initialization*>(context);
  if (detached) {
    SetDetachedMode(productName, productVersion, productBuild, reserved);
  }
  if (!CrashReporterInitialize(0, productName, productVersion, productBuild, reserved, 0, 0, 0, 0, 0, 0,
                               /*position12=*/1, /*position13=*/0, /*position14=*/0)) {
    GetCRLastErrorCode();
  }
}

void terminate(void* /*context*/) {
  VexaCrashReporterTerminate(0);
}

}  // namespace

// A client that refused to initialise is terminated all the same; one that threw is not.
void initCrashReporter(std::uintptr_t reserved, bool detached) {
  Initialization arguments{reserved, detached};
  crashReporterActive = callGuarded(initialize, &arguments) == 0;
}

void terminateCrashReporter() {
  if (crashReporterActive) {
    crashReporterActive = callGuarded(terminate, nullptr) != 0;
  }
}

}  // namespace sentiq
