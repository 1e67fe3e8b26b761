// `sentiq-logs decode`: bytes in, plain lines out, in the order and with the line ends that they came with.
#pragma once

#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/input/LineSplitter.h"
#include "reader/input/LogDecoding.h"
#include "reader/input/Progress.h"

namespace sentiq {

struct DecodeOptions {
  std::vector<std::string> files;             // "-" is standard input, and so is an empty list.
  const std::atomic<bool>* follow = nullptr;  // When given, goes on as the files grow, until it is set or out fails.
  std::optional<bool> names{};  // Whether each line begins with its file's name; by default with more than one file.
  bool colour = false;
};

/// Writes the logs' lines as plain text.
/// @return the program's exit code.
int decodeLogs(DecodeOptions options, std::istream& standardInput, std::ostream& out, std::ostream& messages,
               Progress& progress);

/// What the logs of one run have to say, collected so that the stream behind it sees few and large writes.
struct DecodeOutput {
  std::ostream& stream;
  std::string block{};
  bool lineIsOpen = false;  // The last line, by whichever log, has no line end so far.

  void flush();
};

/// One log's way through it.
class DecodeStream {
 public:
  /// @param name what messages call the log. @param prefix stands before each line of output.
  /// Output and messages must outlive this object. One thread at a time.
  DecodeStream(std::string name, std::string prefix, DecodeOutput& out, std::ostream& messages);

  void feed(std::string_view bytes);

  /// The log ends here: passes on what has no line end. What is fed later is a new log.
  void finish();

  /// Whether a line so far was damaged or unfinished.
  bool isDamaged() const { return damaged_; }

 private:
  void write(const Line& line);

  std::string name_;
  std::string prefix_;
  DecodeOutput& out_;
  std::ostream& messages_;
  LineSplitter splitter_;
  LineDecoder decoder_;
  bool damaged_ = false;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace sentiq
