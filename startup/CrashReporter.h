// The crash-reporting client, under this program's identity. Failures of it never stop the program. Main thread only.
#pragma once

#include <cstdint>

namespace sentiq {

/// @param reserved handed on to the client. @param detached puts the client into its detached mode first.
void initCrashReporter(std::uintptr_t reserved, bool detached);

/// Does nothing unless initCrashReporter ended without an exception, and nothing the second time.
void terminateCrashReporter();

}  // namespace sentiq
