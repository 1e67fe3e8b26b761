// Undoes the log encoding, written apart from the product's code so that the two check each other.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sentiq::test {

inline std::string decodeBase64(std::string_view text) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char c : text.substr(0, text.find('='))) {
    bits = bits << 6 | static_cast<unsigned>(digits.find(c));
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes += static_cast<char>(bits >> count & 0xFF);
    }
  }
  return bytes;
}

inline std::string decodeLine(std::string_view line) {
  constexpr std::string_view key = "QiVo_Marblestone_14082023";
  std::string bytes = decodeBase64(line);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<char>(bytes[i] ^ key[i % key.size()]);
  }
  return bytes;
}

}  // namespace sentiq::test
