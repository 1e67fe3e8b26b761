#include "reader/views/TextStyle.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace sentiq {

std::string styled(Severity severity, std::string_view text, bool colour) {
  constexpr std::array<std::string_view, 4> begins{"", "\x1b[36m", "\x1b[33m", "\x1b[1;31m"};
  const std::string_view begin = begins[static_cast<std::size_t>(severity)];
  if (!colour || begin.empty()) {
    return std::string(text);
  }
  return std::string(begin) + std::string(text) + "\x1b[0m";
}

}  // namespace sentiq
