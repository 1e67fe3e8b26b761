#include "reader/session/LogFileReader.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <utility>

#include "logging/LogGrammar.h"
#include "reader/events/EventHead.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

constexpr std::size_t longestMessage = 64U << 10;

// That of an event which is only counted.
Severity severityOfLevel(int level) {
  return level == 1 || level == 2 ? Severity::Error : level == 3 ? Severity::Warning : Severity::Info;
}

std::string_view computerIn(std::string_view event) {
  constexpr std::string_view begin = "<Computer>";
  const std::size_t found = event.find(begin);
  event.remove_prefix(found == std::string_view::npos ? event.size() : found + begin.size());
  return event.substr(0, event.find('<'));
}

// The header says local time, and summer time too, with the offset of standard time. In force is that of the line.
std::optional<Instant> readBootTime(std::string_view text, const std::optional<LogTime>& line) {
  const auto time = parseTime(text);
  return time ? std::optional(time->instant + time->offset - (line ? line->offset : time->offset)) : std::nullopt;
}

}  // namespace

LogFileReader::LogFileReader(LogFileInfo& file, std::size_t index, Keep keep)
    : file_(file), index_(index), keep_(keep), raw_(file) {}

void LogFileReader::feed(std::string_view bytes) {
  splitter_.feed(bytes, [this](const Line& line) { take(line); });
}

void LogFileReader::finish() {
  splitter_.finish([this](const Line& line) { take(line); });
}

void LogFileReader::take(const Line& line) {
  const bool rawToo = keep_ == Keep::RawLines;
  if (line.number == line_) {  // A further piece of an overlong line.
    if (rawToo) {
      raw_.keep(line.text);
    }
    return;
  }
  line_ = line.number;
  file_.lines = line.number;
  text_.clear();
  const bool good = decoder_.decode(line.text, text_) != LineKind::Damaged && line.whole;
  const std::string_view text = text_;
  if (rawToo) {
    raw_.keep(text);
  }
  if (keep_ == Keep::Judgement && good && kept_.keep(text, line_)) {
    return;
  }
  takeKeptRecords();
  if (good) {
    takeText(text);
  } else {
    addDamaged("Damaged line: ", text);
    copies_.takeLoss(part().session.copies);
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
  ofProcess_.clear();
  copies_ = {};
  if (!taken.empty()) {
    const SessionPart& last = taken[current_];
    SessionPart& next = parts_.emplace_back();
    next.role = last.role;
    next.session.id = last.session.id;
    next.session.processId = last.session.processId;
  }
  current_ = 0;
  return taken;
}

SessionPart& LogFileReader::part() {
  return parts_.empty() ? parts_.emplace_back() : parts_[current_];
}

void LogFileReader::beginPart() {
  current_ = parts_.size();
  parts_.emplace_back();
  seen_.clear();
  copies_ = {};
}

LogEntry& LogFileReader::add(std::string_view text) {
  LogEntry& entry = part().session.entries.emplace_back();
  if (time_) {
    entry.time = time_->instant;
    entry.offset = time_->offset;
  }
  entry.file = static_cast<std::uint32_t>(index_);
  entry.line = line_;
  entry.text = shortText(text, longestMessage);
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
    damagedHead_ = entry.text.size();
  } else {
    std::string& text = part().session.entries.back().text;
    text.resize(damagedHead_);
    text += " (and " + std::to_string(damagedRun_) + " more after it)";
  }
  ++damagedRun_;
}

void LogFileReader::takeText(std::string_view text) {
  const LogLine line = readLine(text);
  known_ = known_ || line.known;
  if (line.time) {
    time_ = line.time;
  }
  const bool header = line.says >= LineSays::SessionId && line.says <= LineSays::InitialBegun;
  if (header) {
    takeHeader(line);
  }
  LogRole& role = part().role;
  if (line.tagged || line.says == LineSays::Event) {
    role = role == LogRole::Initial ? role : LogRole::Watchdog;
  } else if (header || (line.known && role == LogRole::Unknown)) {
    role = LogRole::Session;
  }
  switch (line.says) {
    case LineSays::Nothing:
      lastContinues_ = false;
      return;
    case LineSays::Rest:
      if (lastContinues_) {
        continueEntry(line.text);
      } else {
        add(line.text);
        lastContinues_ = true;
      }
      return;
    case LineSays::Record:
      takeMetric(line.text);
      return;
    case LineSays::Event:
      takeEvent(line.text);
      return;
    case LineSays::LostEvent:
      add("An event that the system did not render").severity = Severity::Warning;
      copies_.takeLoss(part().session.copies);
      return;
    default:
      break;
  }
  if (role == LogRole::Watchdog) {
    copies_.takeMessage(line, time_, part().session.copies);
  }
  LogEntry& entry = add(line.text);
  entry.meaning = line.meaning;
  entry.severity = line.severity;
  lastContinues_ = line.stamped;
}

