#include "reader/views/Timeline.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <list>
#include <ostream>
#include <string_view>
#include <thread>
#include <unordered_set>

#include <nlohmann/json.hpp>

#include "reader/console/Console.h"
#include "reader/input/CleanText.h"
#include "reader/input/FollowedFile.h"
#include "reader/session/LogFileReader.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

bool isWanted(const LogEntry& entry, const std::string& source, const TimelineOptions& options) {
  const Instant local = entry.time.value_or(Instant{}) + entry.offset;
  if ((options.since && local < *options.since) || (options.until && local > *options.until)) {
    return false;
  }
  return options.sources.empty() ||
         std::any_of(options.sources.begin(), options.sources.end(),
                     [&](const std::string& wanted) { return equalIgnoringCase(wanted, source); });
}

std::string textLine(const LogEntry& entry, const std::string& source, bool colour) {
  constexpr std::size_t timeWidth = 30;
  const std::string time =
      entry.time ? showTime(*entry.time, entry.offset) + ' ' + showOffset(entry.offset) : "no time";
  std::string what = entry.what;
  std::replace_if(what.begin(), what.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return padded(time, timeWidth) + "  " + padded(source, 11) + "  " +
         styled(entry.severity, padded(severityName(entry.severity), 7) + "  " + what, colour);
}

std::string jsonLine(const LogFileInfo& file, const Session& session, const LogEntry& entry,
                     const std::string& source) {
  nlohmann::ordered_json object;
  object["time"] = entry.time ? nlohmann::ordered_json(isoTime(*entry.time, entry.offset)) : nullptr;
  object["source"] = source;
  object["severity"] = severityName(entry.severity);
  object["what"] = entry.what;
  object["file"] = file.name;
  object["line"] = entry.line;
  if (entry.event) {
    const EventRecord& event = session.eventOf(entry);
    object["event"] = {
        {"id", event.id}, {"provider", event.provider}, {"level", event.level}, {"recordId", event.recordId}};
    for (const auto& [name, value] : event.data) {
      object["event"]["data"].push_back({{"name", name}, {"value", value}});
    }
  }
  return object.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace);
}

void writeEntry(const LogFileInfo& file, const Session& session, const LogEntry& entry, const TimelineOptions& options,
                std::ostream& out) {
  const std::string source = session.sourceOf(entry);
  if (isWanted(entry, source, options)) {
    out << (options.json ? jsonLine(file, session, entry, source) : textLine(entry, source, options.colour)) << '\n';
  }
}

// A log that grows, and what was understood of it.
struct FollowedLog {
  LogInput input;
  LogFileInfo info;
  FollowedFile file;
  std::optional<LogFileReader> reader{};
};

}  // namespace

void writeTimeline(const LogSet& logs, const TimelineOptions& options, std::ostream& out) {
  for (const Session& session : logs.sessions) {
    for (const LogEntry& entry : session.entries) {
      writeEntry(logs.files[entry.file], session, entry, options, out);
    }
  }
}

void followTimeline(const std::vector<std::string>& inputs, const TimelineOptions& options, std::ostream& out,
                    const std::atomic<bool>& stop) {
  std::list<FollowedLog> logs;
  std::unordered_set<std::string> shown;  // The keys of the events, of all logs.
  const auto show = [&](FollowedLog& log) {
    for (const SessionPart& part : log.reader->takeOut()) {
      for (const LogEntry& entry : part.session.entries) {
        const bool known = !log.input.fromFolder || part.role != LogRole::Unknown;  // A folder holds other logs, too.
        if (known && (!entry.event || shown.insert(part.session.eventOf(entry).key()).second)) {
          writeEntry(log.info, part.session, entry, options, out);
        }
      }
    }
  };
  while (!stop && out.good()) {
    for (const LogInput& input : findLogs(inputs)) {
      if (std::none_of(logs.begin(), logs.end(), [&](const auto& log) { return log.input.name == input.name; })) {
        FollowedLog& log = logs.emplace_back(FollowedLog{input, {}, FollowedFile(pathFromText(input.name))});
        log.info.name = input.name;
        log.reader.emplace(log.info, 0, Keep::AllEvents);
      }
    }
    for (FollowedLog& log : logs) {
      const auto read = [&](std::string_view bytes) {
        log.reader->feed(bytes);
        show(log);
      };
      const auto startAnew = [&] {
        log.reader->finish();
        show(log);
        log.reader.emplace(log.info, 0, Keep::AllEvents);
      };
      log.file.poll({read, startAnew}, stop);
    }
    out.flush();
    constexpr std::chrono::milliseconds pollInterval{200};
    std::this_thread::sleep_for(pollInterval);
  }
}

std::optional<Instant> parseLocalTime(const std::string& text) {
  constexpr std::size_t dayOnly = 10;
  const std::string whole = text.size() == dayOnly ? text + "T00:00" : text;
  std::size_t used = 0;
  const auto time = parseTime(whole, &used);
  return time && used == whole.size() && time->offset.count() == 0 ? std::optional(time->instant) : std::nullopt;
}

}  // namespace sentiq
