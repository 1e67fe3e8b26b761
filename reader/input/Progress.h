// How far a long reading is, on a terminal's last line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace sentiq {

class Progress {
 public:
  /// @param terminal written to; nullptr shows nothing. Must outlive this object.
  explicit Progress(std::ostream* terminal);

  /// @param bytes the size of the input; 0 when it is not known. Small inputs show nothing.
  void begin(const std::string& name, std::uint64_t bytes);
  void advance(std::size_t bytes);
  void end();

 private:
  std::ostream* terminal_;
  std::string name_;
  std::uint64_t total_ = 0;
  std::uint64_t done_ = 0;
  std::uint64_t shownPercent_ = 0;
};

}  // namespace sentiq
