#include "reader/session/EntryReader.h"

#include <string>
#include <utility>

#include "logging/LogGrammar.h"
#include "reader/events/EventHead.h"
#include "reader/input/CleanText.h"
#include "reader/input/TextHash.h"

namespace sentiq {
namespace {

constexpr std::size_t longestMessage = 64U << 10;
constexpr std::size_t longestName = 256;

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

void EntryReader::take(const LogLine& line, std::uint64_t number) {
  line_ = number;
  known_ = known_ || line.known;
  time_ = line.time ? line.time : time_;
  if (line.isHeader()) {
    takeHeader(line);
  }
  setRole(line);
  switch (line.says) {
    case LineSays::Nothing:
      lastContinues_ = false;
      break;
    case LineSays::Rest:
      continueEntry(line.text);
      break;
    case LineSays::Record:
      takeRecord(line.text, number);
      break;
    case LineSays::Event:
      takeEvent(line.text);
      break;
    case LineSays::LostEvent:
      add(parts_.current(), "An event that the system did not render").severity = Severity::Warning;
      copies_.takeLoss(parts_.current().session.copies);
      break;
    default:
      addMessage(line);
      break;
  }
}

std::vector<SessionPart> EntryReader::takeOut() {
  lastContinues_ = false;
  damagedRun_ = 0;
  copies_ = {};
  return parts_.takeOut();
}

void EntryReader::beginPart() {
  parts_.begin();
  seen_ = {};
  copies_ = {};
}

void EntryReader::setRole(const LogLine& line) {
  LogRole& role = parts_.current().role;
  if (line.says == LineSays::InitialBegun) {
    role = LogRole::Initial;
  } else if (line.tagged || line.says == LineSays::Event) {
    role = role == LogRole::Initial ? role : LogRole::Watchdog;
  } else if (line.isHeader() || (line.known && role == LogRole::Unknown)) {
    role = LogRole::Session;
  }
}

LogEntry& EntryReader::add(SessionPart& part, std::string_view text) {
  LogEntry& entry = part.session.entries.emplace_back();
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

void EntryReader::takeDamaged(std::string_view bytes, std::uint64_t number) {
  line_ = number;
  addDamaged("Damaged line: ", bytes);
  copies_.takeLoss(parts_.current().session.copies);
}

void EntryReader::addDamaged(std::string_view what, std::string_view bytes) {
  constexpr std::size_t longestShown = 200;
  ++file_.damagedLines;
  if (damagedRun_ == 0) {
    LogEntry& entry = add(parts_.current(), std::string(what) + std::string(bytes.substr(0, longestShown)));
    entry.severity = Severity::Warning;
    damagedHead_ = entry.text.size();
  } else {
    std::string& text = parts_.current().session.entries.back().text;
    text.resize(damagedHead_);
    text += " (and " + std::to_string(damagedRun_) + " more after it)";
  }
  ++damagedRun_;
}

void EntryReader::continueEntry(std::string_view text) {
  constexpr std::string_view ellipsis = "\xE2\x80\xA6";
  if (!lastContinues_) {
    add(parts_.current(), text);
    lastContinues_ = true;
    return;
  }
  std::string& whole = parts_.current().session.entries.back().text;
  if (whole.size() < longestMessage) {
    whole += ' ' + shortText(text, longestMessage);
  } else if (!whole.ends_with(ellipsis)) {
    whole += ellipsis;
  }
}

void EntryReader::addMessage(const LogLine& line) {
  SessionPart& part = parts_.current();
  if (part.role == LogRole::Watchdog) {
    copies_.takeMessage(line, time_, part.session.copies);
  }
  LogEntry& entry = add(part, line.text);
  entry.meaning = line.meaning;
  entry.severity = line.severity;
  lastContinues_ = line.stamped;
}

void EntryReader::takeRecord(std::string_view text, std::uint64_t number) {
  line_ = number;
  std::optional<MetricSample> record = parseMetric(text);
  if (!record) {
    addDamaged("Unreadable record: ", text);
    return;
  }
  known_ = true;
  time_ = record->time;
  SessionPart& part = record->processId > 0 ? parts_.ofProcess(std::to_string(record->processId)) : parts_.current();
  part.role = LogRole::Session;
  std::vector<MetricSample>& records = part.session.metrics;
  add(part, {}).metric = static_cast<std::uint32_t>(records.size());
  records.push_back(std::move(*record));
}

void EntryReader::takeEvent(std::string_view text) {
  Session& session = parts_.current().session;
  const std::optional<EventHead> head = readEventHead(text);
  const bool parsed = keep_ > Keep::WhatMatters || !head || mayMatter(*head, text);
  if (session.computer.empty()) {
    session.computer = shortText(computerIn(text), longestName);
  }
  lastContinues_ = false;
  if (parsed || keep_ != Keep::Judgement) {  // A judgement does not ask how many others there are.
    const std::uint64_t hash = textHash(text);
    if (seen_.contains(hash)) {
      ++session.eventCopies;
    } else if (parsed && !addEvent(text, !head)) {
      addDamaged("Unreadable event: ", text);
      copies_.takeLoss(session.copies);
      return;
    } else {
      seen_.insert(hash);
      if (!parsed) {
        session.counted.push_back({hash, severityOfLevel(head->level)});
      }
    }
  }
  if (head) {
    copies_.takeEvent(head->channel, head->recordId, head->time, session.copies);
  }
}

// False when it cannot be read. @param headless whether the copy that it stands in has not been told of it.
bool EntryReader::addEvent(std::string_view text, bool headless) {
  std::optional<EventRecord> event = readEvent(text);
  if (!event) {
    return false;
  }
  SessionPart& part = parts_.current();
  if (headless) {
    copies_.takeEvent(event->channel(), event->recordId, event->time, part.session.copies);
  }
  LogEntry& entry = add(part, {});
  entry.time = event->time ? event->time : entry.time;
  entry.meaning = event->meaning;
  entry.severity = event->severity;
  entry.event = static_cast<std::uint32_t>(part.session.events.size());
  part.session.events.push_back(std::move(*event));
  return true;
}

// A session id begins a header; so does a process id that another one stands before.
void EntryReader::takeHeader(const LogLine& line) {
  const std::string value = shortText(line.value, longestMessage);
  if (!line.stamped) {
    time_.reset();
  }
  const bool namesProcess = line.says == LineSays::ProcessId;
  const bool another = namesProcess && !parts_.current().session.processId.empty();
  if (line.says == LineSays::SessionId || another) {
    beginPart();
  }
  Session& session = parts_.current().session;
  if (line.says == LineSays::SessionId) {
    session.id = value;
  } else if (namesProcess) {
    parts_.nameProcess(value);
  } else if (line.says == LineSays::TimeZone) {
    session.timeZone = value;
    if (const std::size_t at = value.find(grammar::timeZoneName); at != std::string::npos) {
      session.timeZone.replace(at, grammar::timeZoneName.size(), ", ");
    }
  } else if (line.says == LineSays::BootTime) {
    session.bootText = value;
    session.booted = readBootTime(line.value, line.time);
  }
}

}  // namespace sentiq
