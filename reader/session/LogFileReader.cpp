#include "reader/session/LogFileReader.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <functional>
#include <iterator>
#include <map>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "reader/events/EventHead.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

constexpr std::string_view sessionKey = "OrbelSessionID: ";
constexpr std::string_view processKey = "ProcessID: ";
constexpr std::string_view eventHead = R"({"xmlData":)";
constexpr std::size_t rawBytesKept = 4U << 20;
constexpr std::size_t longestMessage = 64U << 10;

// The program's own lines that mean something for the session.
struct MarkerRow {
  std::string_view begin;
  Meaning meaning;
  Severity severity;
};
constexpr MarkerRow markerRows[] = {
    MarkerRow{"App has exited", Meaning::Exit, Severity::Notice},
    MarkerRow{"Exit Status - Canvix is no longer alive", Meaning::Exit, Severity::Notice},
    MarkerRow{"System Will Sleep", Meaning::Sleep, Severity::Notice},
    MarkerRow{"System Resume", Meaning::Resume, Severity::Notice},
    MarkerRow{"System Will enter/exit Standby", Meaning::Standby, Severity::Notice},
    MarkerRow{"Error in CaptureData api", Meaning::Other, Severity::Warning},
    MarkerRow{"EvtQuery failed", Meaning::Other, Severity::Warning},
    MarkerRow{"Issue in reading logs", Meaning::Other, Severity::Warning},
    MarkerRow{"inside power thread, ", Meaning::Other, Severity::Warning},
};

bool isRecord(std::string_view text) {
  return text.starts_with("{\"");
}

// The figure as it stands in the record, if it does.
std::optional<std::int64_t> figureOf(std::string_view record, std::string_view key) {
  const std::size_t at = record.find(key);
  std::int64_t value = 0;
  const bool found =
      at != std::string_view::npos &&
      std::from_chars(record.data() + at + key.size(), record.data() + record.size(), value).ec == std::errc{};
  return found ? std::optional(value) : std::nullopt;
}

std::optional<EventRecord> readEvent(std::string_view text) {
  using nlohmann::json;
  const json object = json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
  const auto xml = object.is_object() ? object.find("xmlData") : object.end();
  const bool isText = xml != object.end() && xml->is_string();
  return isText ? parseEvent(xml->get_ref<const std::string&>()) : std::nullopt;
}

}  // namespace

LogFileReader::LogFileReader(LogFileInfo& file, std::size_t index, Keep keep)
    : file_(file), index_(index), keep_(keep) {}

void LogFileReader::feed(std::string_view bytes) {
  splitter_.feed(bytes, [this](const Line& line) { take(line); });
}

void LogFileReader::finish() {
  splitter_.finish([this](const Line& line) { take(line); });
}

void LogFileReader::take(const Line& line) {
  if (line.number == line_) {  // A further piece of an overlong line.
    keepRaw(line.text);
    return;
  }
  line_ = line.number;
  file_.lines = line.number;
  text_.clear();
  const bool good = decoder_.decode(line.text, text_) != LineKind::Damaged && line.whole;
  const std::string_view text = text_;
  keepRaw(text);
  if (keep_ == Keep::Judgement && good && keepRecord(text)) {
    return;
  }
  takeKeptRecords();
  if (!good) {
    addDamaged("Damaged line: ", text);
  } else {
    takeText(text);
  }
}

std::vector<SessionPart> LogFileReader::takeOut() {
  takeKeptRecords();
  for (SessionPart& part : parts_) {
    std::vector<LogEntry>& entries = part.session.entries;
    // Lines before the first time stamp take the first one's time.
    const auto first =
        std::find_if(entries.begin(), entries.end(), [](const LogEntry& entry) { return entry.time && !entry.event; });
    for (auto entry = entries.begin(); entry != first && first != entries.end(); ++entry) {
      if (!entry->time) {
        entry->time = first->time;
        entry->offset = first->offset;
      }
    }
    for (LogEntry& entry : entries) {
      entry.role = part.role;
    }
    if (part.role != LogRole::Unknown) {
      file_.role = part.role;
    }
  }
  std::vector<SessionPart> taken = std::exchange(parts_, {});
  lastContinues_ = false;
  damagedRun_ = 0;
  if (!taken.empty()) {
    const SessionPart& last = taken.back();
    SessionPart& next = parts_.emplace_back();
    next.role = last.role;
    next.session.id = last.session.id;
    next.session.processId = last.session.processId;
  }
  return taken;
}

