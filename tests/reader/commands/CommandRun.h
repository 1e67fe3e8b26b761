// A command with streams of its own.
#pragma once

#include <cstdio>
#include <functional>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "reader/commands/Streams.h"
#include "tests/reader/SampleLogs.h"

namespace sentiq {

inline const std::string entry = "2025-01-31T14:05:09.042+0100 [SYSTEM] [INFO]: a";

struct Ran {
  int exitCode = 0;
  std::string out;
  std::string messages;
};

/// The program's standard input from now on.
inline void setInput(const std::string& bytes) {
  std::FILE* const file = std::tmpfile();
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::rewind(file);
#ifdef _WIN32
  _dup2(_fileno(file), _fileno(stdin));
#else
  ::dup2(::fileno(file), STDIN_FILENO);
#endif
  std::fclose(file);
}

/// @param terminal whether it is made to think that it writes to one.
inline Ran ran(const std::function<void(const Streams&)>& command, const std::string& input = "", bool terminal = false,
               bool stopped = false) {
  setInput(input);
  std::ostringstream out, said;
  Messages messages(said);
  const std::atomic<bool> stop{stopped};
  command({.out = out, .messages = messages, .stop = stop, .outIsTerminal = terminal});
  return {messages.exitCode(), out.str(), said.str()};
}

}  // namespace sentiq
