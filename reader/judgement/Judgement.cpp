#include "reader/judgement/Judgement.h"

#include <algorithm>
#include <set>
#include <utility>

#include "reader/events/CodeWords.h"
#include "reader/events/EventWords.h"
#include "reader/judgement/Changes.h"
#include "reader/judgement/EntryIndex.h"
#include "reader/judgement/Failures.h"
#include "reader/judgement/MachineFalls.h"
#include "reader/judgement/Reach.h"
#include "reader/judgement/Sleeps.h"
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
// A machine that went down is started again within this time, when nothing else tells when it went down.
constexpr std::chrono::hours soonRestarted{1};

std::string at(const LogEntry& entry) {
  return " at " + showTime(*entry.time, entry.offset);
}

class Judge {
 public:
  explicit Judge(const Session& session)
      : session_(session),
        index_(session),
        span_(sessionSpan(session)),
        process_(watchedProcess(session, index_, span_)),
        sleeps_(sleepsOf(session)),
        boots_(bootsOf(session, index_)),
        failures_(failuresOf(session, index_, process_)) {
    std::optional<Alive> alive;
    if (process_.begin && process_.over) {
      alive = Alive{*process_.begin, *process_.over};
    }
    falls_ = fallsOf(session, index_, boots_, alive);
  }

  Judgement judge();

 private:
  std::string wordsFor(const LogEntry& entry) const { return wordsOf(session_, entry); }
  void conclude(Outcome outcome, Severity severity, std::string text, const LogEntry* entry, TimeRange time);
  void say(std::string text, const LogEntry& entry, Severity severity = Severity::Notice);
  const Failure* ownFailure() const;
  void judgeFailure(const Failure& failure);
  void judgeExit(const LogEntry& exit);
  const Fall* ownFall() const;
  void judgeFall(const Fall& fall);
  void judgeStop();
  const LogEntry* shutdownAbout(Instant time, Ticks begunBy, Ticks doneBy) const;
  const Sleep* sleepAtLast() const;
  void sayOtherFailures(const Failure* own);
  void sayLater();
  void sayTimeBefore();
  void addFigures();

  const Session& session_;
  EntryIndex index_;
  SessionSpan span_;
  WatchedProcess process_;
  std::vector<Sleep> sleeps_;
  std::vector<Instant> boots_;
  std::vector<Failure> failures_;
  std::vector<Fall> falls_;
  Judgement result_;
};

Judgement Judge::judge() {
  result_.offset = span_.offset;
  const Failure* const failure = ownFailure();
  const std::vector<const LogEntry*>& exits = index_.all(Meaning::Exit);
  if (!process_.over) {
    result_.verdict = {Severity::Notice, "How the session ended is unknown: its logs are missing"};
  } else if (failure != nullptr) {
    judgeFailure(*failure);
  } else if (!exits.empty()) {
    judgeExit(*exits.front());
  } else if (const Fall* const fall = ownFall()) {
    judgeFall(*fall);
  } else {
    judgeStop();
  }
  sayOtherFailures(failure);
  sayLater();
  for (Statement& statement : machineStatements(session_, index_, span_, sleeps_)) {
    result_.others.push_back(std::move(statement));
  }
  sayTimeBefore();
  addFigures();
  return std::move(result_);
}

void Judge::conclude(Outcome outcome, Severity severity, std::string text, const LogEntry* entry, TimeRange time) {
  result_.outcome = outcome;
  result_.verdict = {severity, std::move(text)};
  result_.time = time;
  if (entry != nullptr) {
    result_.verdict.entry = index_.indexOf(*entry);
    result_.offset = entry->offset;
  }
}

void Judge::say(std::string text, const LogEntry& entry, Severity severity) {
  result_.others.push_back({severity, std::move(text), index_.indexOf(entry)});
}

