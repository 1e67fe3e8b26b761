// `sentiq-logs triage`: judges all sessions below some folders, on all processor cores.
//
// The unit of work is a folder with the logs that lie directly in it: those of one session, most often. What a
// judgement needs of each session stays in memory until all are read, since an initial log in another folder may tell
// of it.
#pragma once

#include <atomic>
#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace sentiq {

struct TriageOptions {
  std::vector<std::string> inputs;
  std::size_t top = 10;   // Groups; 0 for all.
  std::size_t width = 0;  // Of a line; 0 when there is no limit.
  bool json = false;      // One object for each session instead of the table.
};

/// Once stop is set, shows what is known so far.
/// @param terminal for the progress; nullptr for none.
/// @return the program's exit code.
int triageLogs(const TriageOptions& options, std::ostream& out, std::ostream& messages, std::ostream* terminal,
               const std::atomic<bool>& stop);

}  // namespace sentiq
