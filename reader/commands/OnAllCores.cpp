#include "reader/commands/OnAllCores.h"

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace sentiq {

void onAllCores(std::size_t count, const std::function<void(std::size_t)>& work) {
  std::atomic<std::size_t> next{0};
  const auto workOn = [&] {
    for (std::size_t i = next++; i < count; i = next++) {
      work(i);
    }
  };
  std::vector<std::future<void>> others;  // In a page there is one core.
  for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) {
    others.push_back(std::async(std::launch::async, workOn));
  }
  workOn();
  for (std::future<void>& other : others) {
    other.get();
  }
}

}  // namespace sentiq