SessionPart& LogFileReader::part() {
  return parts_.empty() ? parts_.emplace_back() : parts_.back();
}

void LogFileReader::beginPart() {
  parts_.emplace_back();
  seen_.clear();
}

LogEntry& LogFileReader::add(std::string_view what) {
  LogEntry& entry = part().session.entries.emplace_back();
  if (time_) {
    entry.time = time_->instant;
    entry.offset = time_->offset;
  }
  entry.file = index_;
  entry.line = line_;
  entry.what = shortText(what, longestMessage);
  lastContinues_ = false;
  damagedRun_ = 0;
  return entry;
}

void LogFileReader::addDamaged(std::string_view what, std::string_view bytes) {
  constexpr std::size_t longestShown = 200;
  ++file_.damagedLines;
  if (damagedRun_ == 0) {
    LogEntry& entry = add(std::string(what) + std::string(bytes.substr(0, longestShown)));
    entry.severity = Severity::Warning;
    damagedHead_ = entry.what.size();
  } else {
    std::string& text = part().session.entries.back().what;
    text.resize(damagedHead_);
    text += " (and " + std::to_string(damagedRun_) + " more after it)";
  }
  ++damagedRun_;
}

void LogFileReader::takeText(std::string_view text) {
  std::size_t used = 0;
  if (const auto time = parseTime(text, &used)) {
    time_ = time;
    text.remove_prefix(std::min(used + 1, text.size()));
    takeMessage(text);
  } else if (text.starts_with("[TIMESTAMP_ERROR]")) {
    takeMessage(text.substr(std::min<std::size_t>(18, text.size())));
  } else if (isRecord(text)) {
    takeMetric(text);
  } else if (text.starts_with(sessionKey) || text.starts_with(processKey)) {
    time_.reset();
    takeHeader(text);
    part().role = LogRole::Session;
    add(text);
  } else if (text.find_first_not_of("=\r") == std::string_view::npos) {
    lastContinues_ = false;  // An empty line or the separator.
  } else if (lastContinues_) {
    continueEntry(text);
  } else {
    add(text);
    lastContinues_ = true;
  }
}

void LogFileReader::continueEntry(std::string_view text) {
  std::string& what = part().session.entries.back().what;
  constexpr std::string_view ellipsis = "\xE2\x80\xA6";
  if (what.size() < longestMessage) {
    what += ' ' + shortText(text, longestMessage);
  } else if (!what.ends_with(ellipsis)) {
    what += ellipsis;
  }
}

void LogFileReader::takeMessage(std::string_view message) {
  const std::size_t tags = message.find("]: ");
  const bool tagged = message.starts_with('[') && tags != std::string_view::npos;
  if (tagged) {
    message.remove_prefix(tags + 3);
  }
  const bool event = message.starts_with(eventHead);
  if (tagged && !event) {
    takeHeader(message);
  }
  if ((tagged || event) && part().role != LogRole::Initial) {
    part().role = LogRole::Watchdog;
  }
  if (event) {
    takeEvent(message);
    return;
  }
  if (tagged && message.empty()) {
    add("An event that the system did not render").severity = Severity::Warning;
    return;
  }
  LogEntry& entry = add(message);
  const auto* const row = std::find_if(std::begin(markerRows), std::end(markerRows),
                                       [&](const MarkerRow& marker) { return message.starts_with(marker.begin); });
  if (row != std::end(markerRows)) {
    entry.meaning = row->meaning;
    entry.severity = row->severity;
  }
  lastContinues_ = true;
}

void LogFileReader::takeEvent(std::string_view text) {
  const std::optional<EventHead> head = readEventHead(text);
  const bool parsed = keep_ > Keep::WhatMatters || !head || mayMatter(*head);
  if (parsed || keep_ != Keep::Judgement) {  // A judgement does not ask how many others there are.
    const std::size_t hash = std::hash<std::string_view>{}(text);
    if (!seen_.insert(hash).second) {
      ++part().session.eventCopies;
    } else if (!parsed) {
      part().session.counted.emplace(hash, severityOfLevel(head->level));
    } else if (auto event = readEvent(text)) {
      addEvent(std::move(*event));
    } else {
      seen_.erase(hash);
      addDamaged("Unreadable event: ", text);
      return;
    }
  }
  lastContinues_ = false;
  std::optional<Instant>& copied = part().session.applicationCopied;
  if (head && head->channel == "Application" && time_ && part().role != LogRole::Initial) {
    copied = std::max(copied.value_or(time_->instant), time_->instant);
  }
}

