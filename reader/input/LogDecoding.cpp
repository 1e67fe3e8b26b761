#include "reader/input/LogDecoding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <optional>
#include <string_view>

#include "logging/LogEncoding.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// Three bytes of text are handled as one word whose lowest byte comes first, and stored with a single copy.
static_assert(std::endian::native == std::endian::little);

// What a base64 digit at each of the four places of a group contributes to the group's word. Everything that
// is not a digit sets a bit above the three bytes.
constexpr std::uint32_t notDigit = 1U << 24;
constexpr auto digitWords = [] {
  std::array<std::array<std::uint32_t, 256>, 4> words{};
  for (auto& place : words) {
    place.fill(notDigit);
  }
  for (std::uint32_t digit = 0; digit < base64Alphabet.size(); ++digit) {
    const auto c = static_cast<unsigned char>(base64Alphabet[digit]);
    words[0][c] = digit << 2;
    words[1][c] = digit >> 4 | (digit & 15) << 12;
    words[2][c] = (digit >> 2) << 8 | (digit & 3) << 22;
    words[3][c] = digit << 16;
  }
  return words;
}();

// The key in groups of three bytes, until key and groups come out even.
constexpr auto keyWords = [] {
  std::array<std::uint32_t, std::lcm(logKey.size(), 3) / 3> words{};
  for (std::size_t i = 0; i < words.size() * 3; ++i) {
    words[i / 3] |= std::uint32_t{static_cast<unsigned char>(logKey[i % logKey.size()])} << (i % 3 * 8);
  }
  return words;
}();

std::uint32_t groupWord(const char* group) {
  const auto place = [group](std::size_t i) { return digitWords[i][static_cast<unsigned char>(group[i])]; };
  return place(0) | place(1) | place(2) | place(3);
}

// Decodes whole groups without padding. False when one of them holds something else than digits.
bool decodeGroups(std::string_view groups, char* out) {
  std::uint32_t seen = 0;
  const char* in = groups.data();
  std::size_t left = groups.size() / 4;
  while (left > 0) {
    const std::size_t run = std::min(left, keyWords.size());
    for (std::size_t i = 0; i < run; ++i) {
      const std::uint32_t word = groupWord(in);
      seen |= word;
      const std::uint32_t text = word ^ keyWords[i];
      std::memcpy(out, &text, sizeof text);
      in += 4;
      out += 3;
    }
    if (seen >= notDigit) {
      return false;
    }
    left -= run;
  }
  return true;
}

// The size of the text; nothing when the line is not base64 from end to end.
std::optional<std::size_t> decodeLine(std::string_view line, char* out) {
  if (line.empty() || line.size() % 4 != 0) {
    return std::nullopt;
  }
  const std::size_t padding = line.back() != '=' ? 0 : line[line.size() - 2] != '=' ? 1 : 2;
  if (padding == 0) {
    return decodeGroups(line, out) ? std::optional(line.size() / 4 * 3) : std::nullopt;
  }
  const std::size_t before = line.size() - 4;
  if (!decodeGroups(line.substr(0, before), out)) {
    return std::nullopt;
  }
  std::array<char, 4> last{'A', 'A', 'A', 'A'};
  line.copy(last.data(), 4 - padding, before);
  const std::uint32_t word = groupWord(last.data());
  const std::uint32_t text = word ^ keyWords[before / 4 % keyWords.size()];
  std::memcpy(out + before / 4 * 3, &text, sizeof text);
  return word < notDigit ? std::optional(before / 4 * 3 + 3 - padding) : std::nullopt;
}

bool hasShape(std::string_view text, std::string_view shape) {
  return text.size() >= shape.size() && std::equal(shape.begin(), shape.end(), text.begin(), [](char expected, char c) {
           return expected == '0' ? c >= '0' && c <= '9' : c == expected;
         });
}

constexpr std::string_view separatorHead = "================";

bool beginsEntry(std::string_view text) {
  return hasShape(text, "0000-00-00T00:00") || text.starts_with("{\"") || text.starts_with(separatorHead) ||
         text.starts_with("[TIMESTAMP_ERROR]");
}

// The lines that are plain in an encoded log, too, and so tell nothing about their neighbours.
bool namesSessionOrProcess(std::string_view line) {
  return line.find("OrbelSessionID") != std::string_view::npos || line.find("ProcessID") != std::string_view::npos;
}

bool decodesToBeginning(std::string_view line) {
  std::array<char, 40> text{};
  const std::size_t groups = std::min<std::size_t>(line.size() / 4, 12);
  std::size_t whole = 0;
  while (whole < groups && groupWord(line.data() + whole * 4) < notDigit) {
    ++whole;
  }
  decodeGroups(line.substr(0, whole * 4), text.data());
  return beginsEntry({text.data(), whole * 3});
}

}  // namespace

LineDecoder::Result LineDecoder::decode(std::string_view line, char* out) {
  if (const std::optional<std::size_t> size = decodeLine(line, out)) {
    return decoded({out, *size});
  }
  return {kindAsItStands(line), 0};
}

LineDecoder::Result LineDecoder::decoded(std::string_view text) {
  if (beginsEntry(text)) {
    if (!text.starts_with(separatorHead)) {  // Encoded in a plain log, too.
      manner_ = Manner::Encoded;
    }
    return {LineKind::Encoded, text.size()};
  }
  if (manner_ != Manner::Plain && isCleanText(text)) {
    return {LineKind::Encoded, text.size()};
  }
  return {manner_ == Manner::Encoded ? LineKind::Damaged : LineKind::Plain, 0};
}

LineKind LineDecoder::kindAsItStands(std::string_view line) {
  if (line.empty()) {
    return LineKind::Plain;
  }
  if (line.find('\0') != std::string_view::npos) {
    return LineKind::Damaged;
  }
  if (namesSessionOrProcess(line)) {
    return LineKind::Plain;
  }
  if (beginsEntry(line)) {
    manner_ = Manner::Plain;
    return LineKind::Plain;
  }
  const bool damaged = manner_ == Manner::Encoded || decodesToBeginning(line) || !isCleanText(line);
  return damaged ? LineKind::Damaged : LineKind::Plain;
}

}  // namespace sentiq
