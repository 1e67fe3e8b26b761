// `sentiq-logs decode`.
#pragma once

#include <atomic>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "reader/input/Progress.h"

namespace sentiq {

struct DecodeOptions {
  std::vector<std::string> files;  // "-" is standard input, and so is an empty list.
  bool follow = false;
  std::optional<bool> names;  // Whether each line begins with its file's name; by default with more than one file.
  bool colour = false;
};

/// Writes the logs' lines as plain text. With follow it returns only once stop is set or out fails.
/// @return the program's exit code.
int decodeLogs(const DecodeOptions& options, std::istream& standardInput, std::ostream& out, std::ostream& messages,
               Progress& progress, const std::atomic<bool>& stop);

}  // namespace sentiq
