#include "reader/commands/TimelineCommand.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <ostream>
#include <string_view>
#include <unordered_set>

#include "reader/commands/FollowedLogs.h"
#include "reader/commands/Inputs.h"
#include "reader/session/LogFileReader.h"
#include "reader/session/Redaction.h"

namespace sentiq {
namespace {

// A log that grows, and what was understood of it.
struct GrowingLog {
  GrowingLog(const LogInput& log, KnownNames* names) : input(log) {
    info.name = log.name;
    reader.emplace(info, 0, Keep::AllEvents, names);
  }

  LogInput input;
  LogFileInfo info;
  std::optional<LogFileReader> reader{};
};

}  // namespace

void showTimeline(const std::vector<std::string>& inputs, const TimelineOptions& options, const Streams& streams) {
  const LogSet logs = readInputs(inputs, Keep::AllEvents, streams);
  sayLeftOut(logs, streams.messages);
  writeTimeline(logs, options, streams.out);
}

void followTimeline(const std::vector<std::string>& inputs, const TimelineOptions& options, const Streams& streams) {
  KnownNames names = streams.redact ? namesIn(findLogs(inputs), streams) : KnownNames();
  KnownNames* const learning = streams.redact ? &names : nullptr;
  std::deque<GrowingLog> logs;
  std::unordered_set<std::string> shown;  // The keys of the events, of all logs.
  const auto show = [&](GrowingLog& log) {
    for (SessionPart& part : log.reader->takeOut()) {
      if (streams.redact) {
        redact(part.session, names);
        log.info.name = names.redacted(log.info.name);
      }
      for (const LogEntry& entry : part.session.entries) {
        const bool known = !log.input.fromFolder || part.role != LogRole::Unknown;  // A folder holds other logs, too.
        if (known && (!entry.event || shown.insert(part.session.eventOf(entry).key()).second)) {
          streams.out << timelineLine(log.info, part.session, entry, options);
        }
      }
    }
  };
  followLogs(inputs,
             {[&](const LogInput& input) { logs.emplace_back(input, learning); },
              [&](std::size_t log, std::string_view bytes) {
                logs[log].reader->feed(bytes);
                show(logs[log]);
              },
              [&](std::size_t log) {
                logs[log].reader->finish();
                show(logs[log]);
                logs[log].reader.emplace(logs[log].info, 0, Keep::AllEvents, learning);
              },
              [&] { streams.out.flush(); }},
             streams);
}

}  // namespace sentiq
