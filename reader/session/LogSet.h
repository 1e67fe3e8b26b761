// The logs that a command was given, read and taken apart into sessions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <string>
#include <vector>

#include "reader/input/Progress.h"
#include "reader/session/Session.h"

namespace sentiq {

struct LogFileInfo {
  std::string name;  // As given, UTF-8.
  LogRole role = LogRole::Unknown;
  bool readable = true;
  std::uint64_t lines = 0;
  std::uint64_t damagedLines = 0;
  std::deque<std::string> rawLines;  // Decoded; the last ones, when asked for.
  std::uint64_t rawLeftOut = 0;
};

struct LogSet {
  std::vector<LogFileInfo> files;
  std::vector<Session> sessions;     // Oldest first; none when there was nothing to read.
  std::vector<std::string> leftOut;  // Files of a folder that are no logs of this program.
};

/// How much of the logs is kept; each includes what stands before it.
enum class Keep : std::uint8_t {
  WhatMatters,  // Events that the table does not know are only counted, and records are not put into words.
  AllEvents,
  RawLines,
};

/// @param inputs files, "-" or folders, whose "*.log" files count when they hold log lines.
/// A session's header begins it; what stands before a file's first header belongs to a session without a name, one for
/// each folder. Files that cannot be read are in the result, marked so. Memory is proportional to what is distinct in
/// the logs: copies of events, runs of damaged lines and what goes beyond 64 KB of one message are counted or cut,
/// visibly.
LogSet readLogs(const std::vector<std::string>& inputs, std::istream& standardInput, Progress& progress, Keep keep);

}  // namespace sentiq
