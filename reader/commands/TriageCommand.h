// `sentiq-logs triage`: judges all sessions below some folders, on all processor cores.
//
// The unit of work is a folder with the logs that lie directly in it: those of one session, most often. What a
// judgement needs of each session stays in memory until all are read, since an initial log in another folder may tell
// of it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "reader/commands/PageFile.h"
#include "reader/commands/Streams.h"

namespace sentiq {

struct TriageOptions {
  std::vector<std::string> inputs;
  std::optional<std::size_t> top{};  // Groups; 0 for all. Without it a page has all, and the table ten.
  bool json = false;                 // One object for each session instead of the table.
  PageRequest page{};                // Instead of both, when it has a path.
};

/// Once stopped, shows what is known so far.
void triageLogs(const TriageOptions& options, const Streams& streams);

}  // namespace sentiq
