#include "logging/LogEncoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace sentiq {
namespace {

// Two base64 digits for each 12 bits, so that three bytes take two look-ups.
constexpr auto digitPairs = [] {
  std::array<std::array<char, 2>, 4096> pairs{};
  for (std::size_t bits = 0; bits < pairs.size(); ++bits) {
    pairs[bits] = {base64Alphabet[bits >> 6], base64Alphabet[bits & 63]};
  }
  return pairs;
}();

}  // namespace

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
    if (start == 0) {
      encoded = base64Encode(line);
    } else {
      encoded += '\n' + base64Encode(line);
    }
  }
  return encoded;
}

std::string base64Encode(std::string_view bytes) {
  std::string encoded((bytes.size() + 2) / 3 * 4, '=');
  char* out = encoded.data();
  const auto byte = [bytes](std::size_t i) -> std::uint32_t { return static_cast<unsigned char>(bytes[i]); };
  std::size_t i = 0;
  for (; bytes.size() - i >= 3; i += 3, out += 4) {
    const std::uint32_t group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    std::memcpy(out, digitPairs[group >> 12].data(), 2);
    std::memcpy(out + 2, digitPairs[group & 0xFFF].data(), 2);
  }
  if (i < bytes.size()) {
    const bool two = bytes.size() - i == 2;
    const std::uint32_t group = byte(i) << 16 | (two ? byte(i + 1) << 8 : 0);
    std::memcpy(out, digitPairs[group >> 12].data(), 2);
    if (two) {
      out[2] = base64Alphabet[group >> 6 & 63];
    }
  }
  return encoded;
}

}  // namespace sentiq
