#include "startup/ProcessExit.h"

// The interface with child moved into a folder and a namespace of its own.
#if __has_include(<boost/process/v1/child.hpp>)
#include <boost/process/v1/child.hpp>
namespace boost_process = boost::process::v1;
#else
#include <boost/process/child.hpp>
namespace boost_process = boost::process;
#endif

namespace sentiq {

void waitForProcessExit(std::uint32_t pid, std::uint32_t& exitCode) {
  boost_process::pid_t id = pid;  // NOLINT(misc-const-correctness): Boost 1.74 takes nothing else.
  boost_process::child process(id);
  process.wait();
  exitCode = static_cast<std::uint32_t>(process.exit_code());
}

}  // namespace sentiq
