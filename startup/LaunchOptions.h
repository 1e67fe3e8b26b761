// What Canvix asks for on the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sentiq {

/// Identifiers are UTF-8; paths are wide and arrive as they were given. Empty means not given.
struct LaunchOptions {
  std::string analyticsIdentifier;
  std::wstring logPath;
  std::wstring sessionLogPath;
  std::wstring watchdogLogPath;
  std::wstring initialWatchdogLogPath;
  std::wstring forceQuitLogPath;
  std::wstring reservedPath;  ///< Always empty; carried along.
  std::int32_t pid = 0;
  std::string lastAbnormalSessionId;
  bool encodeLogs = true;
};

struct CommandLine {
  std::optional<std::int32_t> exitCode;  ///< Set when the run ends before it begins; the rest then means nothing.
  LaunchOptions options;
  bool crashReporterDetached = false;
};

/// @param tokens every token of the command line, without the program's name: each must belong to an option.
/// Throws a standard exception when they do not parse (unknown option, bad or missing value, positional
/// token). Changes the global C++ locale while it runs, so it is called before there is a second thread.
CommandLine parseCommandLine(const std::vector<std::wstring>& tokens);

}  // namespace sentiq
