#include "reader/views/TextStyle.h"

#include <algorithm>
#include <array>

namespace sentiq {

std::string padded(std::string_view text, std::size_t width) {
  std::string filled(text);
  filled.resize(std::max(width, filled.size()), ' ');
  return filled;
}

std::string coloured(const std::string& text, std::string_view colour) {
  return colour.empty() ? text : std::string(colour) + text + "\x1b[0m";
}

std::string styled(Severity severity, const std::string& text, bool colour) {
  constexpr std::array<std::string_view, 4> colours{"", "\x1b[36m", "\x1b[33m", "\x1b[1;31m"};
  return coloured(text, colour ? colours[static_cast<std::size_t>(severity)] : "");
}

}  // namespace sentiq
