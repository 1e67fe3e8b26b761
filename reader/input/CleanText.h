// Log text may hold any bytes; what goes to a terminal, into JSON or into a page must be text.
#pragma once

#include <string>
#include <string_view>

namespace sentiq {

/// Whether the bytes are UTF-8 without control characters other than tab and carriage return.
bool isCleanText(std::string_view bytes);

/// The same text with U+FFFD in place of whatever is not clean, one for each byte; line feeds are kept.
std::string cleanText(std::string_view bytes);

}  // namespace sentiq
