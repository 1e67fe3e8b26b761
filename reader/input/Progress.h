// How far a long reading is, on a terminal's last line.
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace sentiq {

class Progress {
 public:
  /// @param terminal written to; nullptr shows nothing. Must outlive this object.
  explicit Progress(std::ostream* terminal) : terminal_(terminal) {}
  Progress(const Progress&) = delete;
  Progress(Progress&&) = delete;
  Progress& operator=(const Progress&) = delete;
  Progress& operator=(Progress&&) = delete;

  /// Clears the line.
  ~Progress();

  /// How much is done, how fast and how long the rest takes; at most five times a second, so that nothing shows of what
  /// is short. @param total 0 when it is not known: then nothing is shown. @param unit of both numbers.
  void show(const std::string& what, std::uint64_t done, std::uint64_t total, const std::string& unit);

 private:
  using Clock = std::chrono::steady_clock;

  std::ostream* terminal_;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point shown_ = begin_;
};

}  // namespace sentiq
