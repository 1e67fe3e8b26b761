#pragma once

#include <cstdint>

namespace sentiq {

/// Blocks, without a time-out, until the process has ended; never ends or signals it itself.
/// @param exitCode receives the process's exit code.
/// Throws Boost's process_error, a std::system_error: "OpenProcess() failed" or "wait error".
void waitForProcessExit(std::uint32_t pid, std::uint32_t& exitCode);

}  // namespace sentiq
