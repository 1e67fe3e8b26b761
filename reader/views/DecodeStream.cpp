#include "reader/views/DecodeStream.h"

#include <cstddef>
#include <ostream>
#include <utility>

namespace sentiq {

void DecodeOutput::flush() {
  stream.write(block.data(), static_cast<std::streamsize>(block.size()));
  stream.flush();
  block.clear();
}

DecodeStream::DecodeStream(std::string name, std::string prefix, DecodeOutput& out, std::ostream& messages)
    : name_(std::move(name)), prefix_(std::move(prefix)), out_(out), messages_(messages) {}

void DecodeStream::feed(std::string_view bytes) {
  splitter_.feed(bytes, [this](const Line& line) { write(line); });
}

void DecodeStream::finish() {
  splitter_.finish([this](const Line& line) { write(line); });
  decoder_ = {};
  lastNumber_ = 0;
}

void DecodeStream::write(const Line& line) {
  const bool furtherPiece = line.number == lastNumber_;  // Of an overlong line.
  lastNumber_ = line.number;
  std::string& block = out_.block;
  if (!furtherPiece) {
    block += out_.lineIsOpen ? "\n" : "";
    block += prefix_;
  }
  LineDecoder::Result result{LineKind::Damaged, 0};
  if (line.whole) {
    const std::size_t begin = block.size();
    block.resize(begin + LineDecoder::roomFor(line.text.size()));
    result = decoder_.decode(line.text, block.data() + begin);
    block.resize(begin + result.size);
  }
  if (result.kind != LineKind::Encoded) {
    block += line.text;
  }
  block += line.end;
  out_.lineIsOpen = line.end.empty();
  if (constexpr std::size_t enough = 64U << 10; block.size() >= enough) {
    out_.flush();
  }
  if (result.kind == LineKind::Damaged && !furtherPiece) {
    damaged_ = true;
    // One piece, since standard error is written through piece by piece.
    messages_ << "sentiq-logs: " + name_ + ':' + std::to_string(line.number) +
                     (line.whole ? ": damaged line, passed on as it is\n"
                                 : ": unfinished or overlong line, passed on as it is\n");
  }
}

}  // namespace sentiq
