// Logs that are read while others write them, and those that appear meanwhile.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/commands/Streams.h"
#include "reader/session/LogSet.h"

namespace sentiq {

/// What is called on the thread that follows. Logs are numbered as they appear, from 0.
struct FollowHandlers {
  std::function<void(const LogInput& log)> appeared;
  std::function<void(std::size_t log, std::string_view bytes)> bytes;
  std::function<void(std::size_t log)> startedAnew;  // What comes next is another log at the same place.
  std::function<void()> roundDone;
};

/// Says which inputs are not there yet, and returns once it is stopped. What grows is looked at five times a second; of
/// very many logs the others so often that it costs a twentieth of a core at most. When a handler does not come back
/// after stop, since nobody takes the output, the process ends.
/// @param inputs files, which need not be there yet, and folders.
void followLogs(const std::vector<std::string>& inputs, const FollowHandlers& handlers, const Streams& streams);

}  // namespace sentiq
