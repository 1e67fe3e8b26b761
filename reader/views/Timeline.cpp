#include "reader/views/Timeline.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"
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

std::string padded(std::string_view text, std::size_t width) {
  std::string filled(text);
  filled.resize(std::max(width, filled.size()), ' ');
  return filled;
}

std::string textLine(const LogEntry& entry, const std::string& source, bool colour) {
  constexpr std::size_t timeWidth = 30;
  const std::string time =
      entry.time ? showTime(*entry.time, entry.offset) + ' ' + showOffset(entry.offset) : "no time";
  std::string what = entry.what;
  std::replace_if(
      what.begin(), what.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return padded(time, timeWidth) + "  " + padded(source, 11) + "  " +
         styled(entry.severity, padded(severityName(entry.severity), 7) + "  " + what, colour);
}

std::string jsonLine(const LogSet& logs, const Session& session, const LogEntry& entry, const std::string& source) {
  nlohmann::ordered_json object;
  object["time"] = entry.time ? nlohmann::ordered_json(isoTime(*entry.time, entry.offset)) : nullptr;
  object["source"] = source;
  object["severity"] = severityName(entry.severity);
  object["what"] = entry.what;
  object["file"] = logs.files[entry.file].name;
  object["line"] = entry.line;
  if (entry.event) {
    const EventRecord& event = session.events[*entry.event];
    object["event"] = {
        {"id", event.id}, {"provider", event.provider}, {"level", event.level}, {"recordId", event.recordId}};
    for (const auto& [name, value] : event.data) {
      object["event"]["data"].push_back({{"name", name}, {"value", value}});
    }
  }
  return object.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace

void writeTimeline(const LogSet& logs, const TimelineOptions& options, std::ostream& out) {
  for (const Session& session : logs.sessions) {
    for (const LogEntry& entry : session.entries) {
      const std::string source = session.sourceOf(entry);
      if (isWanted(entry, source, options)) {
        out << (options.json ? jsonLine(logs, session, entry, source) : textLine(entry, source, options.colour))
            << '\n';
      }
    }
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
