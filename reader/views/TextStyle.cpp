#include "reader/views/TextStyle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

constexpr std::string_view ellipsis = "\xE2\x80\xA6";

// The blocks whose characters take two columns, up to U+FFFF; beyond, pictures and ideographs do.
struct WideBlock {
  std::uint32_t first;
  std::uint32_t last;
};
constexpr WideBlock wideBlocks[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFF00, 0xFF60},
};

// One, or some.
struct Glyph {
  std::size_t bytes;
  std::size_t columns;
};

// That clean text begins with.
Glyph firstGlyph(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t bytes = std::min<std::size_t>(first < 0xC0   ? 1
                                                  : first < 0xE0 ? 2
                                                  : first < 0xF0 ? 3
                                                                 : 4,
                                                  text.size());
  std::uint32_t code = bytes == 1 ? first : first & (0xFFU >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3FU);
  }
  const bool wide =
      code >= 0x1F300 || std::any_of(std::begin(wideBlocks), std::end(wideBlocks),
                                     [code](WideBlock block) { return code >= block.first && code <= block.last; });
  const bool combining = code >= 0x0300 && code <= 0x036F;
  return {bytes, combining ? 0U : wide ? 2U : 1U};
}

// Of the text's beginning that takes no more columns.
Glyph beginningWithin(std::string_view text, std::size_t columns) {
  Glyph beginning{0, 0};
  while (beginning.bytes < text.size()) {
    const Glyph next = firstGlyph(text.substr(beginning.bytes));
    if (next.columns > columns - beginning.columns) {
      break;
    }
    beginning.bytes += next.bytes;
    beginning.columns += next.columns;
  }
  return beginning;
}

}  // namespace

std::string harmlessLine(std::string_view bytes) {
  std::string text = cleanText(bytes);
  std::replace_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
  return text;
}

std::string joined(const std::vector<std::string>& items, std::string_view separator) {
  std::string text;
  for (const std::string& item : items) {
    text.append(text.empty() ? "" : separator).append(harmlessLine(item));
  }
  return text;
}

std::string countText(std::size_t count, const std::string& what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string showNumber(double number, int decimals) {
  const long long scaled = std::llround(std::abs(number) * std::pow(10, decimals));
  const auto behind = static_cast<std::size_t>(decimals);
  std::string text = std::to_string(scaled);
  text.insert(0, behind + 1 - std::min(behind + 1, text.size()), '0');
  if (behind > 0) {
    text.insert(text.size() - behind, 1, '.');
  }
  return number < 0 && scaled != 0 ? '-' + text : text;
}

std::size_t shownWidth(std::string_view text) {
  return beginningWithin(text, std::string_view::npos).columns;
}

std::string padded(std::string_view text, std::size_t width) {
  return std::string(text) + std::string(width - std::min(width, shownWidth(text)), ' ');
}

std::string padded(std::size_t width, std::string_view text) {
  return std::string(width - std::min(width, shownWidth(text)), ' ') + std::string(text);
}

std::string fitted(std::string_view text, std::size_t width) {
  if (width == 0 || shownWidth(text) <= width) {
    return std::string(text);
  }
  return std::string(text.substr(0, beginningWithin(text, width - 1).bytes)).append(ellipsis);
}

std::string wrapped(std::string_view text, std::size_t indent, std::size_t width) {
  constexpr std::size_t narrowest = 20;  // Less than that is no column to read in.
  if (width < indent + narrowest) {
    return std::string(text);
  }
  std::string lines;
  for (std::size_t most = 0; (most = beginningWithin(text, width - indent).bytes) < text.size();) {
    const std::size_t blank = text.substr(0, most + 1).rfind(' ');
    const std::size_t end = blank == std::string_view::npos || blank == 0 ? most : blank;
    lines.append(text.substr(0, end)).append("\n").append(indent, ' ');
    text.remove_prefix(std::min(text.find_first_not_of(' ', end), text.size()));
  }
  return lines.append(text);
}

std::string coloured(const std::string& text, std::string_view colour) {
  return colour.empty() ? text : std::string(colour) + text + "\x1b[0m";
}

std::string styled(Severity severity, const std::string& text, bool colour) {
  constexpr std::array<std::string_view, 4> colours{"", "\x1b[36m", "\x1b[33m", "\x1b[1;31m"};
  return coloured(text, colour ? colours[static_cast<std::size_t>(severity)] : "");
}

}  // namespace sentiq
