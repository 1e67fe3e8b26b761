#include "reader/input/CleanText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
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

// Characters that must not reach a terminal or a page as such, and what stands for them.
struct Replacement {
  std::uint32_t first;
  std::uint32_t last;
  std::string_view by;
};
constexpr Replacement replacements[] = {
    Replacement{0x061C, 0x061C, ""},   // Arabic letter mark.
    Replacement{0x200E, 0x200F, ""},   // Marks of direction.
    Replacement{0x2028, 0x2029, " "},  // Line and paragraph separator.
    Replacement{0x202A, 0x202E, ""},   // Embeddings and overrides.
    Replacement{0x2066, 0x2069, ""},   // Isolates.
};

// Of a character that is well-formed.
std::string_view shownAs(std::string_view character) {
  std::uint32_t code = static_cast<unsigned char>(character.front()) & (0xFFU >> (character.size() + 1));
  for (const char c : character.substr(1)) {
    code = code << 6 | (static_cast<unsigned char>(c) & 0x3FU);
  }
  const auto* const row = std::find_if(std::begin(replacements), std::end(replacements), [&](const Replacement& r) {
    return character.size() > 1 && code >= r.first && code <= r.last;
  });
  return row != std::end(replacements) ? row->by : character;
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
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
    text += clean ? shownAs(bytes.substr(0, size)) : "\xEF\xBF\xBD";
    bytes.remove_prefix(clean ? size : 1);
  }
  return text;
}

std::string shortText(std::string_view bytes, std::size_t longest) {
  if (bytes.size() <= longest) {
    return cleanText(bytes);
  }
  while (longest > 0 && (static_cast<unsigned char>(bytes[longest]) & 0xC0U) == 0x80) {
    --longest;
  }
  return cleanText(bytes.substr(0, longest)) + "\xE2\x80\xA6";
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

bool beginsIgnoringCase(std::string_view text, std::string_view begin) {
  return equalIgnoringCase(text.substr(0, begin.size()), begin);
}

}  // namespace sentiq
