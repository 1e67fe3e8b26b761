// One file's bytes, taken apart into lines, decoded and understood.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "reader/input/LineSplitter.h"
#include "reader/input/LogDecoding.h"
#include "reader/session/EntryReader.h"
#include "reader/session/KeptRecords.h"
#include "reader/session/KnownNames.h"
#include "reader/session/LogSet.h"
#include "reader/session/PartList.h"

namespace sentiq {

/// One file, one thread.
class LogFileReader {
 public:
  /// @param file counted in and described; must outlive this object. @param index its place in the set.
  /// @param names when given, learns what each line names, must outlive this object, and damaged lines, in which
  /// names cannot be seen, are not kept.
  LogFileReader(LogFileInfo& file, std::size_t index, Keep keep, KnownNames* names = nullptr);

  void feed(std::string_view bytes);

  /// The file ends here: takes what has no line end.
  void finish();

  /// Whether a line that only a log of this program holds has come.
  bool isKnown() const { return entries_.isKnown() || !kept_.empty(); }

  /// What came since the last call, or ever, in the file's order; none for a file without any entry. When reading goes
  /// on, the next part begins with the last one's role and names.
  std::vector<SessionPart> takeOut();

 private:
  void take(const Line& line);
  void keepRaw(std::string_view text);
  void takeKeptRecords();

  LineSplitter splitter_;
  LogFileInfo& file_;
  Keep keep_;
  KnownNames* names_;
  LineDecoder decoder_;
  KeptRecords kept_;
  std::size_t rawBytes_ = 0;
  EntryReader entries_;
};

}  // namespace sentiq
