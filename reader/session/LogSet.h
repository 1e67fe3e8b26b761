// The logs that a command was given, read and taken apart into sessions.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <iosfwd>
#include <string>
#include <vector>

#include "reader/session/KnownNames.h"
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
  std::vector<LogFileInfo> files;    // Logs of this program, and what cannot be read.
  std::vector<Session> sessions;     // Oldest first; none when there was nothing to read.
  std::vector<Session> told;         // What initial logs tell of sessions that are not in the set, under their ids.
  std::vector<std::string> foreign;  // Files that are no logs of this program and were named by the user.
  std::vector<std::string> leftOut;  // So, found in a folder.
  bool stopped = false;              // Before all was read.
};

/// How much of the logs is kept, from little to all.
enum class Keep : std::uint8_t {
  // What follows, but of records in a row only the first, the last and the lowest ones, and other events not at all.
  Judgement,
  WhatMatters,  // Events without a meaning are only counted.
  AllEvents,
  RawLines,
};

struct LogInput {
  std::string name;         // A path in UTF-8, or "-" for standard input.
  bool fromFolder = false;  // Not named by the user.
};

/// The files that inputs stand for: themselves, or of a folder those in it and below it whose names or contents are
/// those of logs (*.log, *.log.1, *.txt), folder by folder, each once. Links to folders are not followed. A folder that
/// cannot be read is in the result by itself, as no file to read.
/// @param stop ends the search with what is found by then.
std::vector<LogInput> findLogs(const std::vector<std::string>& inputs, const std::atomic<bool>& stop = false);

/// Whether a line that only a log of the program holds is among the file's first ones. @param name a path in UTF-8.
bool beginsAsLog(const std::string& name);

/// A session's header begins it; what stands before a file's first header belongs to a session without a name, one for
/// each folder. The same logs twice are one session. Memory is proportional to what is distinct in the logs: copies of
/// events, runs of damaged lines and what goes beyond 64 KB of one message are counted or cut, visibly. Time grows in
/// line with the bytes. Several threads may read at the same time.
/// @param stop ends the reading with what is known by then. @param names when given, learns what all lines name.
/// @param progress a terminal to show it on.
LogSet readLogs(const std::vector<LogInput>& files, Keep keep, const std::atomic<bool>& stop,
                KnownNames* names = nullptr, std::ostream* progress = nullptr);

/// Adds to each session what an initial log tells of it, takes out sessions that are there twice (with what the second
/// one adds), and puts the oldest first. What is about none of them stays in told.
void joinSets(std::vector<Session>& sessions, std::vector<Session>& told);

}  // namespace sentiq
