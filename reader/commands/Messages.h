// What a command says beside its output, and the exit code that follows from all of it.
#pragma once

#include <iosfwd>
#include <mutex>
#include <string_view>

namespace sentiq {

// Said here once, for the help, the manual page and whoever reads them.
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

/// Any thread.
class Messages {
 public:
  /// @param out standard error, most often; must outlive this object.
  explicit Messages(std::ostream& out);

  /// One line, after the program's name. Names of files in it may hold any bytes: they are made harmless.
  /// @param code the exit code will be at least this one.
  void say(std::string_view text, ExitCode code = exitGood);

  void raise(ExitCode code);
  ExitCode exitCode() const;

 private:
  mutable std::mutex mutex_;
  std::ostream& out_;
  ExitCode code_ = exitGood;
};

}  // namespace sentiq
