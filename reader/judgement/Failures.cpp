#include "reader/judgement/Failures.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>

namespace sentiq {
namespace {

// Those that tell of one failure without naming it follow each other within this time; so do a failure and the exit.
constexpr std::chrono::minutes nearby{5};

// Fills in what is not known yet.
void addFacts(ProgramFailure& facts, ProgramFailure more) {
  for (std::string ProgramFailure::* const text :
       {&ProgramFailure::version, &ProgramFailure::module, &ProgramFailure::moduleVersion,
        &ProgramFailure::exceptionName, &ProgramFailure::hangKind, &ProgramFailure::reportId, &ProgramFailure::bucket,
        &ProgramFailure::reportPath}) {
    if ((facts.*text).empty()) {
      facts.*text = std::move(more.*text);
    }
  }
  facts.exception = facts.exception ? facts.exception : more.exception;
  facts.offset = facts.offset ? facts.offset : more.offset;
  facts.processId = facts.processId != 0 ? facts.processId : more.processId;
  facts.created = facts.created ? facts.created : more.created;
  for (std::string& dump : more.dumps) {
    if (std::find(facts.dumps.begin(), facts.dumps.end(), dump) == facts.dumps.end()) {
      facts.dumps.push_back(std::move(dump));
    }
  }
}

// Whether nothing says that the entry tells of another one.
bool isSame(const Failure& failure, const LogEntry& entry, const ProgramFailure& facts) {
  const ProgramFailure& known = failure.facts;
  const bool otherReport = !facts.reportId.empty() && !known.reportId.empty();  // Else it was found by its id.
  const bool otherProcess = facts.processId != 0 && known.processId != 0 && facts.processId != known.processId;
  const bool twoEvents = facts.teller == Teller::Event && known.teller == Teller::Event;
  return failure.hang == (entry.meaning == Meaning::Hang) && !otherReport && !otherProcess && !twoEvents &&
         std::chrono::abs(*entry.time - failure.time()) < nearby;
}

// The last one that the entry may tell of; else a new one, which is added.
std::size_t placeOf(std::vector<Failure>& failures, const LogEntry& entry, const ProgramFailure& facts) {
  constexpr std::size_t mostLookedAt = 8;  // Beside it stand at most a few others.
  for (std::size_t i = failures.size(); i > 0 && failures.size() - i < mostLookedAt; --i) {
    if (isSame(failures[i - 1], entry, facts)) {
      return i - 1;
    }
  }
  failures.push_back({entry.meaning == Meaning::Hang});
  return failures.size() - 1;
}

void addTeller(Failure& failure, const LogEntry& entry, ProgramFailure facts) {
  if (failure.best == nullptr || facts.teller < failure.facts.teller) {  // It tells more than those before.
    failure.best = &entry;
    std::swap(failure.facts, facts);
  }
  addFacts(failure.facts, std::move(facts));
}

// A process id may be used again, but not at the same time. A creation time of other days is no help: then the clock
// was set in between.
std::optional<bool> startedThen(const Failure& failure, const WatchedProcess& process) {
  constexpr std::chrono::minutes tolerance{2};
  constexpr std::chrono::hours days{48};
  const std::optional<Instant> created = failure.facts.created;
  if (!created || !process.started) {
    return std::nullopt;
  }
  const bool same = std::chrono::abs(*created - *process.started) <= tolerance;
  const bool helps = same || (*created <= failure.time() && failure.time() - *created < days);
  return helps ? std::optional(same) : std::nullopt;
}

Whose whoseFailure(const Failure& failure, const WatchedProcess& process, const Session& session) {
  if (!process.begin || !process.over) {
    return Whose::Nobody;
  }
  const Instant time = failure.time();
  const Instant first = *session.entries[failure.tellers.front()].time;
  const bool inTime = first >= *process.begin && time <= *process.over + nearby;
  const bool ranOn = time < *process.over - nearby;
  if (failure.facts.processId == 0 || process.id == 0) {
    const bool otherIsNearer = std::any_of(session.otherExits.begin(), session.otherExits.end(), [&](Instant exit) {
      return std::chrono::abs(exit - time) < std::chrono::abs(*process.over - time);
    });
    return !inTime || ranOn ? Whose::Nobody : otherIsNearer ? Whose::Other : Whose::Watched;
  }
  if (failure.facts.processId == process.id && startedThen(failure, process).value_or(inTime)) {
    return ranOn ? Whose::WatchedRanOn : Whose::Watched;
  }
  return inTime ? Whose::Other : Whose::Nobody;
}

}  // namespace

WatchedProcess watchedProcess(const Session& session, const EntryIndex& index, const SessionSpan& span) {
  WatchedProcess process;
  process.begin = span.begin;
  process.over = span.end;
  std::from_chars(session.processId.data(), session.processId.data() + session.processId.size(), process.id);
  if (!session.metrics.empty()) {
    const MetricSample& record = session.metrics.front();
    process.id = record.processId;
    process.started = record.ran ? std::optional(record.time.instant - *record.ran) : std::nullopt;
  }
  // The records, where there are any, end with the process: with the last line, since the clock may have been set back.
  const LogEntry* last = nullptr;
  for (const LogEntry& entry : session.entries) {
    const bool ofRecords = entry.role == LogRole::Session && entry.time && !entry.event;
    if (ofRecords && (last == nullptr || entry.file != last->file || entry.line > last->line)) {
      last = &entry;
      process.over = entry.time;
    }
  }
  if (const std::vector<const LogEntry*> exits = index.all({Meaning::Exit}); !exits.empty()) {
    process.over = exits.front()->time;
  }
  if (process.begin && process.over && *process.over < *process.begin) {  // The clock was set back meanwhile.
    process.begin = process.over;
  }
  return process;
}

std::vector<Failure> failuresOf(const Session& session, const EntryIndex& index, const WatchedProcess& process) {
  std::vector<Failure> failures;
  std::unordered_map<std::string, std::size_t> byReport;
  for (const LogEntry* const entry : index.all({Meaning::Crash, Meaning::Hang})) {
    ProgramFailure facts = programFailure(session.eventOf(*entry));
    const std::string report = facts.reportId;
    const auto known = byReport.find(report);
    const std::size_t place = known != byReport.end() ? known->second : placeOf(failures, *entry, facts);
    addTeller(failures[place], *entry, std::move(facts));
    failures[place].tellers.push_back(index.indexOf(*entry));
    if (!report.empty()) {
      byReport.emplace(report, place);
    }
  }
  for (Failure& failure : failures) {
    failure.whose = whoseFailure(failure, process, session);
  }
  return failures;
}

}  // namespace sentiq
