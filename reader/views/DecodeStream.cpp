#include "reader/views/DecodeStream.h"

#include <cstddef>
#include <cstring>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

namespace sentiq {
namespace {

constexpr std::size_t blockSize = 64U << 10;

}  // namespace

OutputBlock::OutputBlock(std::ostream& out) : out_(out), block_(blockSize) {}

char* OutputBlock::room(std::size_t bytes) {
  if (block_.size() - used_ < bytes) {
    flush();
    if (block_.size() < bytes) {
      block_.resize(bytes);
    }
  }
  return block_.data() + used_;
}

void OutputBlock::append(std::string_view text) {
  text.copy(room(text.size()), text.size());
  advance(text.size());
}

void OutputBlock::beginLine() {
  if (used_ > 0 ? block_[used_ - 1] != '\n' : !flushedLine_) {
    append("\n");
  }
}

bool OutputBlock::good() const {
  return out_.good();
}

void OutputBlock::flush() {
  if (used_ > 0) {
    flushedLine_ = block_[used_ - 1] == '\n';
  }
  out_.write(block_.data(), static_cast<std::streamsize>(used_));
  out_.flush();
  used_ = 0;
}

DecodeStream::DecodeStream(std::string name, std::string prefix, OutputBlock& out, std::ostream& messages)
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
  if (!furtherPiece) {
    out_.beginLine();
    out_.append(prefix_);
  }
  LineDecoder::Result result{LineKind::Damaged, 0};
  if (line.whole) {
    result = decoder_.decode(line.text, out_.room(LineDecoder::roomFor(line.text.size())));
    out_.advance(result.size);
  }
  if (result.kind != LineKind::Encoded) {
    out_.append(line.text);
  }
  out_.append(line.end);
  if (result.kind == LineKind::Damaged && !furtherPiece) {
    report(line);
  }
}

void DecodeStream::report(const Line& line) {
  ++damagedLines_;
  // One piece, since standard error is written through piece by piece.
  messages_ << "sentiq-logs: " + name_ + ':' + std::to_string(line.number) +
                   (line.whole ? ": damaged line, passed on as it is\n"
                               : ": unfinished or overlong line, passed on as it is\n");
}

}  // namespace sentiq
