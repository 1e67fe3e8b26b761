// Columns and colours of a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "reader/events/EventTable.h"

namespace sentiq {

/// Filled up with blanks to so many bytes.
std::string padded(std::string_view text, std::size_t width);

/// @param colour the terminal's sequence for it; empty for none.
std::string coloured(const std::string& text, std::string_view colour);

/// In the colour of a severity, when colour is wanted.
std::string styled(Severity severity, const std::string& text, bool colour);

}  // namespace sentiq
