#include "reader/session/Judgement.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/input/CleanText.h"
#include "reader/session/Failures.h"
#include "reader/session/Surroundings.h"

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

bool isAnyOf(Meaning meaning, std::initializer_list<Meaning> meanings) {
  return std::find(meanings.begin(), meanings.end(), meaning) != meanings.end();
}

std::string at(const LogEntry& entry) {
  return " at " + showTime(*entry.time, entry.offset);
}

// The times of which an event about an unexpected shutdown can speak: it has them as local text in the form of the
// system's language, so that the order of day and month is open, and often the half of the day.
std::vector<Instant> timesToldBy(const EventRecord& event, const LogEntry& entry) {
  const auto numbersIn = [](std::string_view text) {
    std::vector<int> numbers;
    for (std::size_t digit = 0; (digit = text.find_first_of("0123456789")) != std::string_view::npos;) {
      text.remove_prefix(digit);
      const char* const end = std::from_chars(text.data(), text.data() + text.size(), numbers.emplace_back()).ptr;
      text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    }
    return numbers;
  };
  const std::vector<int> clock = numbersIn(event.field("Time"));
  std::vector<int> date = numbersIn(event.field("Date"));
  if (clock.size() < 2 || date.size() != 3) {
    return {};
  }
  std::sort(date.begin(), date.end());
  constexpr std::chrono::days longAgo{30};
  std::vector<Instant> times;
  const auto lastDay = std::chrono::floor<std::chrono::days>(*entry.time + entry.offset);
  for (auto day = lastDay; lastDay - day < longAgo; day -= std::chrono::days(1)) {
    const std::chrono::year_month_day parts(day);
    const int year = static_cast<int>(parts.year());
    for (const int shownYear : {year, year % 100}) {
      std::vector<int> wanted{shownYear, static_cast<int>(static_cast<unsigned>(parts.month())),
                              static_cast<int>(static_cast<unsigned>(parts.day()))};
      std::sort(wanted.begin(), wanted.end());
      for (const int hours : {clock[0], clock[0] + 12}) {
        if (date == wanted && hours < 24) {
          times.emplace_back(day + std::chrono::hours(hours) + std::chrono::minutes(clock[1]) - entry.offset);
        }
      }
    }
  }
  return times;
}

class Judge {
 public:
  explicit Judge(const Session& session);

  Judgement judge();

 private:
  enum class Which : std::uint8_t { First, Last };

  const LogEntry* find(Which which, std::initializer_list<Meaning> meanings, std::optional<Instant> from = {},
                       std::optional<Instant> to = {}) const;
  std::size_t indexOf(const LogEntry& entry) const;
  void conclude(const char* outcome, Severity severity, std::string text, const LogEntry* entry);
  void say(Severity severity, std::string text, const LogEntry& entry);
  bool judgeFailure();
  void judgeExit();
  bool judgeFall();
  void judgeStop();
  const LogEntry* sleepAtLast() const;
  bool fellThen(const std::vector<const LogEntry*>& tellers) const;
  void sayOtherFailures();
  void sayLater();
  void sayTimeBefore();

  const Session& session_;
  SessionSpan span_;
  WatchedProcess process_;
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
  for (const LogEntry& entry : session.entries) {
    if (isFailure(entry.meaning) && entry.event && entry.time) {
      process_.failures.push_back(&entry);
    }
  }
  exit_ = find(Which::First, {Meaning::Exit});
  process_.begin = span_.begin;
  process_.over = span_.end;
  for (const LogEntry& entry : session.entries) {  // The records, where there are any, end with the process.
    process_.over = entry.role == LogRole::Session && entry.time ? entry.time : process_.over;
  }
  process_.over = exit_ != nullptr ? exit_->time : process_.over;
}

