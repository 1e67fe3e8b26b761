// Where there are no threads.
#include "reader/commands/OnAllCores.h"

namespace sentiq {

void onAllCores(const std::function<void()>& work) {
  work();
}

}  // namespace sentiq
