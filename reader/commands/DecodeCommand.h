// `sentiq-logs decode`: logs as plain text, in the order in which they come.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "reader/commands/Streams.h"

namespace sentiq {

struct DecodeOptions {
  std::vector<std::string> inputs;  // Files and folders; "-" is standard input, and so is an empty list.
  bool follow = false;              // Goes on as they grow, until stopped.
  std::optional<bool> names{};      // Whether each line begins with its file's name; by default with several files.
};

void decodeLogs(const DecodeOptions& options, const Streams& streams);

}  // namespace sentiq
