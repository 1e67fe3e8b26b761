#include "reader/commands/DecodeStream.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <utility>

#include "reader/input/CleanText.h"

namespace sentiq {

void DecodeOutput::flush() {
  stream.write(block.data(), static_cast<std::streamsize>(block.size()));
  stream.flush();
  block.clear();
}

DecodeStream::DecodeStream(std::string name, std::string prefix, DecodeOutput& out, Messages& messages)
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
  const LineKind kind = decode(line);
  block += line.end;
  out_.lineIsOpen = !block.ends_with('\n');
  if (constexpr std::size_t enough = 64U << 10; block.size() >= enough) {
    out_.flush();
  }
  if (kind == LineKind::Damaged && !furtherPiece) {
    messages_.say(name_ + ':' + std::to_string(line.number) +
                      (line.whole ? ": damaged line, " : ": unfinished or overlong line, ") +
                      (out_.names != nullptr ? "left out" : "passed on as it is"),
                  exitDamaged);
  }
}

LineKind DecodeStream::decode(const Line& line) {
  const auto [kind, bytes] = line.whole ? decoder_.decode(line.text) : DecodedLine{LineKind::Damaged, line.text};
  if (!out_.harmless && out_.names == nullptr) {
    out_.block += bytes;
    return kind;
  }
  std::string text(bytes);
  if (out_.names != nullptr && kind == LineKind::Damaged) {
    text = "(left out)";
  } else if (out_.names != nullptr) {
    out_.names->learnLine(text);
    text = out_.names->redactedLine(text);
  }
  if (out_.harmless) {
    text = cleanText(text);
    std::replace_if(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  }
  out_.block += text;
  return kind;
}

}  // namespace sentiq
