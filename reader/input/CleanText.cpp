#include "reader/input/CleanText.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace sentiq {
namespace {

struct Character {
  std::size_t size;  // Bytes; 0 when it is malformed (overlong, a surrogate, cut off) or steers terminals.
  std::uint32_t code;
};

// That the text begins with.
Character firstCharacter(std::string_view text) {
  constexpr Character none{0, 0};
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const std::uint32_t first = byte(0);
  if (first < 0x80) {
    const bool control = (first < 0x20 && first != '\t' && first != '\r') || first == 0x7F;
    return control ? none : Character{1, first};
  }
  const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < size) {
    return none;
  }
  std::uint32_t code = first & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) {
      return none;
    }
    code = code << 6 | (byte(i) & 0x3FU);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  const bool control = code < 0xA0;  // Their second half.
  return overlong || surrogate || control || code > 0x10FFFF ? none : Character{size, code};
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

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

bool isCleanText(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t size = firstCharacter(bytes).size;
    if (size == 0) {
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
    const auto [size, code] = firstCharacter(bytes);
    const auto* const row =
        std::find_if(std::begin(replacements), std::end(replacements),
                     [wanted = code](const Replacement& r) { return wanted >= r.first && wanted <= r.last; });
    if (row != std::end(replacements)) {
      text += row->by;
    } else if (size == 0 && bytes.front() != '\n') {
      text += "\xEF\xBF\xBD";
    } else {
      text += bytes.substr(0, std::max<std::size_t>(size, 1));
    }
    bytes.remove_prefix(std::max<std::size_t>(size, 1));
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
