// What every command writes to beside files.
#pragma once

#include <atomic>
#include <cstddef>
#include <iosfwd>

#include "reader/commands/Messages.h"

namespace sentiq {

/// All of it outlives the command.
struct Streams {
  std::ostream& out;  // Throws std::ios_base::failure when it cannot be written.
  Messages& messages;
  const std::atomic<bool>& stop;     // The user asks the command to end.
  std::ostream* progress = nullptr;  // A terminal's, for what takes long; none when it would disturb.
  bool outIsTerminal = false;
  bool colour = false;
  bool redact = false;    // What is written has stand-ins in place of names; messages may have not.
  std::size_t width = 0;  // Of out, in columns; 0 when it is no terminal.
};

}  // namespace sentiq