// A crash is the cause of a hang beside it: the process does not answer while its dump is written.
const Failure* Judge::ownFailure() const {
  const Failure* own = nullptr;
  for (const Failure& failure : failures_) {
    if (failure.whose == Whose::Watched && (own == nullptr || (own->hang && !failure.hang))) {
      own = &failure;
    }
  }
  return own;
}

void Judge::judgeFailure(const Failure& failure) {
  const ProgramFailure& facts = failure.facts;
  std::string text;
  if (failure.hang) {
    text = "Canvix stopped responding and was closed" + at(*failure.best) +
           (facts.hangKind.empty() ? "" : ": " + facts.hangKind);
  } else {
    const auto known = [](const std::string& value) { return value.empty() ? "unknown" : value; };
    const std::string words(codeWords(CodeKind::Exception, facts.exception.value_or(0)));
    const std::string name = !facts.exceptionName.empty() ? facts.exceptionName : words;
    text = "Canvix crashed" + at(*failure.best) + ": module " + known(facts.module) +
           (facts.moduleVersion.empty() ? "" : ' ' + facts.moduleVersion) + ", exception " +
           (facts.exception ? showHex(*facts.exception) + (name.empty() ? "" : " (" + name + ')') : known(name)) +
           (facts.offset ? ", offset " + showHex(*facts.offset) : "");
  }
  const Instant time = failure.time();
  conclude(failure.hang ? Outcome::Hung : Outcome::Crashed, Severity::Error, std::move(text), failure.best,
           {time, time});
  result_.evidence.failure = facts;
  for (const LogEntry* const teller : failure.tellers) {
    result_.evidence.entries.push_back(index_.indexOf(*teller));
  }
  result_.before = whatWentBefore(session_, index_, time, /*hangsToo=*/!failure.hang);
  const Instant over = std::max(time, *process_.over);
  if (const LogEntry* const shutdown = index_.first({Meaning::ShutdownBegun}, time - shutdownLead, over + lastSign)) {
    say("About then a shutdown or restart was asked for" + at(*shutdown) + ": " + wordsFor(*shutdown), *shutdown);
  }
}

// One that was begun shortly before that time; one of which only the end is known counts unless it was begun later.
const LogEntry* Judge::shutdownAbout(Instant time, Ticks begunBy, Ticks doneBy) const {
  const LogEntry* const begun = index_.last({Meaning::ShutdownBegun}, time - shutdownLead, time + begunBy);
  return begun == nullptr && index_.first({Meaning::ShutdownBegun}, time, time + doneBy) == nullptr
             ? index_.first({Meaning::ShutdownDone}, time - sameTime, time + doneBy)
             : begun;
}

void Judge::judgeExit(const LogEntry& exit) {
  const Instant time = *exit.time;
  if (const LogEntry* const shutdown = shutdownAbout(time, sameTime, shutdownDone)) {
    conclude(Outcome::Shutdown, Severity::Notice,
             "Canvix ended" + at(exit) + " while the machine shut down: " + inSentence(wordsFor(*shutdown)), &exit,
             {time, time});
    return;
  }
  const std::string missing = missingAbout(session_, exit);
  conclude(Outcome::Ended, missing.empty() ? Severity::Info : Severity::Notice,
           missing.empty() ? "Canvix ended normally" + at(exit) + ": the event log holds no crash or hang of it"
                           : "Canvix ended" + at(exit) + "; whether normally is unknown: " + missing,
           &exit, {time, time});
}

// The sleep after which nothing more was written.
const Sleep* Judge::sleepAtLast() const {
  for (auto sleep = sleeps_.rbegin(); sleep != sleeps_.rend(); ++sleep) {
    if (sleep->begin && *sleep->begin <= *span_.end + lastSign) {
      const bool woke = sleep->end && *sleep->end <= *process_.over + lastSign;
      return *sleep->begin >= *process_.over - lastSign && !woke ? &*sleep : nullptr;
    }
  }
  return nullptr;
}

