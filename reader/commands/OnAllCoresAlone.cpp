// Where there are no threads.
#include "reader/commands/OnAllCores.h"

namespace sentiq {

void onAllCores(std::size_t count, const std::function<void(std::size_t)>& work) {
  for (std::size_t i = 0; i < count; ++i) {
    work(i);
  }
}

}  // namespace sentiq
