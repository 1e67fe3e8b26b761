#include "reader/session/Failures.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <sstream>
#include <string>
#include <string_view>

#include "reader/input/CleanText.h"
#include "reader/session/CodeWords.h"

namespace sentiq {
namespace {

// The error report of a crash may come later than the exit, and the exit later than the crash.
constexpr std::chrono::minutes nearEnd{5};

const EventRecord& eventOf(const Session& session, const LogEntry& entry) {
  return session.events[*entry.event];
}

bool isReport(const LogEntry& entry) {
  return entry.meaning == Meaning::CrashReport || entry.meaning == Meaning::HangReport;
}

std::string reportIdOf(const EventRecord& event) {
  const std::string& own = event.field("ReportId");
  return own.empty() ? event.field("IntegratorReportId") : own;
}

// Crash and report tell of the same failure: by their id, or, where ids do not help, because one soon follows the
// other.
bool tellOfTheSame(const Session& session, const LogEntry& a, const LogEntry& b) {
  const std::string id = reportIdOf(eventOf(session, a));
  const std::string other = reportIdOf(eventOf(session, b));
  return (!id.empty() && id == other) || std::chrono::abs(*a.time - *b.time) < nearEnd;
}

// A process id may be used again, but not at the same time. A creation time of other days is no help: then the clock
// was set in between.
bool startedAtAnotherTime(const EventRecord& event, const WatchedProcess& process) {
  constexpr std::chrono::minutes tolerance{2};
  constexpr std::chrono::hours days{48};
  constexpr std::int64_t ticksTo1970 = 116'444'736'000'000'000;
  const std::string& text = event.field("ProcessCreationTime");
  const auto ticks = parseHex(text.empty() ? event.field("StartTime") : text);
  const auto created =
      ticks ? std::optional(Instant(Ticks(static_cast<std::int64_t>(*ticks) - ticksTo1970))) : std::nullopt;
  return created && process.started && event.time && *created <= *event.time && *event.time - *created < days &&
         std::chrono::abs(*created - *process.started) > tolerance;
}

// Decimal in one event, hexadecimal in the others; 0 when there is none.
std::uint64_t stopCode(const EventRecord& event) {
  std::uint64_t code = 0;
  const std::string& decimal = event.field("BugcheckCode");
  std::from_chars(decimal.data(), decimal.data() + decimal.size(), code);
  return code != 0 ? code : parseHex(event.field(event.field("param1").empty() ? "P1" : "param1")).value_or(0);
}

}  // namespace

std::int64_t processOf(const EventRecord& event) {
  return static_cast<std::int64_t>(parseHex(event.field("ProcessId")).value_or(0));
}

Whose whoseFailure(const Session& session, const LogEntry& entry, const WatchedProcess& process) {
  if (!isFailure(entry.meaning) || !entry.event || !entry.time || !process.begin || *entry.time < *process.begin ||
      *entry.time > *process.over + nearEnd) {
    return Whose::None;
  }
  const EventRecord& event = eventOf(session, entry);
  if (!isReport(entry)) {
    const std::int64_t id = processOf(event);
    const bool known = id != 0 && process.id != 0;
    if (known && (id != process.id || startedAtAnotherTime(event, process))) {
      return Whose::Other;
    }
    return known || *entry.time >= *process.over - nearEnd ? Whose::Watched : Whose::None;
  }
  // A report names no process. It may be sent again later, under the same id; a process that ran on did not fail.
  const std::string id = reportIdOf(event);
  std::optional<Whose> whose;
  for (const LogEntry* const other : process.failures) {
    if (isReport(*other)) {
      if (!id.empty() && id == reportIdOf(eventOf(session, *other)) && *other->time < *process.begin) {
        return Whose::None;
      }
    } else if (tellOfTheSame(session, entry, *other)) {
      const Whose of = whoseFailure(session, *other, process);
      whose = of == Whose::Watched ? of : whose.value_or(of);
    }
  }
  return whose.value_or(*entry.time >= *process.over - nearEnd ? Whose::Watched : Whose::None);
}

Evidence evidenceOf(const Session& session, const LogEntry& entry) {
  Evidence evidence;
  if (!entry.event) {
    return evidence;
  }
  const EventRecord& event = eventOf(session, entry);
  const bool failure = isFailure(entry.meaning);
  evidence.canvixVersion = failure ? event.field("AppVersion") : "";
  if (entry.meaning == Meaning::Crash || entry.meaning == Meaning::CrashReport) {
    evidence.module = event.field("ModuleName");
    evidence.moduleVersion = event.field("ModuleVersion");
    evidence.exception = inHex(event.field("ExceptionCode"));
    evidence.offset = inHex(event.field("FaultingOffset"));
    evidence.exceptionWords = codeWords(CodeKind::Exception, parseHex(evidence.exception).value_or(0));
  } else if (failure) {
    evidence.hangKind = event.field("HangType") == "Unknown" ? "" : event.field("HangType");
  }
  if (entry.meaning == Meaning::SystemCrash) {
    const std::uint64_t code = stopCode(event);
    evidence.stopCode = showHex(code);
    evidence.stopWords = codeWords(CodeKind::Stop, code);
    if (const std::string& dump = event.field("param2"); !dump.empty()) {
      evidence.dumps = {dump};
    }
  }
  for (const LogEntry& other : session.entries) {
    if (!other.event || !failure || !(isReport(other) || &other == &entry) || !tellOfTheSame(session, entry, other)) {
      continue;
    }
    const EventRecord& report = eventOf(session, other);
    if (report.field("EventName").find("XProc") != std::string::npos && evidence.hangKind.empty()) {
      evidence.hangKind = "Cross-process";
    }
    evidence.reportId = reportIdOf(report);
    evidence.bucket = report.field(report.field("HashedBucket").empty() ? "Bucket" : "HashedBucket");
    evidence.reportPath = report.field("StorePath");
    std::istringstream files(report.field("AttachedFiles"));
    for (std::string file; std::getline(files, file);) {
      file.erase(file.find_last_not_of("\r ") + 1);
      if (file.size() > 4 && equalIgnoringCase(file.substr(file.size() - 3), "dmp")) {
        evidence.dumps.push_back(file);
      }
    }
  }
  return evidence;
}

}  // namespace sentiq
