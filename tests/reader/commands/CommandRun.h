// A command with streams of its own.
#pragma once

#include <functional>

#include "reader/commands/Streams.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

inline const std::string entry = "2025-01-31T14:05:09.042+0100 [SYSTEM] [INFO]: a";

struct Ran {
  int exitCode = 0;
  std::string out;
  std::string messages;
};

/// @param terminal whether it is made to think that it writes to one.
inline Ran ran(const std::function<void(const Streams&)>& command, const std::string& input = "", bool terminal = false,
               bool stopped = false) {
  std::istringstream in(input);
  std::ostringstream out, said;
  Messages messages(said);
  const std::atomic<bool> stop{stopped};
  command({.in = in, .out = out, .messages = messages, .stop = stop, .outIsTerminal = terminal});
  return {messages.exitCode(), out.str(), said.str()};
}

}  // namespace sentiq
