
#include "capture/DataCapture.h"
#include "capture/SystemInfoWindows.h"
#include "capture/TargetProcessWindows.h"

namespace sentiq {

DataCapture& DataCapture::instance() {
  static auto* const capture =
      new DataCapture(std::make_unique<SystemInfoWindows>(), std::make_unique<TargetProcessWindows>());
  return *capture;
}

}  // namespace sentiq
