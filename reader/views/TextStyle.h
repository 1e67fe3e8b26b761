// Numbers and lines of text; columns, line breaks and colours of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reader/events/Meaning.h"

namespace sentiq {

/// In one line that steers no terminal: names of files may hold any bytes.
std::string harmlessLine(std::string_view bytes);

/// Such lines in one.
std::string joined(const std::vector<std::string>& items, std::string_view separator = ", ");

/// "1 session", "2 sessions"
std::string countText(std::size_t count, const std::string& what);

/// With so many digits behind the point; a half is rounded away from zero, which has no sign.
std::string showNumber(double number, int decimals);

/// Columns that UTF-8 text takes.
std::size_t shownWidth(std::string_view text);

/// Filled up with blanks to so many columns.
std::string padded(std::string_view text, std::size_t width);

/// So, with the blanks before it.
std::string padded(std::size_t width, std::string_view text);

/// Cut at its end, with an ellipsis, when it takes more columns. @param width 0 cuts nothing.
std::string fitted(std::string_view text, std::size_t width);

/// Broken between words, within words longer than a line; further lines begin with so many blanks.
/// @param width of a line, the first one's beginning included, which has as many columns. 0 breaks nothing.
std::string wrapped(std::string_view text, std::size_t indent, std::size_t width);

/// @param colour the terminal's sequence for it; empty for none.
std::string coloured(const std::string& text, std::string_view colour);

/// In the colour of a severity, when colour is wanted.
std::string styled(Severity severity, const std::string& text, bool colour);

}  // namespace sentiq
