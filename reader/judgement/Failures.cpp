#include "reader/judgement/Failures.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "reader/events/CodeWords.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// The error report of a crash may come later than the exit, and the exit later than the crash.
constexpr std::chrono::minutes nearEnd{5};

std::string reportIdOf(const EventRecord& event) {
  const std::string& own = event.field("ReportId");
  return own.empty() ? event.field("IntegratorReportId") : own;
}

// Crash and report tell of the same failure: by their id, or, where ids do not help, because one soon follows the
// other.
bool tellOfTheSame(const Session& session, const LogEntry& a, const LogEntry& b) {
  const std::string id = reportIdOf(session.eventOf(a));
  return (!id.empty() && id == reportIdOf(session.eventOf(b))) || std::chrono::abs(*a.time - *b.time) < nearEnd;
}

// A process id may be used again, but not at the same time. A creation time of other days is no help: then the clock
// was set in between.
bool startedAtAnotherTime(const EventRecord& event, const WatchedProcess& process) {
  constexpr std::chrono::minutes tolerance{2};
  constexpr std::chrono::hours days{48};
  constexpr std::int64_t ticksTo1970 = 116'444'736'000'000'000;
  const std::string& text = event.field("ProcessCreationTime");
  const auto ticks = parseHex(text.empty() ? event.field("StartTime") : text);
  if (!ticks || !process.started || !event.time) {
    return false;
  }
  const Instant created(Ticks(static_cast<std::int64_t>(*ticks) - ticksTo1970));
  return created <= *event.time && *event.time - created < days &&
         std::chrono::abs(created - *process.started) > tolerance;
}

// A report names no process. It may be sent again later, under the same id; a process that ran on did not fail.
Whose whoseReport(const Session& session, const LogEntry& entry, const WatchedProcess& process,
                  const std::vector<Failure>& others) {
  const std::string id = reportIdOf(session.eventOf(entry));
  std::optional<Whose> whose;
  for (const Failure& other : others) {
    const EventRecord& event = session.eventOf(*other.entry);
    if (!event.isReport() && tellOfTheSame(session, entry, *other.entry)) {
      whose = std::max(whose.value_or(other.whose), other.whose);
    } else if (event.isReport() && !id.empty() && id == reportIdOf(event) && *other.entry->time < *process.begin) {
      return Whose::Nobody;
    }
  }
  return whose.value_or(*entry.time >= *process.over - nearEnd ? Whose::Watched : Whose::Nobody);
}

Whose whoseFailure(const Session& session, const Failure& failure, const WatchedProcess& process,
                   const std::vector<Failure>& others) {
  const Instant time = *failure.entry->time;
  const EventRecord& event = session.eventOf(*failure.entry);
  if (!process.begin || time < *process.begin || time > *process.over + nearEnd) {
    return Whose::Nobody;
  }
  if (event.isReport()) {
    return whoseReport(session, *failure.entry, process, others);
  }
  const bool known = failure.process != 0 && process.id != 0;
  if (known && (failure.process != process.id || startedAtAnotherTime(event, process))) {
    return Whose::Other;
  }
  return known || time >= *process.over - nearEnd ? Whose::Watched : Whose::Nobody;
}

// Decimal in one event, hexadecimal in the others; 0 when there is none.
std::uint64_t stopCode(const EventRecord& event) {
  std::uint64_t code = 0;
  const std::string& decimal = event.field("BugcheckCode");
  std::from_chars(decimal.data(), decimal.data() + decimal.size(), code);
  return code != 0 ? code : parseHex(event.field(event.field("param1").empty() ? "P1" : "param1")).value_or(0);
}

}  // namespace

std::vector<Failure> failuresOf(const Session& session, const WatchedProcess& process) {
  std::vector<Failure> failures;
  for (const bool reports : {false, true}) {
    for (const LogEntry& entry : session.entries) {
      if (isFailure(entry.meaning) && entry.time && session.eventOf(entry).isReport() == reports) {
        const auto id = parseHex(session.eventOf(entry).field("ProcessId")).value_or(0);
        Failure failure{&entry, Whose::Nobody, static_cast<std::int64_t>(id)};
        failure.whose = whoseFailure(session, failure, process, failures);
        failures.push_back(failure);
      }
    }
  }
  return failures;
}

Evidence evidenceOf(const Session& session, const LogEntry& entry) {
  Evidence evidence;
  if (!entry.event) {
    return evidence;
  }
  const EventRecord& event = session.eventOf(entry);
  const auto add = [&](const char* name, std::string_view text) {
    if (!text.empty()) {
      evidence.texts.emplace_back(name, text);
    }
  };
  if (entry.meaning == Meaning::SystemCrash) {
    const std::uint64_t code = stopCode(event);
    add("stopCode", showHex(code));
    add("stopWords", codeWords(CodeKind::Stop, code));
    if (const std::string& dump = event.field("param2"); !dump.empty()) {
      evidence.dumps = {dump};
    }
  }
  if (!isFailure(entry.meaning)) {
    return evidence;
  }
  std::string hangKind = event.field("HangType") == "Unknown" ? "" : event.field("HangType");
  const EventRecord* last = &event;  // That tells of it.
  for (const LogEntry& other : session.entries) {
    if (!isFailure(other.meaning) || !other.time || !session.eventOf(other).isReport() ||
        !tellOfTheSame(session, entry, other)) {
      continue;
    }
    last = &session.eventOf(other);
    if (last->field("EventName").find("XProc") != std::string::npos && hangKind.empty()) {
      hangKind = "Cross-process";
    }
    std::istringstream files(last->field("AttachedFiles"));
    for (std::string file; std::getline(files, file);) {
      file.erase(file.find_last_not_of("\r ") + 1);
      if (file.size() > 4 && equalIgnoringCase(file.substr(file.size() - 3), "dmp")) {
        evidence.dumps.push_back(file);
      }
    }
  }
  if (entry.meaning == Meaning::Crash) {
    const std::string exception = inHex(event.field("ExceptionCode"));
    add("module", event.field("ModuleName"));
    add("moduleVersion", event.field("ModuleVersion"));
    add("exception", exception);
    add("exceptionWords", codeWords(CodeKind::Exception, parseHex(exception).value_or(0)));
    add("offset", inHex(event.field("FaultingOffset")));
  } else {
    add("hangKind", hangKind);
  }
  add("canvixVersion", event.field("AppVersion"));
  add("reportId", reportIdOf(reportIdOf(*last).empty() ? event : *last));
  add("bucket", last->field(last->field("HashedBucket").empty() ? "Bucket" : "HashedBucket"));
  add("reportPath", last->field("StorePath"));
  return evidence;
}

}  // namespace sentiq
