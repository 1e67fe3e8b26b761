#include "reader/commands/Decode.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <istream>
#include <ostream>
#include <thread>
#include <utility>

#include "reader/commands/ExitCode.h"
#include "reader/console/Console.h"
#include "reader/input/FollowedFile.h"
#include "reader/input/InputFile.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

// What stands before each line of each file; names are filled up to the longest, so that the lines stand in one column.
std::vector<std::string> linePrefixes(const DecodeOptions& options) {
  // Cyan, magenta, yellow, green: readable on dark and on light ground.
  constexpr std::array<std::string_view, 4> colours{"\x1b[36m", "\x1b[35m", "\x1b[33m", "\x1b[32m"};
  std::vector<std::string> prefixes(options.files.size());
  if (!options.names.value_or(options.files.size() > 1)) {
    return prefixes;
  }
  std::size_t width = 0;
  for (std::size_t i = 0; i < prefixes.size(); ++i) {
    const std::string& file = options.files[i];
    prefixes[i] = file == "-" ? "standard input" : textFromPath(pathFromText(file).filename());
    width = std::max(width, prefixes[i].size());
  }
  for (std::size_t i = 0; i < prefixes.size(); ++i) {
    prefixes[i] = coloured(padded(prefixes[i], width), options.colour ? colours[i % colours.size()] : "") + "  ";
  }
  return prefixes;
}

// Returns once the user or the output ends it.
void follow(const DecodeOptions& options, DecodeOutput& out, std::ostream& messages,
            std::vector<DecodeStream>& streams) {
  std::vector<FollowedFile> files;
  for (const std::string& file : options.files) {
    files.emplace_back(pathFromText(file));
  }
  while (!*options.follow && out.stream.good()) {
    for (std::size_t i = 0; i < files.size(); ++i) {
      files[i].poll({[&](std::string_view bytes) {
                       streams[i].feed(bytes);
                       out.flush();
                     },
                     [&] {
                       streams[i].finish();
                       messages << "sentiq-logs: " << options.files[i] << ": emptied or replaced, reading it anew\n";
                     }},
                    *options.follow);
    }
    messages.flush();
    constexpr std::chrono::milliseconds pollInterval{200};
    std::this_thread::sleep_for(pollInterval);
  }
}

}  // namespace

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
  LineKind kind = LineKind::Damaged;
  if (line.whole) {
    kind = decoder_.decode(line.text, block);
  } else {
    block += line.text;
  }
  block += line.end;
  out_.lineIsOpen = !block.ends_with('\n');
  if (constexpr std::size_t enough = 64U << 10; block.size() >= enough) {
    out_.flush();
  }
  if (kind == LineKind::Damaged && !furtherPiece) {
    damaged_ = true;
    // One piece, since standard error is written through piece by piece.
    messages_ << "sentiq-logs: " + name_ + ':' + std::to_string(line.number) +
                     (line.whole ? ": damaged line, passed on as it is\n"
                                 : ": unfinished or overlong line, passed on as it is\n");
  }
}

int decodeLogs(DecodeOptions options, std::istream& standardInput, std::ostream& out, std::ostream& messages,
               Progress& progress) {
  if (options.files.empty()) {
    options.files.emplace_back("-");
  }
  DecodeOutput output{out};
  const std::vector<std::string> prefixes = linePrefixes(options);
  std::vector<DecodeStream> streams;
  bool readable = true;
  for (std::size_t i = 0; i < prefixes.size(); ++i) {
    const std::string& file = options.files[i];
    DecodeStream& stream = streams.emplace_back(file, prefixes[i], output, messages);
    if (options.follow == nullptr) {
      if (!readInput(file, standardInput, progress, [&](std::string_view bytes) { stream.feed(bytes); })) {
        messages << "sentiq-logs: " << file << ": cannot be read\n";
        readable = false;
      }
      stream.finish();
    }
  }
  if (options.follow != nullptr) {
    follow(options, output, messages, streams);
  }
  bool damaged = false;
  for (DecodeStream& stream : streams) {
    stream.finish();
    damaged = damaged || stream.isDamaged();
  }
  output.flush();
  return !readable ? exitFailed : damaged ? exitDamaged : exitGood;
}

}  // namespace sentiq
