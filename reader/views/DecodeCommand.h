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
  std::vector<std::string> files;             // "-" is standard input, and so is an empty list.
  const std::atomic<bool>* follow = nullptr;  // When given, goes on as the files grow, until it is set or out fails.
  std::optional<bool> names;  // Whether each line begins with its file's name; by default with more than one file.
  bool colour = false;
};

/// Writes the logs' lines as plain text.
/// @return the program's exit code.
int decodeLogs(DecodeOptions options, std::istream& standardInput, std::ostream& out, std::ostream& messages,
               Progress& progress);

}  // namespace sentiq
