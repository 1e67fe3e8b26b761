// The program's entry: started by Canvix, without a window, silent. Any standard exception ends the run with 0.
#include <windows.h>

#include <shellapi.h>

#include <exception>
#include <string>
#include <vector>

#include "startup/ApplicationNames.h"
#include "startup/CrashReporter.h"
#include "startup/FaultHandler.h"
#include "startup/LaunchOptions.h"
#include "startup/Tasks.h"
#include "startup/UnhandledException.h"

namespace {

// The array that the system allocates is not released: the program lives for one run.
std::vector<std::wstring> splitCommandLine(const wchar_t* commandLine) {
  int count = 0;
  wchar_t** const tokens = CommandLineToArgvW(commandLine, &count);
  return tokens == nullptr ? std::vector<std::wstring>{} : std::vector<std::wstring>(tokens, tokens + count);
}

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, wchar_t* commandLine, int /*show*/) {
  // No box of the system's either: for a log on a drive without a medium, say, or at a fault, which is the crash
  // client's.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  sentiq::passUnhandledToSystem();
  try {
    // An empty command line is split into the program's own path, which the parser then rejects.
    const sentiq::CommandLine parsed = sentiq::parseCommandLine(splitCommandLine(commandLine));
    if (parsed.exitCode) {
      return *parsed.exitCode;
    }
    AddVectoredExceptionHandler(/*First=*/1, sentiq::recordExceptionCode);
    sentiq::initCrashReporter(/*reserved=*/0, parsed.crashReporterDetached);
    sentiq::runTasks(parsed.options);
    sentiq::terminateCrashReporter();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): the run ends with 0.
  } catch (...) {
    std::rethrow_exception(std::current_exception());
  }
  // The threads of a start that failed still run, and one of them may hold a lock that exit() or the unloading of DLLs
  // waits for. So nothing is waited for. That tears no line: each is one write.
  TerminateProcess(GetCurrentProcess(), 0);
  return 0;
}
