// Reads a file or standard input from its beginning to its end.
#pragma once

#include <atomic>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "reader/input/Progress.h"

namespace sentiq {

/// Hands on the input's bytes in large blocks, in UTF-8 and without a byte order mark.
/// @param name a path in UTF-8, or "-" for standard input.
/// @param standardInput read when it is not std::cin, of which the bytes are taken without it.
/// @param stop ends the reading, also one that waits for a pipe; so does a visit that returns false.
/// @return false when the input cannot be opened or not be read as far as was asked.
bool readInput(const std::string& name, std::istream& standardInput, Progress& progress, const std::atomic<bool>& stop,
               const std::function<bool(std::string_view)>& visit);

}  // namespace sentiq
