#include "reader/session/LogFileReader.h"

#include "reader/session/LogLine.h"

namespace sentiq {

LogFileReader::LogFileReader(LogFileInfo& file, std::size_t index, Keep keep, KnownNames* names)
    : file_(file), keep_(keep), names_(names), entries_(file, index, keep) {
  file_.lines = 0;
}

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
  const bool furtherPiece = line.number == file_.lines;  // Of an overlong line.
  DecodedLine decoded{LineKind::Damaged, line.text};
  if (!furtherPiece) {
    decoded = decoder_.decode(line.text);
    const std::size_t last = decoded.kind == LineKind::Damaged ? line.text.rfind(zeros) : std::string_view::npos;
    if (last != std::string_view::npos && last + zeros.size() < line.text.size()) {
      takeKeptRecords();
      entries_.takeDamaged(names_ == nullptr ? line.text.substr(0, last) : leftOut, line.number);
      decoded = decoder_.decode(line.text.substr(last + zeros.size()));
    }
  }
  const bool good = decoded.kind != LineKind::Damaged && line.whole;
  std::string_view text = decoded.text;
  if (names_ != nullptr && good) {
    names_->learnLine(text);
  } else if (names_ != nullptr) {
    text = leftOut;
  }
  file_.lines = line.number;
  if (keep_ == Keep::RawLines) {
    keepRaw(text);
  }
  if (furtherPiece || (keep_ == Keep::Judgement && good && kept_.keep(text, line.number))) {
    return;
  }
  takeKeptRecords();
  if (good) {
    entries_.take(readLine(text), line.number);
  } else {
    entries_.takeDamaged(text, line.number);
  }
}

// Of a large file the last ones.
void LogFileReader::keepRaw(std::string_view text) {
  constexpr std::size_t mostBytes = 1U << 20;
  file_.rawLines.emplace_back(text);
  rawBytes_ += sizeof(std::string) + text.size();
  while (rawBytes_ > mostBytes) {
    rawBytes_ -= sizeof(std::string) + file_.rawLines.front().size();
    file_.rawLines.pop_front();
    ++file_.rawLeftOut;
  }
}

void LogFileReader::takeKeptRecords() {
  for (const auto& [line, text] : kept_.takeOut()) {
    entries_.takeRecord(text, line);
  }
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
