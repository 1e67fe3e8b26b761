// What every page says of itself, and allows itself.
#pragma once

#include <chrono>
#include <initializer_list>
#include <string>
#include <string_view>

#include "reader/input/LogTime.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {

struct PageOptions {
  Instant made;
  std::chrono::minutes offset{};  // Of local time there.
  std::string program;            // Name and version.
  bool redacted = false;          // Stand-ins have the places of names.
};

/// @param allowed styles and scripts, whose hashes the page's policy names.
Places placesOf(const PageOptions& options, std::initializer_list<std::string_view> allowed);

}  // namespace sentiq