void LogFileReader::continueEntry(std::string_view text) {
  std::string& whole = part().session.entries.back().text;
  constexpr std::string_view ellipsis = "\xE2\x80\xA6";
  if (whole.size() < longestMessage) {
    whole += ' ' + shortText(text, longestMessage);
  } else if (!whole.ends_with(ellipsis)) {
    whole += ellipsis;
  }
}

void LogFileReader::takeEvent(std::string_view text) {
  Session& session = part().session;
  const std::optional<EventHead> head = readEventHead(text);
  const bool parsed = keep_ > Keep::WhatMatters || !head || mayMatter(*head, text);
  if (session.computer.empty()) {
    session.computer = shortText(computerIn(text), 256);
  }
  lastContinues_ = false;
  if (parsed || keep_ != Keep::Judgement) {  // A judgement does not ask how many others there are.
    const std::size_t hash = std::hash<std::string_view>{}(text);
    const bool isNew =
        parsed ? seen_.insert(hash).second : session.counted.emplace(hash, severityOfLevel(head->level)).second;
    if (!isNew) {
      ++session.eventCopies;
    } else if (parsed) {
      auto event = readEvent(text);
      if (!event) {
        seen_.erase(hash);
        addDamaged("Unreadable event: ", text);
        copies_.takeLoss(part().session.copies);
        return;
      }
      if (!head) {
        copies_.takeEvent(event->channel(), event->recordId, event->time, session.copies);
      }
      addEvent(std::move(*event));
    }
  }
  if (head) {
    copies_.takeEvent(head->channel, head->recordId, head->time, session.copies);
  }
}

void LogFileReader::addEvent(EventRecord event) {
  LogEntry& entry = add({});
  entry.time = event.time ? event.time : entry.time;
  entry.meaning = event.meaning;
  entry.severity = event.severity;
  std::vector<EventRecord>& events = part().session.events;
  entry.event = static_cast<std::uint32_t>(events.size());
  events.push_back(std::move(event));
}

void LogFileReader::takeMetric(std::string_view text) {
  std::optional<MetricSample> metric = parseMetric(text);
  if (!metric) {
    addDamaged("Unreadable record: ", text);
    return;
  }
  known_ = true;
  time_ = metric->time;
  const std::size_t now = current_;
  if (metric->processId > 0) {
    turnToProcess(std::to_string(metric->processId));
  }
  part().role = LogRole::Session;
  std::vector<MetricSample>& metrics = part().session.metrics;
  add({}).metric = static_cast<std::uint32_t>(metrics.size());
  metrics.push_back(std::move(*metric));
  current_ = now;
}

// A record says of which process it is: another program may write it into the same file.
void LogFileReader::turnToProcess(const std::string& processId) {
  std::string& current = part().session.processId;
  if (current.empty()) {
    current = processId;
  } else if (current != processId) {
    const auto [found, isNew] = ofProcess_.emplace(processId, parts_.size());
    if (isNew) {
      parts_.emplace_back().session.processId = processId;
    }
    current_ = found->second;
  }
  ofProcess_[processId] = current_;
}

void LogFileReader::takeKeptRecords() {
  const std::uint64_t now = line_;
  kept_.takeOut([this](std::uint64_t line, const std::string& text) {
    line_ = line;
    takeMetric(text);
  });
  line_ = now;
}

// A session id begins a header; so does a process id that another one stands before.
void LogFileReader::takeHeader(const LogLine& line) {
  const std::string value = shortText(line.value, longestMessage);
  if (!line.stamped) {
    time_.reset();
  }
  switch (line.says) {
    case LineSays::SessionId:
      beginPart();
      part().session.id = value;
      break;
    case LineSays::ProcessId:
      if (parts_.empty() || !part().session.processId.empty()) {
        beginPart();
      }
      part().session.processId = value;
      if (!value.empty()) {
        ofProcess_[value] = current_;
      }
      break;
    case LineSays::TimeZone: {
      std::string& zone = part().session.timeZone = value;
      if (const std::size_t at = zone.find(grammar::timeZoneName); at != std::string::npos) {
        zone.replace(at, grammar::timeZoneName.size(), ", ");
      }
      break;
    }
    case LineSays::BootTime:
      part().session.bootText = value;
      part().session.booted = readBootTime(line.value, line.time);
      break;
    default:
      part().role = LogRole::Initial;
      break;
  }
}

}  // namespace sentiq
