#include "reader/session/LogSet.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <iterator>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/console/Console.h"
#include "reader/input/CleanText.h"
#include "reader/input/InputFile.h"
#include "reader/input/LineSplitter.h"
#include "reader/input/LogDecoding.h"

namespace sentiq {
namespace {

constexpr std::string_view sessionKey = "OrbelSessionID: ";
constexpr std::string_view processKey = "ProcessID: ";
constexpr std::string_view eventHead = R"({"xmlData":)";
constexpr std::size_t rawBytesKept = 4U << 20;
constexpr std::size_t longestMessage = 64U << 10;
constexpr std::string_view cutMark = " \xE2\x80\xA6";  // An ellipsis.

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

// Clean, and not longer than a message may be.
std::string shownText(std::string_view text) {
  return text.size() <= longestMessage ? cleanText(text) : cleanText(text.substr(0, longestMessage)).append(cutMark);
}

// The lines of one file, turned into entries of the set.
class LogFileReader {
 public:
  LogFileReader(LogSet& set, std::unordered_set<std::string>& eventKeys, bool keepRawLines)
      : set_(set), eventKeys_(eventKeys), keepRawLines_(keepRawLines), firstEntry_(set.entries.size()) {}

  void take(const Line& line);
  void finish();

 private:
  LogFileInfo& file() { return set_.files.back(); }
  LogEntry& add(std::string_view what);
  void addDamaged(std::string_view what, std::string_view bytes);
  void takeText(std::string_view text);
  void continueEntry(std::string_view text);
  void takeMessage(std::string_view message);
  void takeEvent(std::string_view text);
  void takeMetric(std::string_view text);
  void takeHeader(std::string_view message);
  void keepRaw(std::string_view text);

