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
  std::vector<Session> told;         // What initial logs tell of sessions that are not in the set, under their ids.
  std::vector<std::string> leftOut;  // Files of a folder that are no logs of this program.
};

/// How much of the logs is kept, from little to all.
enum class Keep : std::uint8_t {
  // What follows, but of records in a row only the first, the last and the lowest ones, and other events not at all.
  Judgement,
  WhatMatters,  // Events that the table does not know are only counted, and records are not put into words.
  AllEvents,
  RawLines,
};

struct LogInput {
  std::string name;         // A path in UTF-8, or "-" for standard input.
  bool fromFolder = false;  // Not named by the user: it counts only when it holds log lines.
};

/// The files that inputs stand for: themselves, or of a folder those named "*.log" in it and below it, folder by
/// folder. Links to folders are not followed. A folder that cannot be read is in the result by itself, as no file to
/// read.
std::vector<LogInput> findLogs(const std::vector<std::string>& inputs);

/// A session's header begins it; what stands before a file's first header belongs to a session without a name, one for
/// each folder. Files that cannot be read are in the result, marked so. Memory is proportional to what is distinct in
/// the logs: copies of events, runs of damaged lines and what goes beyond 64 KB of one message are counted or cut,
/// visibly. Several threads may read at the same time, each with streams and progress of its own.
LogSet readLogs(const std::vector<LogInput>& files, std::istream& standardInput, Progress& progress, Keep keep);

/// Adds to each session what an initial log tells of it; what is about none of them stays.
void tell(std::vector<Session>& sessions, std::vector<Session>& told);

}  // namespace sentiq
