#include "reader/session/LogFileReader.h"

#include "reader/session/LogLine.h"

namespace sentiq {

LogFileReader::LogFileReader(LogFileInfo& file, std::size_t index, Keep keep)
    : file_(file), keep_(keep), raw_(file), entries_(file, index, keep) {}

void LogFileReader::feed(std::string_view bytes) {
  splitter_.feed(bytes, [this](const Line& line) { take(line); });
}

void LogFileReader::finish() {
  splitter_.finish([this](const Line& line) { take(line); });
}

void LogFileReader::take(const Line& line) {
  const bool furtherPiece = line.number == line_;  // Of an overlong line.
  bool good = false;
  text_.clear();
  if (furtherPiece) {
    text_ = line.text;
  } else {
    good = decoder_.decode(line.text, text_) != LineKind::Damaged && line.whole;
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
