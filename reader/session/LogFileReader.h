// One file's lines, put together to entries of the sessions that it tells of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "reader/input/LineSplitter.h"
#include "reader/input/LogDecoding.h"
#include "reader/input/LogTime.h"
#include "reader/session/CopyTracker.h"
#include "reader/session/KeptRecords.h"
#include "reader/session/LogLine.h"
#include "reader/session/LogSet.h"
#include "reader/session/RawLines.h"
#include "reader/session/Session.h"

namespace sentiq {

/// What a file holds of one session: what follows a header, up to the next one, but the records of another process. Of
/// an initial log, `session.id` is the id that its header names: that of the session before.
struct SessionPart {
  Session session;
  LogRole role = LogRole::Unknown;
};

/// One file, one thread.
class LogFileReader {
 public:
  /// @param file counted in and described; must outlive this object. @param index its place in the set.
  LogFileReader(LogFileInfo& file, std::size_t index, Keep keep);

  void feed(std::string_view bytes);

  /// The file ends here: takes what has no line end.
  void finish();

  /// Whether a line that only a log of this program holds has come.
  bool isKnown() const { return known_ || !kept_.empty(); }

  /// What came since the last call, or ever, in the file's order; none for a file without any entry. When reading goes
  /// on, the next part begins with the last one's role and names.
  std::vector<SessionPart> takeOut();

 private:
  void take(const Line& line);
  SessionPart& part();
  void beginPart();
  LogEntry& add(std::string_view text);
  void addDamaged(std::string_view what, std::string_view bytes);
  void takeText(std::string_view text);
  void continueEntry(std::string_view text);
  void takeEvent(std::string_view text);
  void addEvent(EventRecord event);
  void takeMetric(std::string_view text);
  void turnToProcess(const std::string& processId);
  void takeKeptRecords();
  void takeHeader(const LogLine& line);

  LineSplitter splitter_;
  LogFileInfo& file_;
  std::size_t index_;
  Keep keep_;
  std::vector<SessionPart> parts_;
  std::size_t current_ = 0;                                 // The part that the last header began.
  std::unordered_map<std::string, std::size_t> ofProcess_;  // The last part of each process id.
  // The current part's events by the hash of their text. Copies of an event are byte for byte alike; that two others
  // among a million share a hash of 64 bits is one chance in 30 million.
  std::unordered_set<std::size_t> seen_;
  CopyTracker copies_;
  LineDecoder decoder_;
  std::string text_;  // Of the line at hand.
  std::uint64_t line_ = 0;
  std::optional<LogTime> time_;  // Of the last line that had one.
  bool known_ = false;
  bool lastContinues_ = false;    // Whether a line without time stamp belongs to the last entry.
  std::uint64_t damagedRun_ = 0;  // Damaged lines that the last entry stands for.
  std::size_t damagedHead_ = 0;   // How much of its text is of the first one.
  KeptRecords kept_;
  RawLines raw_;
};

}  // namespace sentiq
