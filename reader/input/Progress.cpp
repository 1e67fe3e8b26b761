#include "reader/input/Progress.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

namespace sentiq {
namespace {

constexpr std::uint64_t worthShowing = 16U << 20;

}  // namespace

Progress::Progress(std::ostream* terminal) : terminal_(terminal) {}

void Progress::begin(const std::string& name, std::uint64_t bytes) {
  name_ = name;
  total_ = bytes;
  done_ = 0;
  shownPercent_ = 0;
}

void Progress::advance(std::size_t bytes) {
  done_ += bytes;
  if (terminal_ == nullptr || total_ < worthShowing) {
    return;
  }
  const std::uint64_t percent = done_ * 100 / total_;
  if (percent != shownPercent_) {
    shownPercent_ = percent;
    *terminal_ << '\r' << name_ << ": " << percent << " %" << std::flush;
  }
}

void Progress::end() {
  if (shownPercent_ != 0) {
    *terminal_ << "\r\x1b[K" << std::flush;
  }
}

}  // namespace sentiq
