// One log's way from its bytes to plain lines, with the line ends that they came with.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

#include "reader/commands/Messages.h"
#include "reader/input/LineSplitter.h"
#include "reader/input/LogDecoding.h"
#include "reader/session/KnownNames.h"

namespace sentiq {

/// What the logs of one run have to say, collected so that the stream behind it sees few and large writes.
struct DecodeOutput {
  std::ostream& stream;
  bool harmless = false;        // What is no text, or steers terminals, is replaced; else all bytes are passed on.
  KnownNames* names = nullptr;  // When given, learns what each line names, and puts stand-ins there.
  std::string block{};
  bool lineIsOpen = false;  // The last line, by whichever log, has no line end so far.

  void flush();
};

class DecodeStream {
 public:
  /// @param name what messages call the log. @param prefix stands before each line of output.
  /// Output and messages must outlive this object. One thread at a time.
  DecodeStream(std::string name, std::string prefix, DecodeOutput& out, Messages& messages);

  void feed(std::string_view bytes);

  /// The log ends here: passes on what has no line end. What is fed later is a new log.
  void finish();

 private:
  void write(const Line& line);
  LineKind decode(const Line& line);

  std::string name_;
  std::string prefix_;
  DecodeOutput& out_;
  Messages& messages_;
  LineSplitter splitter_;
  LineDecoder decoder_;
  std::uint64_t lastNumber_ = 0;
};

}  // namespace sentiq
