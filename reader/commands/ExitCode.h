// The program's exit codes: said here once, for the help, the manual page and whoever reads them.
#pragma once

#include <string_view>

namespace sentiq {

enum ExitCode : int {
  exitGood = 0,
  exitDamaged = 1,
  exitFailed = 2,
};

struct ExitCodeRow {
  ExitCode code;
  std::string_view meaning;
};
constexpr ExitCodeRow exitCodeRows[] = {
    {exitGood, "all was read"},
    {exitDamaged, "all was read, and something in it was damaged or unfinished"},
    {exitFailed,
     "wrong arguments, no logs found, a file that is no log or cannot be read, output that cannot be written, stopped "
     "before the end"},
};

}  // namespace sentiq
