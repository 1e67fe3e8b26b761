// The session log: one file, open for the writer's whole life.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "logging/LogFile.h"

namespace sentiq {

class SessionFileWriter {
 public:
  /// @param path UTF-8. Throws std::runtime_error ("Failed to open file for writing: " and the path).
  SessionFileWriter(const std::string& path, bool encodeLogs, LogFile::Mode mode);

  /// Appends one line, encoded unless encoding is off or neverEncode. Callable on any thread; throws nothing.
  /// @return whether the whole line was written.
  bool write(std::string_view text, bool withTimestamp, bool neverEncode);

 private:
  LogFile file_;
  const bool encodeLogs_;
  std::mutex mutex_;
};

}  // namespace sentiq