// The fall that ended the session: the machine went down when the logs stop, and not hours later.
const Fall* Judge::ownFall() const {
  const Instant over = *process_.over;
  const auto fall = std::find_if(falls_.begin(), falls_.end(), [&](const Fall& f) { return f.back > over; });
  if (fall == falls_.end()) {
    return nullptr;
  }
  const auto boot = std::upper_bound(boots_.begin(), boots_.end(), over);
  const bool startedBefore = boot != boots_.end() && *boot < fall->back;
  if (startedBefore || index_.first({Meaning::ShutdownDone}, over, fall->back) != nullptr) {
    return nullptr;
  }
  if (const auto told = toldTime(*fall, over - heartbeat)) {
    return *told <= over + heartbeat || sleepAtLast() != nullptr ? &*fall : nullptr;
  }
  const bool asleep = sleepAtLast() != nullptr || fall->facts.asleep || fall->facts.inStandby;
  return asleep || fall->back - over <= soonRestarted ? &*fall : nullptr;
}

void Judge::judgeFall(const Fall& fall) {
  const TimeRange range = timeOf(fall, *process_.over);
  const LogEntry& best = *fall.best;
  const Sleep* const sleep = sleepAtLast();
  const auto show = [&](Instant time) { return showTime(time, best.offset); };
  std::string text = wordsFor(best) + ", while Canvix ran, " +
                     (range.from < range.to ? "between " + show(range.from) + " and " + show(range.to)
                                            : "shortly after " + show(range.from));
  if (sleep != nullptr) {
    const char* const how = sleep->kind == SleepKind::Standby       ? "went into modern standby"
                            : sleep->kind == SleepKind::Hibernation ? "began to hibernate"
                                                                    : "went to sleep";
    text += std::string(", after it ") + how + " at " + show(*sleep->begin);
  }
  if (range.to < fall.back) {
    text += (fall.backIsKnown ? "; it was up again at " : "; it was up again by ") + show(fall.back);
  }
  conclude(best.meaning == Meaning::BlueScreen ? Outcome::BlueScreen : Outcome::PowerLoss, Severity::Error,
           std::move(text), &best, range);
  result_.back = fall.back;
  result_.evidence.fall = fall.facts;
  for (const LogEntry* const teller : fall.tellers) {
    result_.evidence.entries.push_back(index_.indexOf(*teller));
  }
  result_.before = whatWentBefore(session_, index_, *process_.over, /*hangsToo=*/true);
}

// Nothing says that Canvix or the machine failed.
void Judge::judgeStop() {
  const Instant over = *process_.over;
  if (const LogEntry* const shutdown = shutdownAbout(over, lastSign, lastSign)) {
    conclude(Outcome::Shutdown, Severity::Notice,
             "The machine was shut down while Canvix ran: " + wordsFor(*shutdown) + at(*shutdown), shutdown,
             {over, std::max(over, *shutdown->time)});
  } else if (const Sleep* const sleep = sleepAtLast()) {
    const LogEntry& entry = session_.entries[sleep->entry];
    const std::string words = entry.event ? wordsFor(entry) : "The machine went to sleep";
    conclude(Outcome::Asleep, Severity::Warning,
             words + " at " + showTime(*sleep->begin, entry.offset) + ", and the logs end there", &entry,
             {*sleep->begin, *sleep->begin});
  } else {
    result_.verdict = {Severity::Notice, "How the session ended is unknown: the logs stop while Canvix runs"};
  }
}

