#include "logging/LogEncoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <string>
#include <string_view>

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

// Three bytes of key as one 24-bit number, for each group of three bytes until key and groups come out even.
template <std::size_t groups>
constexpr std::array<std::uint32_t, groups> keyGroups(std::string_view key) {
  std::array<std::uint32_t, groups> words{};
  for (std::size_t i = 0; i < groups * 3; ++i) {
    words[i / 3] = words[i / 3] << 8 | static_cast<unsigned char>(key[i % key.size()]);
  }
  return words;
}
constexpr auto logKeyGroups = keyGroups<std::lcm(logKey.size(), 3) / 3>(logKey);
constexpr auto noKeyGroups = std::array<std::uint32_t, 1>{0};

constexpr std::size_t encodedSize(std::size_t bytes) {
  return (bytes + 2) / 3 * 4;
}

std::uint32_t byteAt(std::string_view bytes, std::size_t i) {
  return static_cast<unsigned char>(bytes[i]);
}

// Writes encodedSize(bytes.size()) characters at out.
template <std::size_t groups>
void encodeBytes(std::string_view bytes, const std::array<std::uint32_t, groups>& key, char* out) {
  std::size_t group = 0;
  std::size_t i = 0;
  for (; bytes.size() - i >= 3; i += 3) {
    const std::uint32_t word = (byteAt(bytes, i) << 16 | byteAt(bytes, i + 1) << 8 | byteAt(bytes, i + 2)) ^ key[group];
    group = group + 1 == groups ? 0 : group + 1;
    std::memcpy(out, digitPairs[word >> 12].data(), 2);
    std::memcpy(out + 2, digitPairs[word & 0xFFF].data(), 2);
    out += 4;
  }
  const std::size_t left = bytes.size() - i;
  if (left > 0) {
    const std::uint32_t second = left == 2 ? byteAt(bytes, i + 1) << 8 : 0;
    const std::uint32_t keep = left == 2 ? 0xFFFF00 : 0xFF0000;
    const std::uint32_t word = ((byteAt(bytes, i) << 16 | second) ^ key[group]) & keep;
    std::memcpy(out, digitPairs[word >> 12].data(), 2);
    out[2] = left == 2 ? base64Alphabet[word >> 6 & 63] : '=';
    out[3] = '=';
  }
}

// The position of the first newline, or the text's size. Looks at eight bytes at once, which memchr does not do in
// every runtime library.
std::size_t lineEnd(std::string_view text) {
  constexpr std::uint64_t ones = 0x0101'0101'0101'0101;
  std::size_t i = 0;
  for (; text.size() - i >= 8; i += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + i, 8);
    word ^= ones * '\n';
    if (((word - ones) & ~word & ones << 7) != 0) {  // One of the bytes is zero.
      break;
    }
  }
  return std::min(text.find('\n', i), text.size());
}

// Calls visit(line) for each line, split as a stream's line reading does.
template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
  while (!text.empty()) {
    const std::size_t end = lineEnd(text);
    visit(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace

std::string encodeText(std::string_view text) {
  std::string encoded;
  encoded.reserve(encodedSize(text.size()));  // Enough for a single line, and nearly so for several.
  forEachLine(text, [&](std::string_view line) {
    if (line.data() != text.data()) {
      encoded += '\n';
    }
    const std::size_t start = encoded.size();
    encoded.resize(start + encodedSize(line.size()));
    encodeBytes(line, logKeyGroups, encoded.data() + start);
  });
  return encoded;
}

std::string base64Encode(std::string_view bytes) {
  std::string encoded(encodedSize(bytes.size()), '=');
  encodeBytes(bytes, noKeyGroups, encoded.data());
  return encoded;
}

}  // namespace sentiq
