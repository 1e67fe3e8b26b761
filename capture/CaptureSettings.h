#pragma once

#include <cstdint>
#include <string>

#include "capture/MetricCode.h"

namespace sentiq {

/// Copied into the capture thread.
struct CaptureSettings {
  std::string analyticsIdentifier;  // UTF-8.
  std::uint32_t processId = 0;
  std::wstring logPath;           // Carried along; nothing writes this file.
  std::wstring sessionLogPath;    // Receives the records.
  std::wstring forceQuitLogPath;  // Carried along; nothing writes this file.
  std::wstring reservedPath;      // Always empty.
  bool encodeLogs = false;
  MetricSelection metrics = defaultMetricSelection();
};

}  // namespace sentiq
