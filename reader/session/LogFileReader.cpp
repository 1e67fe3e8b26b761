#include "reader/session/LogFileReader.h"

#include "reader/session/LogLine.h"

namespace sentiq {

LogFileReader::LogFileReader(LogFileInfo& file, std::size_t index, Keep keep, KnownNames* names)
    : file_(file), keep_(keep), names_(names), raw_(file), entries_(file, index, keep) {}

void LogFileReader::feed(std::string_view bytes) {
  splitter_.feed(bytes, [this](const Line& line) { take(line); });
}

void LogFileReader::finish() {
  splitter_.finish([this](const Line& line) { take(line); });
}

void LogFileReader::take(const Line& line) {
  // Where a machine lost power while it wrote, zeros stay, and what is written later goes on behind them.
  constexpr std::string_view zeros("\0\0\0\0\0\0\0\0", 8);
  constexpr std::string_view leftOut = "(left out)";
  const bool furtherPiece = line.number == line_;  // Of an overlong line.
  bool good = false;
  std::string_view text = line.text;
  text_.clear();
  if (furtherPiece) {
    text_ = text;
  } else {
    const std::size_t last = text.rfind(zeros);
    if (last != std::string_view::npos && last + zeros.size() < text.size()) {
      takeKeptRecords();
      entries_.takeDamaged(names_ == nullptr ? text.substr(0, last) : leftOut, line.number);
      text.remove_prefix(last + zeros.size());
    }
    good = decoder_.decode(text, text_) != LineKind::Damaged && line.whole;
  }
  if (names_ != nullptr && good) {
    names_->learnLine(text_);
  } else if (names_ != nullptr) {
    text_ = leftOut;
  }
  line_ = file_.lines = line.number;
  if (keep_ == Keep::RawLines) {
    raw_.keep(text_);
  }
  if (furtherPiece || (keep_ == Keep::Judgement && good && kept_.keep(text_, line_))) {
    return;
  }
  takeKeptRecords();
  if (good) {
    entries_.take(readLine(text_), line_);
  } else {
    entries_.takeDamaged(text_, line_);
  }
}

void LogFileReader::takeKeptRecords() {
  kept_.takeOut([this](std::uint64_t line, const std::string& text) { entries_.takeRecord(text, line); });
}

std::vector<SessionPart> LogFileReader::takeOut() {
  takeKeptRecords();
  std::vector<SessionPart> parts = entries_.takeOut();
  for (const SessionPart& part : parts) {
    file_.role = part.role != LogRole::Unknown ? part.role : file_.role;
  }
  return parts;
}

}  // namespace sentiq
