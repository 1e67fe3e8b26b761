// The copies of the event log in a watchdog log: which channel, when, and from which event to which.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/session/LogLine.h"
#include "reader/session/Session.h"

namespace sentiq {

/// Takes the lines of one part of a log. Two copies may be written at the same time by turns (the exit and the display
/// going off, or two programs with one file): each event counts for the last copy of its channel.
class CopyTracker {
 public:
  /// @param line a message of the watchdog. @param copies gets a new one when the line is its title.
  void takeMessage(const LogLine& line, std::optional<LogTime> time, std::vector<ChannelCopy>& copies);

  /// @param copies those that takeMessage() has made; so below.
  void takeEvent(std::string_view channel, std::uint64_t recordId, std::optional<Instant> time,
                 std::vector<ChannelCopy>& copies);

  /// An event was not rendered, or its line is damaged.
  void takeLoss(std::vector<ChannelCopy>& copies);

 private:
  std::array<std::optional<std::size_t>, 2> open_;  // Indexes of the last copies of both channels.
  std::optional<std::size_t> last_;                 // Of the last one.
  bool powerTitle_ = false;                         // The next copy goes with sleep or the display.
};

}  // namespace sentiq
