#include "reader/input/LogDecoding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <numeric>
#include <optional>

#include "logging/LogEncoding.h"
#include "logging/LogGrammar.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// Eight digits, six bytes of text, are one word whose lowest byte comes first, stored with a single copy.
static_assert(std::endian::native == std::endian::little);
constexpr std::size_t wordDigits = 8;
constexpr std::size_t wordText = 6;

// What two digits in the first and in the second half of a group of four contribute to the group's three bytes, by the
// two bytes as they stand in memory. Whatever is not two digits sets a bit above the three bytes.
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
    const std::array<char, 2> digits{base64Alphabet[bits >> 6], base64Alphabet[bits & 63]};
    std::uint16_t pair = 0;
    std::memcpy(&pair, digits.data(), sizeof pair);
    words.first[pair] = bits >> 4 | (bits & 15) << 12;
    words.second[pair] = bits >> 8 << 8 | (bits & 255) << 16;
  }
  return words;
}();

// The key in words, until key and words come out even.
constexpr auto keyWords = [] {
  std::array<std::uint64_t, std::lcm(logKey.size(), wordText) / wordText> words{};
  for (std::size_t i = 0; i < words.size() * wordText; ++i) {
    words[i / wordText] |= std::uint64_t{static_cast<unsigned char>(logKey[i % logKey.size()])} << (i % wordText * 8);
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

// Decodes whole words; two bytes more are written. False when one of them holds something else than digits.
bool decodeWords(std::string_view digits, std::size_t firstWord, char* out) {
  std::size_t number = firstWord % keyWords.size();
  for (std::size_t at = 0; at < digits.size(); at += wordDigits) {
    const std::uint32_t first = groupWord(digits.data() + at);
    const std::uint32_t second = groupWord(digits.data() + at + 4);
    if ((first | second) >= notDigits) {
      return false;
    }
    const std::uint64_t text = (first | std::uint64_t{second} << 24) ^ keyWords[number];
    std::memcpy(out, &text, sizeof text);
    out += wordText;
    number = number + 1 < keyWords.size() ? number + 1 : 0;
  }
  return true;
}

// The size of the text; nothing when the line is not base64 from end to end. Writes up to a word beyond it.
std::optional<std::size_t> decodeLine(std::string_view line, char* out) {
  if (line.empty() || line.size() % 4 != 0) {
    return std::nullopt;
  }
  const std::size_t padding = line.back() != '=' ? 0 : line[line.size() - 2] != '=' ? 1 : 2;
  const std::size_t words = (line.size() - padding) / wordDigits;
  std::array<char, wordDigits> rest{'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A'};
  line.copy(rest.data(), line.size() - padding - words * wordDigits, words * wordDigits);
  const bool good = decodeWords(line.substr(0, words * wordDigits), 0, out) &&
                    decodeWords({rest.data(), rest.size()}, words, out + words * wordText);
  return good ? std::optional(line.size() / 4 * 3 - padding) : std::nullopt;
}

bool hasShape(std::string_view text, std::string_view shape) {
  return text.size() >= shape.size() && std::equal(shape.begin(), shape.end(), text.begin(), [](char expected, char c) {
           return expected == '0' ? c >= '0' && c <= '9' : c == expected;
         });
}

constexpr std::string_view separatorHead = grammar::separator.substr(0, 16);  // Most of it is enough.

bool beginsEntry(std::string_view text) {
  return hasShape(text, "0000-00-00T00:00") || text.starts_with("{\"") || text.starts_with(separatorHead) ||
         text.starts_with(grammar::noTimeStamp);
}

// The lines that are plain in an encoded log, too, and so tell nothing about their neighbours.
bool namesSessionOrProcess(std::string_view line) {
  return line.find(grammar::sessionId) != std::string_view::npos ||
         line.find(grammar::processId) != std::string_view::npos;
}

bool decodesToBeginning(std::string_view line) {
  std::array<char, 48> text{};  // As many bytes as digits are more than enough.
  line = line.substr(0, text.size());
  std::size_t digits = 0;
  while (digits + 4 <= line.size() && groupWord(line.data() + digits) < notDigits) {
    digits += 4;
  }
  const auto size = decodeLine(line.substr(0, digits), text.data());
  return size && beginsEntry({text.data(), *size});
}

}  // namespace

DecodedLine LineDecoder::decode(std::string_view line) {
  constexpr std::size_t wholeWord = 8;  // Words are stored whole, beyond the text's end.
  room_.resize(std::max(room_.size(), line.size() / 4 * 3 + wholeWord));
  const std::optional<std::size_t> size = decodeLine(line, room_.data());
  const std::string_view text = std::string_view(room_).substr(0, size.value_or(0));
  const LineKind kind = size ? kindDecoded(text) : kindAsItStands(line);
  return {kind, kind == LineKind::Encoded ? text : line};
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
  if (line.empty() || (manner_ == Manner::Plain && beginsEntry(line)) || namesSessionOrProcess(line)) {
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
