// The decoded lines of a file as they stand, for who wants to look at them; of a large file the last ones.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "reader/session/LogSet.h"

namespace sentiq {

class RawLines {
 public:
  /// @param file receives them; must outlive this object.
  explicit RawLines(LogFileInfo& file) : file_(file) {}

  void keep(std::string_view text) {
    constexpr std::size_t mostBytes = 1U << 20;
    file_.rawLines.emplace_back(text);
    bytes_ += sizeof(std::string) + text.size();
    while (bytes_ > mostBytes) {
      bytes_ -= sizeof(std::string) + file_.rawLines.front().size();
      file_.rawLines.pop_front();
      ++file_.rawLeftOut;
    }
  }

 private:
  LogFileInfo& file_;
  std::size_t bytes_ = 0;
};

}  // namespace sentiq
