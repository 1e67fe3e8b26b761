#include "reader/commands/Messages.h"

#include <algorithm>
#include <ostream>
#include <string>

#include "reader/views/TextStyle.h"

namespace sentiq {

Messages::Messages(std::ostream& out) : out_(out) {}

void Messages::say(std::string_view text, ExitCode code) {
  const std::string line = "sentiq-logs: " + harmlessLine(text) + '\n';
  raise(code);
  const std::lock_guard lock(mutex_);
  out_ << line << std::flush;  // In one piece, since standard error is written through piece by piece.
}

void Messages::raise(ExitCode code) {
  const std::lock_guard lock(mutex_);
  code_ = std::max(code_, code);
}

ExitCode Messages::exitCode() const {
  const std::lock_guard lock(mutex_);
  return code_;
}

}  // namespace sentiq
