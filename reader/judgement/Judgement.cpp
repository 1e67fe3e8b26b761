#include "reader/judgement/Judgement.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>
#include <iterator>
#include <set>
#include <sstream>
#include <tuple>

#include "reader/judgement/Failures.h"
#include "reader/judgement/Surroundings.h"

namespace sentiq {
namespace {

// A shutdown closes programs within minutes. One that began after the exit is not its cause; both are written within
// seconds of each other.
constexpr std::chrono::minutes shutdownLead{10};
constexpr std::chrono::seconds sameTime{10};
constexpr std::chrono::seconds shutdownDone{30};
// Records come every ten seconds.
constexpr std::chrono::minutes lastSign{2};
// Crash events come up to two minutes after the exit, when the channels are copied once more.
constexpr std::chrono::seconds lateEnough{100};
// A machine that went down is started again within this time, when nothing else tells when it went down.
constexpr std::chrono::hours soonRestarted{1};
// All events that tell of the same fall of the machine are written within this time after its start.
constexpr std::chrono::minutes sameBoot{15};

using Meanings = std::initializer_list<Meaning>;
// The machine goes down: without shutting down, or in any way.
constexpr Meanings falls{Meaning::PowerLoss, Meaning::SystemCrash};
constexpr Meanings ends{Meaning::PowerLoss, Meaning::SystemCrash, Meaning::ShutdownBegun, Meaning::ShutdownDone};

std::string at(const LogEntry& entry) {
  return " at " + showTime(*entry.time, entry.offset);
}

std::vector<int> numbersIn(std::string text) {
  std::replace_if(text.begin(), text.end(), [](char c) { return c < '0' || c > '9'; }, ' ');
  std::istringstream numbers(text);
  return {std::istream_iterator<int>(numbers), {}};
}

// The first minute from that time on which an event about an unexpected shutdown can mean: it has it as local text in
// the form of the system's language, so that the order of day and month is open, and often the half of the day.
std::optional<Instant> timeToldBy(const EventRecord& event, const LogEntry& entry, Instant from) {
  const std::vector<int> clock = numbersIn(event.field("Time"));
  const std::vector<int> date = numbersIn(event.field("Date"));
  if (clock.size() < 2 || date.size() != 3) {
    return std::nullopt;
  }
  constexpr std::chrono::days longest{30};
  const Instant until = std::min(*entry.time, Instant(from + longest)) + entry.offset;
  for (auto minute = std::chrono::floor<std::chrono::minutes>(from + entry.offset); minute <= until; ++minute) {
    const auto day = std::chrono::floor<std::chrono::days>(minute);
    const std::chrono::year_month_day parts(day);
    const std::chrono::hh_mm_ss<std::chrono::minutes> time(minute - day);
    const auto isDate = [&](int year) {
      const std::array<int, 3> shown{year, static_cast<int>(static_cast<unsigned>(parts.month())),
                                     static_cast<int>(static_cast<unsigned>(parts.day()))};
      return std::is_permutation(date.begin(), date.end(), shown.begin());
    };
    const auto hour = time.hours().count();
    const bool isHour = clock[0] == hour || (clock[0] <= 12 && clock[0] % 12 == hour % 12);
    const int year = static_cast<int>(parts.year());
    if (clock[1] == time.minutes().count() && isHour && (isDate(year) || isDate(year % 100))) {
      return minute - entry.offset;
    }
  }
  return std::nullopt;
}

class Judge {
 public:
  explicit Judge(const Session& session);

  Judgement judge();

 private:
  std::vector<const LogEntry*> all(Meanings meanings, Instant from, Instant to) const;
  const LogEntry* first(Meanings meanings, Instant from, Instant to = Instant::max()) const;
  const LogEntry* last(Meanings meanings, Instant from, Instant to) const;
  std::size_t indexOf(const LogEntry& entry) const;
  void conclude(const char* outcome, Severity severity, std::string text, const LogEntry* entry = nullptr);
  void say(std::string text, const LogEntry& entry, Severity severity = Severity::Notice);
  void judgeFailure();
  void judgeExit();
  bool judgeFall();
  void judgeStop();
  const LogEntry* shutdownAbout(Instant time, Ticks begunBy, Ticks doneBy) const;
  const LogEntry* sleepAtLast() const;
  bool fellThen(const std::vector<const LogEntry*>& tellers) const;
  void sayOtherFailures();
  void sayLater();
  void sayTimeBefore();

