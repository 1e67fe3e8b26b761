// What every page says of itself, and allows itself.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {

struct PageOptions {
  Instant made;
  std::chrono::minutes offset{};  // Of local time there.
  std::string program;            // Name and version.
  bool redacted = false;          // Stand-ins have the places of names.
};

/// The places of Head.html, but its title, and what the page says of itself.
/// @param styles and scripts that the page has, whose hashes its policy names.
Places placesOf(const PageOptions& options, const std::vector<std::string>& styles,
                const std::vector<std::string>& scripts);

}  // namespace sentiq
