#include "reader/input/Progress.h"

#include <algorithm>
#include <ostream>

namespace sentiq {

void Progress::show(const std::string& what, std::uint64_t done, std::uint64_t total, const std::string& unit) {
  constexpr std::chrono::milliseconds interval{200};
  const Clock::time_point now = Clock::now();
  if (terminal_ == nullptr || total == 0 || done == 0 || now - shown_ < interval) {
    return;
  }
  shown_ = now;
  const double rate = static_cast<double>(done) / std::chrono::duration<double>(now - begin_).count();
  const double left = static_cast<double>(total - std::min(done, total)) / rate;  // A file may grow meanwhile.
  *terminal_ << "\r\x1b[K" + what + ": " + std::to_string(done) + " of " + std::to_string(total) + ' ' + unit + ", " +
                    std::to_string(static_cast<std::uint64_t>(rate)) + ' ' + unit + "/s, " +
                    std::to_string(static_cast<std::uint64_t>(left)) + " s left"
             << std::flush;
}

Progress::~Progress() {
  if (shown_ != begin_) {
    *terminal_ << "\r\x1b[K" << std::flush;
  }
}

}  // namespace sentiq
