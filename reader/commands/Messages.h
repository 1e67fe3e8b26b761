// What a command says beside its output, and the exit code that follows from all of it.
#pragma once

#include <iosfwd>
#include <mutex>
#include <string_view>

#include "reader/commands/ExitCode.h"

namespace sentiq {

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