  LogSet& set_;
  std::unordered_set<std::string>& eventKeys_;
  bool keepRawLines_;
  std::size_t firstEntry_;
  LineDecoder decoder_;
  std::string room_;
  std::uint64_t line_ = 0;
  std::optional<LogTime> time_;   // Of the last line that had one.
  bool lastContinues_ = false;    // Whether a line without time stamp belongs to the last entry.
  std::uint64_t damagedRun_ = 0;  // Damaged lines that the last entry stands for.
  std::size_t damagedHead_ = 0;   // How much of its text is of the first one.
  std::size_t rawBytes_ = 0;
};

void LogFileReader::take(const Line& line) {
  if (line.number == line_) {  // A further piece of an overlong line.
    keepRaw(line.text);
    return;
  }
  line_ = line.number;
  file().lines = line.number;
  room_.resize(std::max(room_.size(), LineDecoder::roomFor(line.text.size())));
  const LineDecoder::Result result = decoder_.decode(line.text, room_.data());
  const std::string_view text =
      result.kind == LineKind::Encoded ? std::string_view(room_.data(), result.size) : line.text;
  keepRaw(text);
  if (result.kind == LineKind::Damaged || !line.whole) {
    addDamaged("Damaged line: ", text);
  } else {
    takeText(text);
  }
}

// Lines before the first time stamp take the first one's time.
void LogFileReader::finish() {
  std::optional<LogTime> first;
  for (std::size_t i = firstEntry_; i < set_.entries.size() && !first; ++i) {
    if (const LogEntry& entry = set_.entries[i]; entry.time && !entry.event) {
      first = LogTime{*entry.time, entry.offset};
    }
  }
  for (std::size_t i = firstEntry_; first && i < set_.entries.size() && !set_.entries[i].time; ++i) {
    set_.entries[i].time = first->instant;
    set_.entries[i].offset = first->offset;
  }
}

LogEntry& LogFileReader::add(std::string_view what) {
  LogEntry& entry = set_.entries.emplace_back();
  if (time_) {
    entry.time = time_->instant;
    entry.offset = time_->offset;
  }
  entry.file = set_.files.size() - 1;
  entry.line = line_;
  entry.what = shownText(what);
  lastContinues_ = false;
  damagedRun_ = 0;
  return entry;
}

void LogFileReader::addDamaged(std::string_view what, std::string_view bytes) {
  constexpr std::size_t longestShown = 200;
  ++file().damagedLines;
  if (damagedRun_ == 0) {
    LogEntry& entry = add(std::string(what) + std::string(bytes.substr(0, longestShown)));
    entry.severity = Severity::Warning;
    damagedHead_ = entry.what.size();
  } else {
    std::string& text = set_.entries.back().what;
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
  } else if (text.starts_with("{\"")) {
    takeMetric(text);
  } else if (text.starts_with(sessionKey) || text.starts_with(processKey)) {
    file().role = LogRole::Session;
    takeHeader(text);
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
  std::string& what = set_.entries.back().what;
  if (what.size() < longestMessage) {
    what += ' ' + shownText(text);
  } else if (!what.ends_with(cutMark)) {
    what += cutMark;
  }
}

void LogFileReader::takeMessage(std::string_view message) {
  const std::size_t tags = message.find("]: ");
  const bool tagged = message.starts_with('[') && tags != std::string_view::npos;
  if (tagged) {
    message.remove_prefix(tags + 3);
    file().role = file().role == LogRole::Initial ? LogRole::Initial : LogRole::Watchdog;
  }
  if (message.starts_with(eventHead)) {
    takeEvent(message);
    return;
  }
  if (tagged && message.empty()) {
    add("An event that the system did not render").severity = Severity::Warning;
    return;
  }
  takeHeader(message);
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
  using nlohmann::json;
  const json object = json::parse(text, /*cb=*/nullptr, /*allow_exceptions=*/false);
  const auto xml = object.is_object() ? object.find("xmlData") : object.end();
  std::optional<EventRecord> event;
  if (xml != object.end() && xml->is_string()) {
    event = parseEvent(xml->get_ref<const std::string&>());
  }
  if (!event) {
    addDamaged("Unreadable event: ", text);
    return;
  }
  if (file().role == LogRole::Unknown) {
    file().role = LogRole::Watchdog;
  }
  if (event->channel == "Application" && time_) {
    set_.applicationCopied = std::max(set_.applicationCopied.value_or(time_->instant), time_->instant);
  }
  if (!eventKeys_.insert(event->key()).second) {
    ++set_.eventCopies;
    lastContinues_ = false;
    return;
  }
  EventWords words = describeEvent(*event);
  LogEntry& entry = add(words.words);
  entry.time = event->time ? event->time : entry.time;
  entry.meaning = words.meaning;
  entry.severity = words.severity;
  entry.event = set_.events.size();
  set_.events.push_back(std::move(*event));
}

void LogFileReader::takeMetric(std::string_view text) {
  std::optional<MetricSample> metric = parseMetric(text);
  if (!metric) {
    addDamaged("Unreadable record: ", text);
    return;
  }
  file().role = LogRole::Session;
  time_ = metric->time;
  add(describeMetric(*metric)).metric = set_.metrics.size();
  set_.metrics.push_back(std::move(*metric));
}

void LogFileReader::takeHeader(std::string_view message) {
  const auto rest = [message](std::string_view key, std::string& value) {
    const bool found = message.starts_with(key);
    if (found) {
      value = shownText(message.substr(key.size()));
    }
    return found;
  };
  if (rest(sessionKey, file().sessionId) &&
      (file().sessionIds.empty() || file().sessionIds.back() != file().sessionId)) {
    file().sessionIds.push_back(file().sessionId);
  }
  rest(processKey, file().processId);
  if (rest("Time zone offset: ", file().timeZone)) {
    constexpr std::string_view between = " Time Zone Name: ";
    if (const std::size_t at = file().timeZone.find(between); at != std::string::npos) {
      file().timeZone.replace(at, between.size(), ", ");
    }
  }
  rest("LastBootTime: ", file().bootTime);
  if (message == "Starting initial metric collection.") {
    file().role = LogRole::Initial;
  }
}

void LogFileReader::keepRaw(std::string_view text) {
  if (!keepRawLines_) {
    return;
  }
  file().rawLines.emplace_back(text);
  rawBytes_ += sizeof(std::string) + text.size();
  while (rawBytes_ > rawBytesKept) {
    rawBytes_ -= sizeof(std::string) + file().rawLines.front().size();
    file().rawLines.pop_front();
    ++file().rawLeftOut;
  }
}

struct Input {
  std::string name;
  bool fromFolder;
};

std::vector<Input> filesOf(const std::vector<std::string>& inputs) {
  std::vector<Input> files;
  for (const std::string& input : inputs) {
    std::error_code error;
    if (input == "-" || !std::filesystem::is_directory(pathFromText(input), error)) {
      files.push_back({input, /*fromFolder=*/false});
      continue;
    }
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(pathFromText(input), error)) {
      if (item.path().extension() == ".log" && item.is_regular_file(error)) {
        names.push_back(textFromPath(item.path()));
      }
    }
    std::sort(names.begin(), names.end());
    for (std::string& name : names) {
      files.push_back({std::move(name), /*fromFolder=*/true});
    }
  }
  return files;
}

void sortByTime(std::vector<LogEntry>& entries) {
  std::stable_sort(entries.begin(), entries.end(), [](const LogEntry& a, const LogEntry& b) {
    return a.time.value_or(Instant{}) < b.time.value_or(Instant{});
  });
}

// A folder holds other programs' logs, too.
void dropFile(LogSet& set, std::size_t firstEntry) {
  set.leftOut.push_back(set.files.back().name);
  set.files.pop_back();
  set.entries.resize(firstEntry);
}

}  // namespace

std::string LogSet::sourceOf(const LogEntry& entry) const {
  return entry.event ? cleanText(events[*entry.event].channel) : roleName(files[entry.file].role);
}

std::string roleName(LogRole role) {
  constexpr std::array<const char*, 4> names{"unknown", "session", "watchdog", "initial"};
  return names[static_cast<std::size_t>(role)];
}

LogSet readLogs(const std::vector<std::string>& inputs, std::istream& standardInput, Progress& progress,
                bool keepRawLines) {
  LogSet set;
  std::unordered_set<std::string> eventKeys;
  for (const Input& input : filesOf(inputs)) {
    const std::size_t firstEntry = set.entries.size();
    set.files.emplace_back().name = input.name;
    LogFileReader reader(set, eventKeys, keepRawLines);
    LineSplitter splitter;
    const LineSplitter::Visit visit = [&](const Line& line) { reader.take(line); };
    set.files.back().readable =
        readInput(input.name, standardInput, progress, [&](std::string_view bytes) { splitter.feed(bytes, visit); });
    splitter.finish(visit);
    reader.finish();
    if (input.fromFolder && set.files.back().readable && set.files.back().role == LogRole::Unknown) {
      dropFile(set, firstEntry);
    }
  }
  sortByTime(set.entries);
  return set;
}

}  // namespace sentiq
