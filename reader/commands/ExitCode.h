// The program's exit codes, as its manual page lists them.
#pragma once

namespace sentiq {

enum ExitCode : int {
  exitGood = 0,
  exitDamaged = 1,  // Everything was read; some of it was damaged, unfinished or missing.
  exitFailed = 2,   // Wrong arguments, a file that cannot be read, output that cannot be written.
};

}  // namespace sentiq
