#include "reader/input/CleanText.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sentiq {
namespace {

// Bytes of the character that the text begins with; 0 when it is malformed (overlong, a surrogate, cut off).
std::size_t characterSize(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::uint32_t first = byte(0);
  if (first < 0x80) {
    return 1;
  }
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) {
    return 0;
  }
  std::uint32_t code = first & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) {
      return 0;
    }
    code = code << 6 | (byte(i) & 0x3FU);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  // The second half of the control characters (U+0080 to U+009F) steers terminals, too.
  return overlong || surrogate || code > 0x10FFFF || code < 0xA0 ? 0 : size;
}

bool isControl(char c) {
  const auto code = static_cast<unsigned char>(c);
  return (code < 0x20 && c != '\t' && c != '\r') || code == 0x7F;
}

}  // namespace

bool isCleanText(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t size = characterSize(bytes);
    if (size == 0 || isControl(bytes.front())) {
      return false;
    }
    bytes.remove_prefix(size);
  }
  return true;
}

std::string cleanText(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t size = characterSize(bytes);
    const bool clean = size != 0 && (!isControl(bytes.front()) || bytes.front() == '\n');
    text += clean ? bytes.substr(0, size) : "\xEF\xBF\xBD";
    bytes.remove_prefix(clean ? size : 1);
  }
  return text;
}

}  // namespace sentiq
