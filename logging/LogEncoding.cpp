#include "logging/LogEncoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace sentiq {

std::string encodeText(std::string_view text) {
  std::string encoded;
  std::string line;
  for (std::size_t start = 0; start < text.size(); start += line.size() + 1) {
    line = text.substr(start, text.find('\n', start) - start);
    for (std::size_t i = 0; i < line.size(); i += logKey.size()) {
      const std::size_t count = std::min(logKey.size(), line.size() - i);
      for (std::size_t k = 0; k < count; ++k) {
        line[i + k] = static_cast<char>(line[i + k] ^ logKey[k]);
      }
    }
    if (start > 0) {
      encoded += '\n';
    }
    encoded += base64Encode(line);
  }
  return encoded;
}

std::string base64Encode(std::string_view bytes) {
  std::string encoded((bytes.size() + 2) / 3 * 4, '=');
  char* out = encoded.data();
  const auto byte = [bytes](std::size_t i) -> std::uint32_t { return static_cast<unsigned char>(bytes[i]); };
  const auto digit = [](std::uint32_t bits) { return base64Alphabet[bits & 63]; };
  std::size_t i = 0;
  for (; bytes.size() - i >= 3; i += 3) {
    const std::uint32_t group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    *out++ = digit(group >> 18);
    *out++ = digit(group >> 12);
    *out++ = digit(group >> 6);
    *out++ = digit(group);
  }
  if (i < bytes.size()) {
    const bool two = bytes.size() - i == 2;
    const std::uint32_t group = byte(i) << 16 | (two ? byte(i + 1) << 8 : 0);
    *out++ = digit(group >> 18);
    *out++ = digit(group >> 12);
    if (two) {
      *out = digit(group >> 6);
    }
  }
  return encoded;
}

}  // namespace sentiq
