// Reads a file or standard input from its beginning to its end.
#pragma once

#include <atomic>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

namespace sentiq {

/// Hands on the input's bytes in large blocks, in UTF-8 and without a byte order mark.
/// @param name a path in UTF-8, or "-" for standard input. @param progress a terminal to show it on, or nullptr.
/// @param stop ends the reading, also one that waits for a pipe; so does a visit that returns false.
/// @return false when the input cannot be opened or not be read as far as was asked.
bool readInput(const std::string& name, std::ostream* progress, const std::atomic<bool>& stop,
               const std::function<bool(std::string_view)>& visit);

}  // namespace sentiq
