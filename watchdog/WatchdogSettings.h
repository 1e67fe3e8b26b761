#pragma once

#include <cstdint>
#include <string>

namespace sentiq {

/// Identifiers are UTF-8.
struct WatchdogSettings {
  std::uint32_t processId = 0;  // Of the monitored application.
  std::wstring watchdogLogPath;
  std::string sessionId;
  std::wstring initialWatchdogLogPath;
  std::string lastAbnormalSessionId;  // Empty when the session before ended normally.
  bool encodeLogs = false;
};

}  // namespace sentiq