void LogFileReader::addEvent(EventRecord event) {
  EventWords words = describeEvent(event, time_ ? time_->offset : std::chrono::minutes{});
  LogEntry& entry = add(words.words);
  entry.time = event.time ? event.time : entry.time;
  entry.meaning = words.meaning;
  entry.severity = words.severity;
  std::vector<EventRecord>& events = part().session.events;
  entry.event = events.size();
  events.push_back(std::move(event));
}

void LogFileReader::takeMetric(std::string_view text) {
  std::optional<MetricSample> metric = parseMetric(text);
  if (!metric) {
    addDamaged("Unreadable record: ", text);
    return;
  }
  part().role = LogRole::Session;
  time_ = metric->time;
  std::vector<MetricSample>& metrics = part().session.metrics;
  add(keep_ <= Keep::WhatMatters ? std::string{} : describeMetric(*metric)).metric = metrics.size();
  metrics.push_back(std::move(*metric));
}

// Whether it is a record, as far as that shows without parsing it.
bool LogFileReader::keepRecord(std::string_view text) {
  const bool whole = isRecord(text) && text.ends_with('}');
  const auto disk = whole ? figureOf(text, R"(freeDiskSpace":)") : std::nullopt;
  const auto swap = whole ? figureOf(text, R"(freeSwapMemory":)") : std::nullopt;
  if (!disk || !swap) {
    return false;
  }
  const auto line = static_cast<std::int64_t>(line_);
  const std::array<std::int64_t, 4> figures{line, *disk, *swap, -line};
  for (std::size_t i = 0; i < figures.size(); ++i) {
    if (kept_[i].text.empty() || figures[i] < kept_[i].figure) {
      kept_[i].figure = figures[i];
      kept_[i].line = line_;
      kept_[i].text = text;
    }
  }
  return true;
}

void LogFileReader::takeKeptRecords() {
  std::map<std::uint64_t, std::string> records;  // One may be several of them.
  for (KeptRecord& kept : kept_) {
    if (!kept.text.empty()) {
      records.emplace(kept.line, std::exchange(kept.text, {}));
    }
  }
  const std::uint64_t now = line_;
  for (const auto& [line, text] : records) {
    line_ = line;
    takeMetric(text);
  }
  line_ = now;
}

// A session id begins a header; so does a process id that another one stands before.
void LogFileReader::takeHeader(std::string_view message) {
  const auto rest = [&](std::string_view key) {
    return message.starts_with(key) ? std::optional(shortText(message.substr(key.size()), longestMessage))
                                    : std::nullopt;
  };
  if (auto id = rest(sessionKey)) {
    beginPart();
    part().session.id = std::move(*id);
  } else if (auto pid = rest(processKey)) {
    if (parts_.empty() || !part().session.processId.empty()) {
      beginPart();
    }
    part().session.processId = std::move(*pid);
  } else if (auto zone = rest("Time zone offset: ")) {
    constexpr std::string_view between = " Time Zone Name: ";
    if (const std::size_t at = zone->find(between); at != std::string::npos) {
      zone->replace(at, between.size(), ", ");
    }
    part().session.timeZone = std::move(*zone);
  } else if (auto boot = rest("LastBootTime: ")) {
    part().session.bootTime = std::move(*boot);
  } else if (message == "Starting initial metric collection.") {
    part().role = LogRole::Initial;
  }
}

void LogFileReader::keepRaw(std::string_view text) {
  if (keep_ != Keep::RawLines) {
    return;
  }
  file_.rawLines.emplace_back(text);
  rawBytes_ += sizeof(std::string) + text.size();
  while (rawBytes_ > rawBytesKept) {
    rawBytes_ -= sizeof(std::string) + file_.rawLines.front().size();
    file_.rawLines.pop_front();
    ++file_.rawLeftOut;
  }
}

}  // namespace sentiq
