// Reads a file or standard input from its beginning to its end.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "reader/input/Progress.h"

namespace sentiq {

/// Hands on the input's bytes in large blocks.
/// @param name a path in UTF-8, or "-" for standard input.
/// @return false when the input cannot be opened or not be read to its end.
bool readInput(const std::string& name, std::istream& standardInput, Progress& progress,
               const std::function<void(std::string_view)>& visit);

}  // namespace sentiq
