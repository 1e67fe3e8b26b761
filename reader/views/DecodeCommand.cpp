#include "reader/views/DecodeCommand.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <istream>
#include <list>
#include <numeric>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "reader/ExitCode.h"
#include "reader/console/Console.h"
#include "reader/input/FollowedFile.h"
#include "reader/input/InputFile.h"
#include "reader/input/Progress.h"
#include "reader/views/DecodeStream.h"

namespace sentiq {
namespace {

constexpr std::chrono::milliseconds pollInterval{200};

// Cyan, magenta, yellow, green: readable on dark and on light ground.
constexpr std::array<std::string_view, 4> nameColours{"\x1b[36m", "\x1b[35m", "\x1b[33m", "\x1b[32m"};
constexpr std::string_view colourEnd = "\x1b[0m";

std::string baseName(const std::string& file) {
  return file == "-" ? "standard input" : textFromPath(pathFromText(file).filename());
}

// What stands before each line of each file; names are filled up to the longest, so that the lines stand in one column.
std::vector<std::string> linePrefixes(const DecodeOptions& options) {
  std::vector<std::string> prefixes(options.files.size());
  if (!options.names.value_or(options.files.size() > 1)) {
    return prefixes;
  }
  std::transform(options.files.begin(), options.files.end(), prefixes.begin(), baseName);
  const std::size_t width =
      std::accumulate(prefixes.begin(), prefixes.end(), std::size_t{0},
                      [](std::size_t widest, const std::string& name) { return std::max(widest, name.size()); });
  for (std::size_t i = 0; i < prefixes.size(); ++i) {
    prefixes[i].resize(width, ' ');
    if (options.colour) {
      prefixes[i].insert(0, nameColours[i % nameColours.size()]).append(colourEnd);
    }
    prefixes[i] += "  ";
  }
  return prefixes;
}

void follow(const DecodeOptions& options, OutputBlock& out, std::ostream& messages, std::list<DecodeStream>& streams,
            const std::atomic<bool>& stop) {
  std::vector<FollowedFile> files;
  for (const std::string& file : options.files) {
    files.emplace_back(pathFromText(file));
  }
  while (!stop && out.good()) {
    auto stream = streams.begin();
    for (std::size_t i = 0; i < files.size(); ++i, ++stream) {
      files[i].poll({[&](std::string_view bytes) {
                       stream->feed(bytes);
                       out.flush();
                     },
                     [&] {
                       stream->finish();
                       messages << "sentiq-logs: " << options.files[i] << ": emptied or replaced, reading it anew\n";
                     }},
                    stop);
    }
    messages.flush();
    std::this_thread::sleep_for(pollInterval);
  }
  for (DecodeStream& stream : streams) {
    stream.finish();
  }
}

// Whether all could be read.
bool readOnce(const DecodeOptions& options, std::istream& standardInput, std::ostream& messages, Progress& progress,
              std::list<DecodeStream>& streams) {
  bool good = true;
  auto stream = streams.begin();
  for (const std::string& file : options.files) {
    if (!readInput(file, standardInput, progress, [&](std::string_view bytes) { stream->feed(bytes); })) {
      messages << "sentiq-logs: " << file << ": cannot be read\n";
      good = false;
    }
    stream->finish();
    ++stream;
  }
  return good;
}

}  // namespace

int decodeLogs(const DecodeOptions& options, std::istream& standardInput, std::ostream& out, std::ostream& messages,
               Progress& progress, const std::atomic<bool>& stop) {
  if (options.files.empty()) {
    DecodeOptions fromInput = options;
    fromInput.files.emplace_back("-");
    return decodeLogs(fromInput, standardInput, out, messages, progress, stop);
  }
  OutputBlock block(out);
  std::list<DecodeStream> streams;
  const std::vector<std::string> prefixes = linePrefixes(options);
  for (std::size_t i = 0; i < prefixes.size(); ++i) {
    streams.emplace_back(options.files[i], prefixes[i], block, messages);
  }
  bool good = true;
  if (options.follow) {
    follow(options, block, messages, streams, stop);
  } else {
    good = readOnce(options, standardInput, messages, progress, streams);
  }
  block.flush();
  if (!good) {
    return exitFailed;
  }
  const bool damaged =
      std::any_of(streams.begin(), streams.end(), [](const DecodeStream& s) { return s.damagedLines() > 0; });
  return damaged ? exitDamaged : exitGood;
}

}  // namespace sentiq
