#include "startup/UnhandledException.h"

#ifndef _MSC_VER
#include <windows.h>

#include <exception>
#endif

namespace sentiq {

void passUnhandledToSystem() {
#ifndef _MSC_VER
  std::set_terminate([] {
    // What Visual C++'s runtime library raises in its own abort.
    constexpr DWORD fatalAppExit = 0x40000015;
    RaiseException(fatalAppExit, EXCEPTION_NONCONTINUABLE, /*nNumberOfArguments=*/0, /*lpArguments=*/nullptr);
  });
#endif
}

}  // namespace sentiq
