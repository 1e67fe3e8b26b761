// Log text may hold any bytes; what goes to a terminal, into JSON or into a page must be text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sentiq {

/// Whether the bytes are UTF-8 without control characters other than tab and carriage return.
bool isCleanText(std::string_view bytes);

/// The same text with U+FFFD in place of whatever is not clean, one for each byte; line feeds are kept. Characters
/// that turn the direction of writing are left out, the other line separators of Unicode become blanks.
std::string cleanText(std::string_view bytes);

/// Clean, and when it is longer than that many bytes, cut at a character's end and marked with an ellipsis.
std::string shortText(std::string_view bytes, std::size_t longest);

/// Of the letters A to Z alone.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// With it, whether the text begins so.
bool beginsIgnoringCase(std::string_view text, std::string_view begin);

}  // namespace sentiq
