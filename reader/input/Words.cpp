#include "reader/input/Words.h"

#include <algorithm>
#include <iterator>

namespace sentiq {
namespace {

// Their small letters are so much further on, and also two bytes long.
struct Capitals {
  unsigned first;
  unsigned last;
  unsigned step;
  unsigned toSmall;
};
constexpr Capitals capitals[] = {
    Capitals{0xC0, 0xDE, 1, 0x20},   Capitals{0x100, 0x136, 2, 1},    Capitals{0x139, 0x147, 2, 1},
    Capitals{0x14A, 0x176, 2, 1},    Capitals{0x179, 0x17D, 2, 1},    Capitals{0x391, 0x3A9, 1, 0x20},
    Capitals{0x400, 0x40F, 1, 0x50}, Capitals{0x410, 0x42F, 1, 0x20},
};

unsigned byteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

bool isContinuation(std::string_view text, std::size_t at) {
  return (byteAt(text, at) & 0xC0U) == 0x80;
}

bool isSmallOrDigit(unsigned byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
}

// Whether the character that begins there is of a word with more than one: up to U+1FFF, where those scripts are.
bool isOfWord(std::string_view text, std::size_t at) {
  const unsigned byte = byteAt(text, at);
  return isSmallOrDigit(byte) || (byte >= 'A' && byte <= 'Z') || (byte >= 0xC3 && byte <= 0xE1);
}

}  // namespace

std::string smallLetters(std::string_view text) {
  std::string small(text);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned byte = byteAt(text, i);
    if (byte >= 'A' && byte <= 'Z') {
      small[i] = static_cast<char>(byte + ('a' - 'A'));
    } else if (byte >= 0xC3 && byte <= 0xD0 && i + 1 < text.size() && isContinuation(text, i + 1)) {
      unsigned code = (byte & 0x1FU) << 6U | (byteAt(text, i + 1) & 0x3FU);
      const auto* const row = std::find_if(std::begin(capitals), std::end(capitals), [&](const Capitals& c) {
        return code >= c.first && code <= c.last && (code - c.first) % c.step == 0;
      });
      code += row != std::end(capitals) ? row->toSmall : 0;
      small[i] = static_cast<char>(0xC0U | code >> 6U);
      small[++i] = static_cast<char>(0x80U | (code & 0x3FU));
    }
  }
  return small;
}

bool isWordBoundary(std::string_view text, std::size_t at) {
  if (at == 0 || at >= text.size()) {
    return true;
  }
  if (isContinuation(text, at)) {
    return false;
  }
  std::size_t before = at - 1;
  while (before > 0 && isContinuation(text, before)) {
    --before;
  }
  return !isOfWord(text, before) || !isOfWord(text, at);
}

std::size_t nextWordBoundary(std::string_view text, std::size_t at) {
  do {
    ++at;
  } while (!isWordBoundary(text, at));
  return at;
}

}  // namespace sentiq
