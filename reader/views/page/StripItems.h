// What the strip shows: each thing that lasted or happened in the last minutes around the end, once.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "reader/views/page/PageSession.h"

namespace sentiq {

struct StripItem {
  std::string text;
  Severity severity = Severity::Info;
  std::optional<std::size_t> entry{};  // That tells most of it.
  std::vector<TimeRange> spans{};      // At least one; a moment where both times are one.
  std::vector<std::size_t> told{};     // Every entry that tells of it.

  Instant time() const { return spans.front().from; }
};

struct StripItems {
  Instant first;
  Instant last;
  std::vector<StripItem> items{};      // In order of time.
  std::vector<StripItem> unrelated{};  // Warnings and errors without a meaning for the session.
};

/// Nothing when the logs do not tell when the session was.
std::optional<StripItems> stripItems(const PageSession& page);

}  // namespace sentiq