void Judge::sayOtherFailures(const Failure* own) {
  std::set<std::int64_t> told;
  for (const Failure& failure : failures_) {
    const LogEntry& entry = *failure.best;
    const std::int64_t process = failure.facts.processId;
    if (failure.whose == Whose::Other && told.insert(process).second) {
      say("Another Canvix" + (process != 0 ? ", process " + std::to_string(process) : "") +
              (failure.hang ? ", stopped responding" : ", crashed") + at(entry) + ": " + wordsFor(entry),
          entry);
    } else if (failure.whose == Whose::WatchedRanOn) {
      say("It ran on after this" + at(entry) + ": " + wordsFor(entry), entry);
    } else if (failure.whose == Whose::Watched && &failure != own && own != nullptr && failure.hang && !own->hang &&
               failure.time() > own->time() && told.insert(0).second) {  // 0 is no process.
      say("It also stopped responding" + at(entry), entry);
    }
  }
  for (const Meaning meaning : {Meaning::Recovered, Meaning::Leak}) {
    const std::vector<const LogEntry*>& found = index_.all(meaning);
    const auto entry =
        std::find_if(found.begin(), found.end(), [&](const LogEntry* e) { return span_.contains(*e->time); });
    if (entry != found.end()) {
      say(wordsFor(**entry) + at(**entry), **entry);
    }
  }
}

// That the machine went down later proves nothing, but is worth a line.
void Judge::sayLater() {
  constexpr std::chrono::hours soonEnough{24};
  const bool told = result_.evidence.fall || result_.outcome == Outcome::Shutdown;
  if (told || !process_.over) {
    return;
  }
  const Instant over = *process_.over;
  const LogEntry* later = nullptr;
  if (!isFailure(result_.outcome)) {
    later = index_.first({Meaning::ShutdownBegun, Meaning::ShutdownDone}, over + sameTime, over + soonEnough);
  }
  const auto fall = std::find_if(falls_.begin(), falls_.end(), [&](const Fall& f) { return f.back > over + sameTime; });
  if (fall != falls_.end() && fall->back <= over + soonEnough && (later == nullptr || fall->back < *later->time)) {
    say("Later, " + showDuration(fall->back - over) + " after the end at most: " + inSentence(wordsFor(*fall->best)),
        *fall->best);
  } else if (later != nullptr) {
    say("Later, " + showDuration(*later->time - over) + " after the end: " + inSentence(wordsFor(*later)), *later);
  }
}

// What befell Canvix and the machine before the session, newest first: one line each.
void Judge::sayTimeBefore() {
  const Instant begin = span_.begin.value_or(Instant::max());
  const LogEntry* failed = nullptr;
  for (const Failure& failure : failures_) {
    failed = failure.time() < begin && failure.whose == Whose::Nobody ? failure.best : failed;
  }
  // The last end of the machine before it: a fall is told when Windows is up again.
  const LogEntry* ended =
      index_.last({Meaning::ShutdownBegun, Meaning::ShutdownDone}, Instant::min(), begin - Ticks(1));
  for (const Fall& fall : falls_) {
    ended = fall.back <= begin && (ended == nullptr || *ended->time <= fall.back) ? fall.best : ended;
  }
  const LogEntry* found[]{failed, ended};
  if (failed != nullptr && ended != nullptr && *failed->time < *ended->time) {
    std::swap(found[0], found[1]);
  }
  for (const LogEntry* const entry : found) {
    if (entry != nullptr) {
      say("Before this session: " + inSentence(wordsFor(*entry)) + " (logged" + at(*entry) + ')', *entry,
          entry->severity);
    }
  }
}

void Judge::addFigures() {
  for (const MetricSample& record : session_.metrics) {
    result_.lowestDisk = std::min(result_.lowestDisk.value_or(record.freeDisk), record.freeDisk);
    result_.lowestPageFile = std::min(result_.lowestPageFile.value_or(record.freeSwap), record.freeSwap);
  }
  if (!session_.metrics.empty()) {
    result_.adapters = session_.metrics.back().adapters;
  }
  if (span_.end) {
    const Instant end = result_.time ? result_.time->to : *span_.end;
    const ProgramFailure* const failure = result_.evidence.failure ? &*result_.evidence.failure : nullptr;
    result_.changes = changesBefore(session_, index_, span_, {end, result_.offset}, failure ? failure->version : "");
  }
}

}  // namespace

Judgement judge(const Session& session) {
  return Judge(session).judge();
}

}  // namespace sentiq
