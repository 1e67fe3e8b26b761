#include "reader/input/LogDecoding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>
#include <optional>

#include "logging/LogEncoding.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// Three bytes of text are handled as one word whose lowest byte comes first, and stored with a single copy.
static_assert(std::endian::native == std::endian::little);

// What two base64 digits in the first and in the second half of a group contribute to the group's word, by the two
// bytes as they stand in memory. Whatever is not two digits sets a bit above the three bytes.
constexpr std::uint32_t notDigits = 1U << 24;
struct PairWords {
  std::array<std::uint32_t, 1U << 16> first;
  std::array<std::uint32_t, 1U << 16> second;
};
const PairWords pairWords = [] {
  PairWords words;
  words.first.fill(notDigits);
  words.second.fill(notDigits);
  for (std::uint32_t bits = 0; bits < 1U << 12; ++bits) {
    const auto high = static_cast<unsigned char>(base64Alphabet[bits >> 6]);
    const auto low = static_cast<unsigned char>(base64Alphabet[bits & 63]);
    const std::size_t pair = high | std::size_t{low} << 8;
    words.first[pair] = bits >> 4 | (bits & 15) << 12;
    words.second[pair] = bits >> 8 << 8 | (bits & 255) << 16;
  }
  return words;
}();

// The key for two groups, six bytes, at a time, until key and groups come out even.
constexpr auto keyWords = [] {
  std::array<std::uint64_t, std::lcm(logKey.size(), 6) / 6> words{};
  for (std::size_t i = 0; i < words.size() * 6; ++i) {
    words[i / 6] |= std::uint64_t{static_cast<unsigned char>(logKey[i % logKey.size()])} << (i % 6 * 8);
  }
  return words;
}();

std::uint32_t groupWord(const char* group) {
  std::uint16_t first = 0;
  std::uint16_t second = 0;
  std::memcpy(&first, group, sizeof first);
  std::memcpy(&second, group + 2, sizeof second);
  return pairWords.first[first] | pairWords.second[second];
}

// Decodes the group of this number in its line.
bool decodeGroup(const char* group, std::size_t number, char* out) {
  const std::uint32_t word = groupWord(group);
  const std::uint64_t key = keyWords[number / 2 % keyWords.size()] >> (number % 2 * 24);
  const std::uint32_t text = word ^ static_cast<std::uint32_t>(key);
  std::memcpy(out, &text, sizeof text);
  return word < notDigits;
}

// Decodes whole groups without padding. False when one of them holds something else than digits.
bool decodeGroups(std::string_view groups, char* out) {
  std::uint32_t seen = 0;
  const char* in = groups.data();
  std::size_t left = groups.size() / 8;
  while (left > 0) {
    const std::size_t run = std::min(left, keyWords.size());
    for (std::size_t i = 0; i < run; ++i) {
      const std::uint32_t first = groupWord(in);
      const std::uint32_t second = groupWord(in + 4);
      seen |= first | second;
      const std::uint64_t text = (first | std::uint64_t{second} << 24) ^ keyWords[i];
      std::memcpy(out, &text, sizeof text);
      in += 8;
      out += 6;
    }
    if (seen >= notDigits) {
      return false;
    }
    left -= run;
  }
  return groups.size() % 8 == 0 || decodeGroup(in, groups.size() / 4 - 1, out);
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
  std::array<char, 4> last{'A', 'A', 'A', 'A'};
  line.copy(last.data(), 4 - padding, before);
  const bool good =
      decodeGroups(line.substr(0, before), out) && decodeGroup(last.data(), before / 4, out + before / 4 * 3);
  return good ? std::optional(before / 4 * 3 + 3 - padding) : std::nullopt;
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
  while (whole < groups && groupWord(line.data() + whole * 4) < notDigits) {
    ++whole;
  }
  decodeGroups(line.substr(0, whole * 4), text.data());
  return beginsEntry({text.data(), whole * 3});
}

}  // namespace

LineKind LineDecoder::decode(std::string_view line, std::string& out) {
  constexpr std::size_t wholeWords = 8;  // Words are stored whole, beyond the text's end.
  const std::size_t begin = out.size();
  out.resize(begin + line.size() + wholeWords);
  const std::optional<std::size_t> size = decodeLine(line, out.data() + begin);
  const LineKind kind = size ? kindDecoded({out.data() + begin, *size}) : kindAsItStands(line);
  out.resize(begin + (kind == LineKind::Encoded ? *size : 0));
  out += kind == LineKind::Encoded ? "" : line;
  return kind;
}

LineKind LineDecoder::kindDecoded(std::string_view text) {
  if (beginsEntry(text)) {
    if (!text.starts_with(separatorHead)) {  // Encoded in a plain log, too.
      manner_ = Manner::Encoded;
    }
    return LineKind::Encoded;
  }
  if (manner_ != Manner::Plain && isCleanText(text)) {
    return LineKind::Encoded;
  }
  return manner_ == Manner::Encoded ? LineKind::Damaged : LineKind::Plain;
}

LineKind LineDecoder::kindAsItStands(std::string_view line) {
  if (line.find('\0') != std::string_view::npos) {
    return LineKind::Damaged;
  }
  if (line.empty() || namesSessionOrProcess(line)) {
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
