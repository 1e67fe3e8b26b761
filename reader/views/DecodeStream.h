// One log's way through `decode`: bytes in, plain lines out, in the order and with the line ends that they came with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "reader/input/LineSplitter.h"
#include "reader/input/LogDecoding.h"

namespace sentiq {

/// Collects output in one block of memory, so that the stream behind it sees few and large writes. Shared by
/// the logs of one run.
class OutputBlock {
 public:
  explicit OutputBlock(std::ostream& out);

  /// Where so many bytes may be written; advance() then says how many were.
  char* room(std::size_t bytes);
  void advance(std::size_t bytes) { used_ += bytes; }
  void append(std::string_view text);
  /// Ends a line that another log, or the same one before it was emptied, left unfinished.
  void beginLine();
  void flush();
  /// False once the stream behind does not take any more.
  bool good() const;

 private:
  std::ostream& out_;
  std::vector<char> block_;
  std::size_t used_ = 0;
  bool flushedLine_ = true;  // Whether the last byte written was a line end.
};

class DecodeStream {
 public:
  /// @param name what messages call the log. @param prefix stands before each line of output.
  /// Output and messages must outlive this object. One thread at a time.
  DecodeStream(std::string name, std::string prefix, OutputBlock& out, std::ostream& messages);

  void feed(std::string_view bytes);

  /// The log ends here: passes on what has no line end. What is fed later is a new log.
  void finish();

  /// Damaged and unfinished lines so far.
  std::uint64_t damagedLines() const { return damagedLines_; }

 private:
  void write(const Line& line);
  void report(const Line& line);

  std::string name_;
  std::string prefix_;
  OutputBlock& out_;
  std::ostream& messages_;
  LineSplitter splitter_;
  LineDecoder decoder_;
  std::uint64_t damagedLines_ = 0;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace sentiq
