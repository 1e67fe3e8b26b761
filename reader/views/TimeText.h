// Parts of a local time, each in one form.
#pragma once

#include <chrono>
#include <string>

#include "reader/input/LogTime.h"

namespace sentiq {

/// 2026-11-24
inline std::string dateText(Instant time, std::chrono::minutes offset) {
  return showTime(time, offset).substr(0, 10);
}

/// 2026-11-24 14:30
inline std::string minuteText(Instant time, std::chrono::minutes offset) {
  return showTime(time, offset).substr(0, 16);
}

/// 14:30:22.157
inline std::string clockText(Instant time, std::chrono::minutes offset) {
  return showTime(time, offset).substr(11);
}

/// 14:30:22
inline std::string secondText(Instant time, std::chrono::minutes offset) {
  return showTime(time, offset).substr(11, 8);
}

}  // namespace sentiq
