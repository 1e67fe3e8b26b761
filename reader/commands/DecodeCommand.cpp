#include "reader/commands/DecodeCommand.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "reader/commands/DecodeStream.h"
#include "reader/commands/FollowedLogs.h"
#include "reader/commands/Inputs.h"
#include "reader/console/Console.h"
#include "reader/input/InputFile.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

class Decoder {
 public:
  Decoder(const DecodeOptions& options, const Streams& streams)
      : options_(options),
        streams_(streams),
        output_{streams.out, /*harmless=*/streams.outIsTerminal, streams.redact ? &names_ : nullptr} {}

  void decodeAll(const std::vector<LogInput>& files) {
    prepare(files);
    for (const LogInput& file : files) {
      DecodeStream& log = add(file.name, files.size() > 1);
      const auto feed = [&](std::string_view bytes) {
        log.feed(bytes);
        return true;
      };
      if (!readInput(file.name, streams_.progress, streams_.stop, feed)) {
        streams_.messages.say(file.name + ": cannot be read", exitFailed);
      }
      log.finish();
    }
    output_.flush();
  }

  void follow() {
    const std::vector<std::string>& inputs = options_.inputs;
    const bool several = inputs.size() > 1 || std::any_of(inputs.begin(), inputs.end(), [](const std::string& input) {
                           std::error_code error;
                           return std::filesystem::is_directory(pathFromText(input), error);
                         });
    prepare(findLogs(inputs));
    followLogs(inputs,
               {[&](const LogInput& file) {
                  files_.push_back(file.name);
                  add(file.name, several);
                },
                [&](std::size_t log, std::string_view bytes) {
                  logs_[log].feed(bytes);
                  output_.flush();
                },
                [&](std::size_t log) {
                  logs_[log].finish();
                  streams_.messages.say(files_[log] + ": emptied or replaced, reading it anew");
                },
                [] {}},
               streams_);
    for (DecodeStream& log : logs_) {
      log.finish();
    }
    output_.flush();
  }

 private:
  void prepare(const std::vector<LogInput>& files) {
    if (streams_.redact) {
      names_ = namesIn(files, streams_);
    }
    for (const LogInput& file : files) {
      nameWidth_ = std::max(nameWidth_, shownWidth(shownName(file.name)));
    }
  }

  std::string shownName(const std::string& file) const {
    const std::string name = file == "-" ? "standard input" : textFromPath(pathFromText(file).filename());
    return harmlessLine(streams_.redact ? names_.redacted(name) : name);
  }

  // Names are filled up to the longest, so that the lines stand in one column.
  DecodeStream& add(const std::string& file, bool several) {
    // Cyan, magenta, yellow, green: readable on dark and on light ground.
    constexpr std::array<std::string_view, 4> colours{"\x1b[36m", "\x1b[35m", "\x1b[33m", "\x1b[32m"};
    std::string prefix;
    if (options_.names.value_or(several)) {
      const std::string_view colour = streams_.colour ? colours[logs_.size() % colours.size()] : "";
      prefix = coloured(padded(shownName(file), nameWidth_), colour) + "  ";
    }
    return logs_.emplace_back(file, prefix, output_, streams_.messages);
  }

  const DecodeOptions& options_;
  const Streams& streams_;
  KnownNames names_;
  DecodeOutput output_;
  std::size_t nameWidth_ = 0;
  std::vector<std::string> files_;
  std::deque<DecodeStream> logs_;
};

}  // namespace

void decodeLogs(const DecodeOptions& options, const Streams& streams) {
  Decoder decoder(options, streams);
  if (options.follow) {
    decoder.follow();
    return;
  }
  if (options.inputs.empty()) {
    decoder.decodeAll({{"-"}});
    return;
  }
  std::vector<LogInput> files = findLogs(existing(options.inputs, /*anyKind=*/true, streams.messages));
  std::vector<std::string> foreign;
  std::erase_if(files, [&](const LogInput& file) {
    const bool leftOut = file.fromFolder && !beginsAsLog(file.name);
    if (leftOut) {
      foreign.push_back(file.name);
    }
    return leftOut;
  });
  if (!foreign.empty()) {
    streams.messages.say("left out, no logs of CanvixSentiq: " + someOf(foreign));
  }
  decoder.decodeAll(files);
}

}  // namespace sentiq
