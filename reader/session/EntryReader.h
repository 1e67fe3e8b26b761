// Puts the lines of one log together to entries, in the part of the session that they belong to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/session/CopyTracker.h"
#include "reader/session/HashSet.h"
#include "reader/session/LogLine.h"
#include "reader/session/LogSet.h"
#include "reader/session/PartList.h"

namespace sentiq {

class EntryReader {
 public:
  /// @param file whose damaged lines are counted; must outlive this object. @param index its place in the set.
  EntryReader(LogFileInfo& file, std::size_t index, Keep keep) : file_(file), index_(index), keep_(keep) {}

  /// @param number of the line.
  void take(const LogLine& line, std::uint64_t number);
  void takeRecord(std::string_view text, std::uint64_t number);
  void takeDamaged(std::string_view bytes, std::uint64_t number);

  /// Whether a line that only a log of this program holds has come.
  bool isKnown() const { return known_; }

  std::vector<SessionPart> takeOut();

 private:
  void beginPart();
  void setRole(const LogLine& line);
  LogEntry& add(SessionPart& part, std::string_view text);
  void addDamaged(std::string_view what, std::string_view bytes);
  void continueEntry(std::string_view text);
  void addMessage(const LogLine& line);
  void takeHeader(const LogLine& line);
  void takeEvent(std::string_view text);
  bool addEvent(std::string_view text, bool headless);

  LogFileInfo& file_;
  std::size_t index_;
  Keep keep_;
  PartList parts_;
  // The current part's events by the hash of their text. Copies of an event are byte for byte alike; that two others
  // among a million share a hash of 63 bits is one chance in 15 million.
  HashSet seen_;
  CopyTracker copies_;
  std::uint64_t line_ = 0;
  std::optional<LogTime> time_;  // Of the last line that had one.
  bool known_ = false;
  bool lastContinues_ = false;    // Whether a line without time stamp belongs to the last entry.
  std::uint64_t damagedRun_ = 0;  // Damaged lines that the last entry stands for.
  std::size_t damagedHead_ = 0;   // How much of its text is of the first one.
};

}  // namespace sentiq
