// Cuts a stream of bytes into lines. Memory stays bounded whatever the bytes: a line longer than any log line
// is handed on in pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace sentiq {

struct Line {
  std::string_view text;  // Valid during the visit.
  std::string_view end;   // "\n", "\r\n", or empty when the line is not whole.
  std::uint64_t number;   // From 1.
  bool whole;             // False for a piece of an overlong line and for the rest behind the last line end.
};

class LineSplitter {
 public:
  using Visit = std::function<void(const Line&)>;

  /// Longer lines come in pieces. The longest that the log writers produce are events of some 100 KB.
  static constexpr std::size_t longestLine = 8U << 20;

  /// Visits the lines that are whole by now and keeps the rest.
  void feed(std::string_view bytes, const Visit& visit);

  /// Visits what is left without a line end, and starts again at line 1.
  void finish(const Visit& visit);

 private:
  std::string kept_;
  std::uint64_t number_ = 1;
  bool overlong_ = false;  // The line at hand was begun in pieces.
};

}  // namespace sentiq