Judgement Judge::judge() {
  if (!judgeFailure()) {
    if (exit_ != nullptr) {
      judgeExit();
    } else if (!judgeFall()) {
      judgeStop();
    }
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

const LogEntry* Judge::find(Which which, std::initializer_list<Meaning> meanings, std::optional<Instant> from,
                            std::optional<Instant> to) const {
  const LogEntry* found = nullptr;
  for (const LogEntry& entry : session_.entries) {
    if (entry.time && isAnyOf(entry.meaning, meanings) && (!from || *entry.time >= *from) &&
        (!to || *entry.time <= *to) && (which == Which::Last || found == nullptr)) {
      found = &entry;
    }
  }
  return found;
}

std::size_t Judge::indexOf(const LogEntry& entry) const {
  return static_cast<std::size_t>(&entry - session_.entries.data());
}

void Judge::conclude(const char* outcome, Severity severity, std::string text, const LogEntry* entry) {
  result_.outcome = outcome;
  result_.verdict = {severity, std::move(text), {}};
  if (entry != nullptr) {
    result_.verdict.entry = indexOf(*entry);
    result_.time = LogTime{*entry->time, entry->offset};
    result_.evidence = evidenceOf(session_, *entry);
  }
}

void Judge::say(Severity severity, std::string text, const LogEntry& entry) {
  result_.others.push_back({severity, std::move(text), indexOf(entry)});
}

// A crash is the cause of a hang beside it: the process does not answer while its dump is written.
bool Judge::judgeFailure() {
  for (const Meaning meaning : {Meaning::Crash, Meaning::CrashReport, Meaning::Hang, Meaning::HangReport}) {
    const auto found = std::find_if(process_.failures.begin(), process_.failures.end(), [&](const LogEntry* entry) {
      return entry->meaning == meaning && whoseFailure(session_, *entry, process_) == Whose::Watched;
    });
    if (found == process_.failures.end()) {
      continue;
    }
    failure_ = *found;
    const bool crash = meaning == Meaning::Crash || meaning == Meaning::CrashReport;
    conclude(crash ? "crashed" : "hung", Severity::Error, "", failure_);
    const Evidence& evidence = result_.evidence;
    const auto known = [](const std::string& text) { return text.empty() ? std::string("unknown") : text; };
    std::string& text = result_.verdict.text;
    if (crash) {
      text = "Canvix crashed" + at(*failure_) + ": module " + known(evidence.module) + ' ' +
             known(evidence.moduleVersion) + ", exception " + known(evidence.exception) +
             (evidence.exceptionWords.empty() ? "" : " (" + evidence.exceptionWords + ')') + ", offset " +
             known(evidence.offset);
    } else {
      text = "Canvix stopped responding and was closed" + at(*failure_) +
             (evidence.hangKind.empty() ? "" : ": " + evidence.hangKind);
    }
    result_.before = whatWentBefore(session_, *failure_->time, /*hangsToo=*/crash);
    const Instant over = std::max(*failure_->time, *process_.over);
    if (const LogEntry* const shutdown =
            find(Which::First, {Meaning::ShutdownBegun}, *failure_->time - shutdownLead, over + lastSign)) {
      say(Severity::Notice, "About then a shutdown or restart was asked for" + at(*shutdown) + ": " + shutdown->what,
          *shutdown);
    }
    return true;
  }
  return false;
}

void Judge::judgeExit() {
  const Instant time = *exit_->time;
  const LogEntry* shutdown = find(Which::Last, {Meaning::ShutdownBegun}, time - shutdownLead, time + sameTime);
  if (shutdown == nullptr && find(Which::First, {Meaning::ShutdownBegun}, time, time + shutdownDone) == nullptr) {
    shutdown = find(Which::First, {Meaning::ShutdownDone}, time - sameTime, time + shutdownDone);
  }
  if (shutdown != nullptr) {
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
  const LogEntry* const power = find(Which::Last, {Meaning::Sleep, Meaning::Resume}, {}, *span_.end + lastSign);
  const bool sleep = power != nullptr && power->meaning == Meaning::Sleep && *power->time >= *process_.over - lastSign;
  return sleep ? power : nullptr;
}

// Whether the machine went down when the logs stop, and not hours later.
bool Judge::fellThen(const std::vector<const LogEntry*>& tellers) const {
  constexpr std::chrono::minutes heartbeat{10};  // How exactly the system knows.
  bool told = false;
  bool asleep = sleepAtLast() != nullptr;
  for (const LogEntry* const teller : tellers) {
    const EventRecord& event = session_.events[*teller->event];
    asleep = asleep || isSet(event, "SleepInProgress") || isSet(event, "ConnectedStandbyInProgress");
    for (const Instant time : timesToldBy(event, *teller)) {
      if (std::chrono::abs(time - *process_.over) <= heartbeat) {
        return true;
      }
      told = told || time > *process_.over;
    }
  }
  return !told && (asleep || *tellers.front()->time - *process_.over <= soonRestarted);
}

bool Judge::judgeFall() {
  if (!process_.over) {
    return false;
  }
  const LogEntry* const fall =
      find(Which::First, {Meaning::PowerLoss, Meaning::SystemCrash}, *process_.over - lastSign);
  if (fall == nullptr || find(Which::First, {Meaning::ShutdownDone}, process_.over, *fall->time) != nullptr ||
      find(Which::First, {Meaning::Boot}, process_.over, *fall->time - sameBoot) != nullptr) {
    return false;
  }
  std::vector<const LogEntry*> tellers;
  for (const LogEntry& entry : session_.entries) {
    if (entry.event && entry.time && isAnyOf(entry.meaning, {Meaning::PowerLoss, Meaning::SystemCrash}) &&
        *entry.time >= *fall->time && *entry.time <= *fall->time + sameBoot) {
      tellers.push_back(&entry);
    }
  }
  if (!fellThen(tellers)) {
    return false;
  }
  // The one that tells most: of a blue screen the one with a dump, else the one with the reason.
  const auto rank = [&](const LogEntry* entry) {
    const EventRecord& event = session_.events[*entry->event];
    return (entry->meaning == Meaning::SystemCrash ? 4 : 0) + (event.id == 41                  ? 1
                                                               : event.field("param2").empty() ? 0
                                                                                               : 2);
  };
  const LogEntry* const best = *std::max_element(
      tellers.begin(), tellers.end(), [&](const LogEntry* a, const LogEntry* b) { return rank(a) < rank(b); });
  const LogEntry* const sleep = sleepAtLast();
  conclude(best->meaning == Meaning::SystemCrash ? "bluescreen" : "power-loss", Severity::Error,
           best->what + ", while Canvix ran" + (sleep != nullptr ? ", after it went to sleep" + at(*sleep) : "") +
               " (logged" + at(*best) + ')',
           best);
  result_.before = whatWentBefore(session_, *process_.over, /*hangsToo=*/true);
  return true;
}

// Nothing says that Canvix or the machine failed.
void Judge::judgeStop() {
  if (!process_.over) {
    conclude("unknown", Severity::Notice, "How the session ended is unknown: its logs are missing", nullptr);
    return;
  }
  const Instant over = *process_.over;
  const LogEntry* const begun = find(Which::First, {Meaning::ShutdownBegun}, over - shutdownLead, over + lastSign);
  const LogEntry* const shutdown =
      begun != nullptr ? begun : find(Which::First, {Meaning::ShutdownDone}, over - sameTime, over + lastSign);
  if (shutdown != nullptr) {
    conclude("shutdown", Severity::Notice,
             "The machine was shut down while Canvix ran: " + shutdown->what + at(*shutdown), shutdown);
  } else if (const LogEntry* const sleep = sleepAtLast()) {
    conclude("asleep", Severity::Warning, "The machine went to sleep" + at(*sleep) + ", and the logs end there", sleep);
  } else {
    conclude("unknown", Severity::Notice, "How the session ended is unknown: the logs stop while Canvix runs", nullptr);
  }
}

void Judge::sayOtherFailures() {
  std::set<std::int64_t> told;
  for (const LogEntry& entry : session_.entries) {
    if (!entry.event || !entry.time) {
      continue;
    }
    const EventRecord& event = session_.events[*entry.event];
    const bool hang = isAnyOf(entry.meaning, {Meaning::Hang, Meaning::HangReport});
    const Whose whose = whoseFailure(session_, entry, process_);
    if (whose == Whose::Other && processOf(event) != 0 && told.insert(processOf(event)).second) {
      say(Severity::Notice,
          "Another Canvix, process " + std::to_string(processOf(event)) +
              (hang ? ", stopped responding" : ", crashed") + at(entry) + ": " + entry.what,
          entry);
    } else if (whose == Whose::Watched && hang && failure_ != nullptr && *entry.time > *failure_->time &&
               isAnyOf(failure_->meaning, {Meaning::Crash, Meaning::CrashReport}) && told.insert(-1).second) {
      say(Severity::Notice, "It also stopped responding" + at(entry), entry);
    } else if (isAnyOf(entry.meaning, {Meaning::Recovered, Meaning::Leak}) && span_.contains(*entry.time) &&
               told.insert(entry.meaning == Meaning::Leak ? -2 : -3).second) {
      say(Severity::Notice, entry.what + at(entry), entry);
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
  const Instant from = *process_.over + sameTime;
  const Instant to = *process_.over + soonEnough;
  const LogEntry* const later =
      failure_ != nullptr
          ? find(Which::First, {Meaning::PowerLoss, Meaning::SystemCrash}, from, to)
          : find(Which::First,
                 {Meaning::PowerLoss, Meaning::SystemCrash, Meaning::ShutdownBegun, Meaning::ShutdownDone}, from, to);
  if (later != nullptr) {
    say(Severity::Notice,
        "Later, " + showDuration(*later->time - *process_.over) + " after the end: " + inSentence(later->what), *later);
  }
}

// What befell Canvix and the machine before the session, newest first: one line each.
void Judge::sayTimeBefore() {
  const Instant until = span_.begin ? *span_.begin - Ticks(1) : Instant::max();
  const LogEntry* found[]{
      find(Which::Last, {Meaning::Crash, Meaning::CrashReport, Meaning::Hang, Meaning::HangReport}, {}, until),
      find(Which::Last, {Meaning::PowerLoss, Meaning::SystemCrash, Meaning::ShutdownBegun, Meaning::ShutdownDone}, {},
           until)};
  if (found[0] != nullptr && found[1] != nullptr && *found[0]->time < *found[1]->time) {
    std::swap(found[0], found[1]);
  }
  for (const LogEntry* const entry : found) {
    if (entry != nullptr) {
      say(entry->severity, "Before this session: " + inSentence(entry->what) + " (logged" + at(*entry) + ')', *entry);
    }
  }
}

}  // namespace

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
