// Words of a text in any script, in UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace sentiq {

/// With small letters for the capital ones of the Latin, Greek and Cyrillic scripts. Each byte keeps its place.
std::string smallLetters(std::string_view text);

/// Whether no word goes on there. Letters and digits make one, an underscore does not; in scripts that write no blanks
/// between words each character is one.
bool isWordBoundary(std::string_view text, std::size_t at);

/// The next such place after that one.
std::size_t nextWordBoundary(std::string_view text, std::size_t at);

}  // namespace sentiq