  const Session& session_;
  SessionSpan span_;
  WatchedProcess process_;
  std::vector<Failure> failures_;
  const LogEntry* exit_ = nullptr;
  const LogEntry* failure_ = nullptr;
  Judgement result_;
};

Judge::Judge(const Session& session) : session_(session), span_(sessionSpan(session)) {
  std::from_chars(session.processId.data(), session.processId.data() + session.processId.size(), process_.id);
  if (!session.metrics.empty()) {
    const MetricSample& record = session.metrics.front();
    process_.id = record.processId;
    if (const auto ran = parseElapsed(record.appRunTime)) {
      process_.started = record.time.instant - *ran;
    }
  }
  process_.begin = span_.begin;
  process_.over = span_.end;
  for (const LogEntry& entry : session.entries) {  // The records, where there are any, end with the process.
    process_.over = entry.role == LogRole::Session && entry.time ? entry.time : process_.over;
  }
  exit_ = first({Meaning::Exit}, Instant::min());
  process_.over = exit_ != nullptr ? exit_->time : process_.over;
  failures_ = failuresOf(session, process_);
  // A crash is the cause of a hang beside it: the process does not answer while its dump is written.
  for (const Meaning meaning : {Meaning::Hang, Meaning::Crash}) {
    const auto found = std::find_if(failures_.begin(), failures_.end(), [meaning](const Failure& failure) {
      return failure.whose == Whose::Watched && failure.entry->meaning == meaning;
    });
    failure_ = found != failures_.end() ? found->entry : failure_;
  }
}

Judgement Judge::judge() {
  if (!process_.over) {
    conclude("unknown", Severity::Notice, "How the session ended is unknown: its logs are missing");
  } else if (failure_ != nullptr) {
    judgeFailure();
  } else if (exit_ != nullptr) {
    judgeExit();
  } else if (!judgeFall()) {
    judgeStop();
  }
  sayOtherFailures();
  sayLater();
  for (Statement& statement : machineStatements(session_, span_)) {
    result_.others.push_back(std::move(statement));
  }
  sayTimeBefore();
  for (const MetricSample& record : session_.metrics) {
    result_.lowestDisk = std::min(result_.lowestDisk.value_or(record.freeDisk), record.freeDisk);
    result_.lowestPageFile = std::min(result_.lowestPageFile.value_or(record.freeSwap), record.freeSwap);
    result_.adapters = record.adapters;
  }
  return std::move(result_);
}

std::vector<const LogEntry*> Judge::all(Meanings meanings, Instant from, Instant to) const {
  std::vector<const LogEntry*> found;
  for (const LogEntry& entry : session_.entries) {
    const bool means = std::find(meanings.begin(), meanings.end(), entry.meaning) != meanings.end();
    if (means && entry.time && *entry.time >= from && *entry.time <= to) {
      found.push_back(&entry);
    }
  }
  return found;
}

const LogEntry* Judge::first(Meanings meanings, Instant from, Instant to) const {
  const std::vector<const LogEntry*> found = all(meanings, from, to);
  return found.empty() ? nullptr : found.front();
}

const LogEntry* Judge::last(Meanings meanings, Instant from, Instant to) const {
  const std::vector<const LogEntry*> found = all(meanings, from, to);
  return found.empty() ? nullptr : found.back();
}

std::size_t Judge::indexOf(const LogEntry& entry) const {
  return static_cast<std::size_t>(&entry - session_.entries.data());
}

void Judge::conclude(const char* outcome, Severity severity, std::string text, const LogEntry* entry) {
  result_.outcome = outcome;
  result_.verdict = {severity, std::move(text)};
  if (entry != nullptr) {
    result_.verdict.entry = indexOf(*entry);
    result_.time = LogTime{*entry->time, entry->offset};
    result_.evidence = evidenceOf(session_, *entry);
  }
}

void Judge::say(std::string text, const LogEntry& entry, Severity severity) {
  result_.others.push_back({severity, std::move(text), indexOf(entry)});
}

void Judge::judgeFailure() {
  const bool crash = failure_->meaning == Meaning::Crash;
  conclude(crash ? "crashed" : "hung", Severity::Error, "", failure_);
  const Evidence& evidence = result_.evidence;
  const std::string more = evidence.text(crash ? "exceptionWords" : "hangKind");
  if (crash) {
    result_.verdict.text = "Canvix crashed" + at(*failure_) + ": module " + evidence.text("module", "unknown") + ' ' +
                           evidence.text("moduleVersion", "unknown") + ", exception " +
                           evidence.text("exception", "unknown") + (more.empty() ? "" : " (" + more + ')') +
                           ", offset " + evidence.text("offset", "unknown");
  } else {
    result_.verdict.text =
        "Canvix stopped responding and was closed" + at(*failure_) + (more.empty() ? "" : ": " + more);
  }
  result_.before = whatWentBefore(session_, *failure_->time, /*hangsToo=*/crash);
  const Instant over = std::max(*failure_->time, *process_.over);
  if (const LogEntry* const shutdown =
          first({Meaning::ShutdownBegun}, *failure_->time - shutdownLead, over + lastSign)) {
    say("About then a shutdown or restart was asked for" + at(*shutdown) + ": " + shutdown->what, *shutdown);
  }
}

// One that was begun shortly before that time; one of which only the end is known counts unless it was begun later.
const LogEntry* Judge::shutdownAbout(Instant time, Ticks begunBy, Ticks doneBy) const {
  const LogEntry* const begun = last({Meaning::ShutdownBegun}, time - shutdownLead, time + begunBy);
  return begun == nullptr && first({Meaning::ShutdownBegun}, time, time + doneBy) == nullptr
             ? first({Meaning::ShutdownDone}, time - sameTime, time + doneBy)
             : begun;
}

void Judge::judgeExit() {
  const Instant time = *exit_->time;
  if (const LogEntry* const shutdown = shutdownAbout(time, sameTime, shutdownDone)) {
    conclude("shutdown", Severity::Notice,
             "Canvix ended" + at(*exit_) + " while the machine shut down: " + inSentence(shutdown->what), exit_);
  } else if (session_.applicationCopied && *session_.applicationCopied >= time + lateEnough) {
    conclude("ended", Severity::Info,
             "Canvix ended normally" + at(*exit_) + ": the event log holds no crash or hang of it", exit_);
  } else {
    conclude("ended", Severity::Notice,
             "Canvix ended" + at(*exit_) +
                 "; whether normally is unknown: the logs hold no copy of the Application events made late enough",
             exit_);
  }
}

// The sleep after which nothing more was written.
const LogEntry* Judge::sleepAtLast() const {
  const LogEntry* const power =
      last({Meaning::Sleep, Meaning::Resume}, *process_.over - lastSign, *span_.end + lastSign);
  return power != nullptr && power->meaning == Meaning::Sleep ? power : nullptr;
}

// Whether the machine went down when the logs stop, and not hours later.
bool Judge::fellThen(const std::vector<const LogEntry*>& tellers) const {
  constexpr std::chrono::minutes heartbeat{10};  // How exactly the system knows.
  bool asleep = sleepAtLast() != nullptr;
  for (const LogEntry* const teller : tellers) {
    const EventRecord& event = session_.eventOf(*teller);
    asleep = asleep || isSet(event, "SleepInProgress") || isSet(event, "ConnectedStandbyInProgress");
    if (const auto told = timeToldBy(event, *teller, *process_.over - heartbeat)) {
      return *told <= *process_.over + heartbeat;
    }
  }
  return asleep || *tellers.front()->time - *process_.over <= soonRestarted;
}

bool Judge::judgeFall() {
  const Instant over = *process_.over;
  const LogEntry* const fall = first(falls, over - lastSign);
  if (fall == nullptr || first({Meaning::ShutdownDone}, over, *fall->time) != nullptr ||
      first({Meaning::Boot}, over, *fall->time - sameBoot) != nullptr) {
    return false;
  }
  const std::vector<const LogEntry*> tellers = all(falls, *fall->time, *fall->time + sameBoot);
  if (!fellThen(tellers)) {
    return false;
  }
  // The one that tells most: of a blue screen the one with a dump, else the one with the reason.
  const auto rank = [&](const LogEntry* entry) {
    const EventRecord& event = session_.eventOf(*entry);
    return std::tuple(entry->meaning == Meaning::SystemCrash, !event.field("param2").empty(), event.id == 41);
  };
  const LogEntry* const best = *std::max_element(
      tellers.begin(), tellers.end(), [&](const LogEntry* a, const LogEntry* b) { return rank(a) < rank(b); });
  const LogEntry* const sleep = sleepAtLast();
  conclude(best->meaning == Meaning::SystemCrash ? "bluescreen" : "power-loss", Severity::Error,
           best->what + ", while Canvix ran" + (sleep != nullptr ? ", after it went to sleep" + at(*sleep) : "") +
               " (logged" + at(*best) + ')',
           best);
  result_.before = whatWentBefore(session_, over, /*hangsToo=*/true);
  return true;
}

// Nothing says that Canvix or the machine failed.
void Judge::judgeStop() {
  if (const LogEntry* const shutdown = shutdownAbout(*process_.over, lastSign, lastSign)) {
    conclude("shutdown", Severity::Notice,
             "The machine was shut down while Canvix ran: " + shutdown->what + at(*shutdown), shutdown);
  } else if (const LogEntry* const sleep = sleepAtLast()) {
    conclude("asleep", Severity::Warning, "The machine went to sleep" + at(*sleep) + ", and the logs end there", sleep);
  } else {
    conclude("unknown", Severity::Notice, "How the session ended is unknown: the logs stop while Canvix runs");
  }
}

void Judge::sayOtherFailures() {
  std::set<std::int64_t> told;
  for (const Failure& other : failures_) {
    const LogEntry& entry = *other.entry;
    const bool hang = entry.meaning == Meaning::Hang;
    if (other.whose == Whose::Other && other.process != 0 && told.insert(other.process).second) {
      say("Another Canvix, process " + std::to_string(other.process) + (hang ? ", stopped responding" : ", crashed") +
              at(entry) + ": " + entry.what,
          entry);
    }
    // 0 is no process.
    if (other.whose == Whose::Watched && hang && failure_->meaning == Meaning::Crash && *entry.time > *failure_->time &&
        told.insert(0).second) {
      say("It also stopped responding" + at(entry), entry);
    }
  }
  for (const Meaning meaning : {Meaning::Recovered, Meaning::Leak}) {
    const std::vector<const LogEntry*> found = all({meaning}, Instant::min(), Instant::max());
    const auto entry =
        std::find_if(found.begin(), found.end(), [&](const LogEntry* e) { return span_.contains(*e->time); });
    if (entry != found.end()) {
      say((*entry)->what + at(**entry), **entry);
    }
  }
}

// That the machine went down later proves nothing, but is worth a line.
void Judge::sayLater() {
  constexpr std::chrono::hours soonEnough{24};
  const bool told = result_.outcome == "bluescreen" || result_.outcome == "power-loss" || result_.outcome == "shutdown";
  if (told || !process_.over) {
    return;
  }
  if (const LogEntry* const later =
          first(failure_ != nullptr ? falls : ends, *process_.over + sameTime, *process_.over + soonEnough)) {
    say("Later, " + showDuration(*later->time - *process_.over) + " after the end: " + inSentence(later->what), *later);
  }
}

// What befell Canvix and the machine before the session, newest first: one line each.
void Judge::sayTimeBefore() {
  const Instant until = span_.begin ? *span_.begin - Ticks(1) : Instant::max();
  const LogEntry* found[]{last({Meaning::Crash, Meaning::Hang}, Instant::min(), until),
                          last(ends, Instant::min(), until)};
  if (found[0] != nullptr && found[1] != nullptr && *found[0]->time < *found[1]->time) {
    std::swap(found[0], found[1]);
  }
  for (const LogEntry* const entry : found) {
    if (entry != nullptr) {
      say("Before this session: " + inSentence(entry->what) + " (logged" + at(*entry) + ')', *entry, entry->severity);
    }
  }
}

}  // namespace

std::string Evidence::text(std::string_view name, const std::string& otherwise) const {
  const auto found = std::find_if(texts.begin(), texts.end(), [&](const auto& named) { return named.first == name; });
  return found != texts.end() ? found->second : otherwise;
}

bool SessionSpan::contains(Instant time) const {
  constexpr std::chrono::minutes afterEnd{5};  // The second copy of the event log follows the exit by two minutes.
  return begin && end && time >= *begin && time <= *end + afterEnd;
}

SessionSpan sessionSpan(const Session& session) {
  SessionSpan span;
  for (const LogEntry& entry : session.entries) {
    if (entry.time && !entry.event && entry.role != LogRole::Initial) {
      span.begin = std::min(span.begin.value_or(*entry.time), *entry.time);
      span.end = std::max(span.end.value_or(*entry.time), *entry.time);
      span.offset = entry.offset;
    }
  }
  if (span.begin && !session.metrics.empty()) {
    const MetricSample& first = session.metrics.front();
    const Instant start = first.time.instant - parseElapsed(first.appRunTime).value_or(Ticks{});
    span.begin = std::min(*span.begin, start);
  }
  return span;
}

Judgement judge(const Session& session) {
  return Judge(session).judge();
}

}  // namespace sentiq
