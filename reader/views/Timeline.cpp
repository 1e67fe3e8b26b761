#include "reader/views/Timeline.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ostream>
#include <string_view>
#include <system_error>

#include "reader/input/CleanText.h"
#include "reader/input/Words.h"
#include "reader/judgement/Judgement.h"
#include "reader/views/JudgementJson.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

using Json = nlohmann::ordered_json;

bool holds(std::string_view text, std::string_view part) {
  return smallLetters(text).find(smallLetters(part)) != std::string::npos;
}

bool isFound(const Session& session, const LogEntry& entry, const std::string& words, const std::string& part) {
  if (part.empty() || holds(words, part)) {
    return true;
  }
  if (!entry.event) {
    return false;
  }
  const std::vector<NamedValue> fields = session.eventOf(entry).fields();
  return std::any_of(fields.begin(), fields.end(), [&](const NamedValue& field) { return holds(field.value, part); });
}

// Whether the entry is wanted, but for its words.
bool isWanted(const LogEntry& entry, const std::string& source, const TimelineOptions& options) {
  const Instant local = entry.time.value_or(Instant{}) + entry.offset;
  if (entry.severity < options.severity || (options.since && local < *options.since) ||
      (options.until && local > *options.until)) {
    return false;
  }
  const bool named = std::any_of(options.sources.begin(), options.sources.end(),
                                 [&](const std::string& wanted) { return equalIgnoringCase(wanted, source); });
  return entry.metric ? named || (options.records && options.sources.empty()) : named || options.sources.empty();
}

std::string textLine(const LogEntry& entry, const std::string& source, const std::string& words,
                     const TimelineOptions& options) {
  constexpr std::size_t timeWidth = 30;
  constexpr std::size_t sourceWidth = 11;
  constexpr std::size_t severityWidth = 7;
  const std::string gap = "  ";
  const std::string time =
      entry.time ? showTime(*entry.time, entry.offset) + ' ' + showOffset(entry.offset) : "no time";
  const std::string before = padded(time, timeWidth) + gap + padded(source, sourceWidth) + gap;
  const std::string severity = padded(severityName(entry.severity), severityWidth) + gap;
  const std::size_t indent = shownWidth(before) + severity.size();
  return before +
         styled(entry.severity, severity + wrapped(harmlessLine(words), indent, options.width), options.colour);
}

std::string jsonLine(const LogFileInfo& file, const Session& session, const LogEntry& entry, const std::string& source,
                     const std::string& words) {
  Json object{{"time", timeJson(entry.time, entry.offset)},
              {"source", source},
              {"severity", severityName(entry.severity)},
              {"what", words},
              {"file", file.name},
              {"line", entry.line}};
  if (entry.event) {
    const EventRecord& event = session.eventOf(entry);
    object["event"] = {
        {"id", event.id}, {"provider", event.provider()}, {"level", event.level}, {"recordId", event.recordId}};
    for (const NamedValue& field : event.fields()) {
      object["event"]["data"].push_back({{"name", field.name}, {"value", field.value}});
    }
  }
  return dumped(object);
}

// In local time.
std::optional<Instant> beginOfLast(const Session& session, Ticks last) {
  const Judgement judgement = judge(session);
  if (judgement.time) {
    return judgement.time->to + judgement.offset - last;
  }
  const SessionSpan span = sessionSpan(session);
  return span.end ? std::optional(*span.end + span.offset - last) : std::nullopt;
}

}  // namespace

std::string timelineLine(const LogFileInfo& file, const Session& session, const LogEntry& entry,
                         const TimelineOptions& options) {
  const std::string source = sourceOf(session, entry);
  if (!isWanted(entry, source, options)) {
    return {};
  }
  const std::string words = wordsOf(session, entry);  // Made only now: it takes longest.
  if (!isFound(session, entry, words, options.grep)) {
    return {};
  }
  return (options.json ? jsonLine(file, session, entry, source, words) : textLine(entry, source, words, options)) +
         '\n';
}

void writeTimeline(const LogSet& logs, const TimelineOptions& options, std::ostream& out) {
  for (const Session& session : logs.sessions) {
    TimelineOptions wanted = options;
    if (const auto begin = options.last ? beginOfLast(session, *options.last) : std::nullopt) {
      wanted.since = std::max(*begin, options.since.value_or(*begin));
    }
    for (const LogEntry& entry : session.entries) {
      out << timelineLine(logs.files[entry.file], session, entry, wanted);
    }
  }
}

std::optional<LogTime> parseWholeTime(const std::string& text) {
  std::size_t used = 0;
  const auto time = parseTime(text, &used);
  return used == text.size() ? time : std::nullopt;
}

std::optional<Instant> parseLocalTime(const std::string& text) {
  constexpr std::size_t dayOnly = 10;
  const auto time = parseWholeTime(text.size() == dayOnly ? text + "T00:00" : text);
  return time && time->offset.count() == 0 ? std::optional(time->instant) : std::nullopt;
}

std::optional<Ticks> parseDuration(const std::string& text) {
  constexpr std::string_view units = "smhd";
  constexpr std::chrono::seconds lengths[]{std::chrono::seconds(1), std::chrono::minutes(1), std::chrono::hours(1),
                                           std::chrono::days(1)};
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  constexpr std::uint32_t longest = 1'000'000;  // More is not meant, and days of it could not be counted.
  const bool isNumber = error == std::errc{} && number < longest && end + 1 == text.data() + text.size();
  const std::size_t unit = isNumber ? units.find(*end) : std::string_view::npos;
  return unit == std::string_view::npos ? std::nullopt : std::optional<Ticks>(number * lengths[unit]);
}

}  // namespace sentiq
