#include "reader/commands/OnAllCores.h"

#include <thread>
#include <vector>

namespace sentiq {

void onAllCores(const std::function<void()>& work) {
  std::vector<std::jthread> threads;
  for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) {
    threads.emplace_back(work);
  }
  work();
}

}  // namespace sentiq
