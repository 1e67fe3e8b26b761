#include "startup/ProcessExit.h"

#include <cstdint>

#include <boost/process/child.hpp>

namespace sentiq {

void waitForProcessExit(std::uint32_t pid, std::uint32_t& exitCode) {
  boost::process::child process(static_cast<boost::process::pid_t>(pid));
  process.wait();
  exitCode = static_cast<std::uint32_t>(process.exit_code());
}

}  // namespace sentiq
