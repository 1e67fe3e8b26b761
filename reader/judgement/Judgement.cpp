#include "reader/judgement/Judgement.h"

#include <algorithm>
#include <utility>

#include "reader/events/CodeWords.h"
#include "reader/events/EventWords.h"
#include "reader/judgement/Case.h"
#include "reader/judgement/Changes.h"
#include "reader/judgement/Reach.h"
#include "reader/judgement/Remarks.h"
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

class Judge {
 public:
  explicit Judge(const Session& session) : case_(session) {}

  Judgement judge();

 private:
  std::string wordsFor(const LogEntry& entry) const { return wordsOf(case_.session, entry); }
  void conclude(Outcome outcome, Severity severity, std::string text, const LogEntry* entry, TimeRange time);
  const Failure* ownFailure() const;
  void judgeFailure(const Failure& failure);
  void judgeExit(const LogEntry& exit);
  const Fall* ownFall() const;
  void judgeFall(const Fall& fall);
  void judgeStop();
  const LogEntry* shutdownAbout(Instant time, Ticks begunBy, Ticks doneBy) const;
  const Sleep* sleepAtLast() const;
  void addFigures();

  Case case_;
  Judgement result_;
};

Judgement Judge::judge() {
  result_.offset = case_.span.offset;
  const Failure* const failure = ownFailure();
  const std::vector<const LogEntry*> exits = case_.index.all({Meaning::Exit});
  if (!case_.process.over) {
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
  for (Statement& remark : remarksOn(case_, result_, failure)) {
    result_.others.push_back(std::move(remark));
  }
  addFigures();
  return std::move(result_);
}

void Judge::conclude(Outcome outcome, Severity severity, std::string text, const LogEntry* entry, TimeRange time) {
  result_.outcome = outcome;
  result_.verdict = {severity, std::move(text)};
  result_.time = time;
  if (entry != nullptr) {
    result_.verdict.entry = case_.index.indexOf(*entry);
    result_.offset = entry->offset;
  }
}

// A crash is the cause of a hang beside it: the process does not answer while its dump is written.
const Failure* Judge::ownFailure() const {
  const Failure* own = nullptr;
  for (const Failure& failure : case_.failures) {
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
    text = "Canvix stopped responding and was closed" + atTimeOf(*failure.best) +
           (facts.hangKind.empty() ? "" : ": " + facts.hangKind);
  } else {
    const auto known = [](const std::string& value) { return value.empty() ? "unknown" : value; };
    const std::string words(codeWords(CodeKind::Exception, facts.exception.value_or(0)));
    const std::string name = !facts.exceptionName.empty() ? facts.exceptionName : words;
    text = "Canvix crashed" + atTimeOf(*failure.best) + ": module " + known(facts.module) +
           (facts.moduleVersion.empty() ? "" : ' ' + facts.moduleVersion) + ", exception " +
           (facts.exception ? showHex(*facts.exception) + (name.empty() ? "" : " (" + name + ')') : known(name)) +
           (facts.offset ? ", offset " + showHex(*facts.offset) : "");
  }
  const Instant time = failure.time();
  conclude(failure.hang ? Outcome::Hung : Outcome::Crashed, Severity::Error, std::move(text), failure.best,
           {time, time});
  result_.evidence.failure = facts;
  for (const LogEntry* const teller : failure.tellers) {
    result_.evidence.entries.push_back(case_.index.indexOf(*teller));
  }
  result_.before = whatWentBefore(case_.session, case_.index, time, /*hangsToo=*/!failure.hang);
  const Instant over = std::max(time, *case_.process.over);
  if (const LogEntry* const shutdown =
          case_.index.first({Meaning::ShutdownBegun}, time - shutdownLead, over + lastSign)) {
    result_.others.push_back(
        {Severity::Notice,
         "About then a shutdown or restart was asked for" + atTimeOf(*shutdown) + ": " + wordsFor(*shutdown),
         case_.index.indexOf(*shutdown)});
  }
}

// One that was begun shortly before that time; one of which only the end is known counts unless it was begun later.
const LogEntry* Judge::shutdownAbout(Instant time, Ticks begunBy, Ticks doneBy) const {
  const LogEntry* const begun = case_.index.last({Meaning::ShutdownBegun}, time - shutdownLead, time + begunBy);
  return begun == nullptr && case_.index.first({Meaning::ShutdownBegun}, time, time + doneBy) == nullptr
             ? case_.index.first({Meaning::ShutdownDone}, time - sameTime, time + doneBy)
             : begun;
}

void Judge::judgeExit(const LogEntry& exit) {
  const Instant time = *exit.time;
  if (const LogEntry* const shutdown = shutdownAbout(time, sameTime, shutdownDone)) {
    conclude(Outcome::Shutdown, Severity::Notice,
             "Canvix ended" + atTimeOf(exit) + " while the machine shut down: " + inSentence(wordsFor(*shutdown)),
             &exit, {time, time});
    return;
  }
  const std::string missing = missingAbout(case_.session, exit);
  conclude(Outcome::Ended, missing.empty() ? Severity::Info : Severity::Notice,
           missing.empty() ? "Canvix ended normally" + atTimeOf(exit) + ": the event log holds no crash or hang of it"
                           : "Canvix ended" + atTimeOf(exit) + "; whether normally is unknown: " + missing,
           &exit, {time, time});
}

// The sleep after which nothing more was written.
const Sleep* Judge::sleepAtLast() const {
  for (auto sleep = case_.sleeps.rbegin(); sleep != case_.sleeps.rend(); ++sleep) {
    if (sleep->begin && *sleep->begin <= *case_.span.end + lastSign) {
      const bool woke = sleep->end && *sleep->end <= *case_.process.over + lastSign;
      return *sleep->begin >= *case_.process.over - lastSign && !woke ? &*sleep : nullptr;
    }
  }
  return nullptr;
}

// The fall that ended the session: the machine went down when the logs stop, and not hours later.
const Fall* Judge::ownFall() const {
  const Instant over = *case_.process.over;
  const auto fall = std::find_if(case_.falls.begin(), case_.falls.end(), [&](const Fall& f) { return f.back > over; });
  if (fall == case_.falls.end()) {
    return nullptr;
  }
  const auto boot = std::upper_bound(case_.boots.begin(), case_.boots.end(), over);
  const bool startedBefore = boot != case_.boots.end() && *boot < fall->back;
  if (startedBefore || case_.index.first({Meaning::ShutdownDone}, over, fall->back) != nullptr) {
    return nullptr;
  }
  if (const auto told = toldTime(*fall, over - heartbeat)) {
    return *told <= over + heartbeat || sleepAtLast() != nullptr ? &*fall : nullptr;
  }
  const bool asleep = sleepAtLast() != nullptr || fall->facts.asleep || fall->facts.inStandby;
  return asleep || fall->back - over <= soonRestarted ? &*fall : nullptr;
}

void Judge::judgeFall(const Fall& fall) {
  const TimeRange range = timeOf(fall, *case_.process.over);
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
    result_.evidence.entries.push_back(case_.index.indexOf(*teller));
  }
  result_.before = whatWentBefore(case_.session, case_.index, *case_.process.over, /*hangsToo=*/true);
}

// Nothing says that Canvix or the machine failed.
void Judge::judgeStop() {
  const Instant over = *case_.process.over;
  if (const LogEntry* const shutdown = shutdownAbout(over, lastSign, lastSign)) {
    conclude(Outcome::Shutdown, Severity::Notice,
             "The machine was shut down while Canvix ran: " + wordsFor(*shutdown) + atTimeOf(*shutdown), shutdown,
             {over, std::max(over, *shutdown->time)});
  } else if (const Sleep* const sleep = sleepAtLast()) {
    const LogEntry& entry = case_.session.entries[sleep->entry];
    const std::string words = entry.event ? wordsFor(entry) : "The machine went to sleep";
    conclude(Outcome::Asleep, Severity::Warning,
             words + " at " + showTime(*sleep->begin, entry.offset) + ", and the logs end there", &entry,
             {*sleep->begin, *sleep->begin});
  } else {
    result_.verdict = {Severity::Notice, "How the session ended is unknown: the logs stop while Canvix runs"};
  }
}

void Judge::addFigures() {
  for (const MetricSample& record : case_.session.metrics) {
    result_.lowestDisk = std::min(result_.lowestDisk.value_or(record.freeDisk), record.freeDisk);
    result_.lowestPageFile = std::min(result_.lowestPageFile.value_or(record.freeSwap), record.freeSwap);
  }
  if (!case_.session.metrics.empty()) {
    result_.adapters = case_.session.metrics.back().adapters;
  }
  if (case_.span.end) {
    const Instant end = result_.time ? result_.time->to : *case_.span.end;
    const ProgramFailure* const failure = result_.evidence.failure ? &*result_.evidence.failure : nullptr;
    result_.changes =
        changesBefore(case_.session, case_.index, case_.span, {end, result_.offset}, failure ? failure->version : "");
  }
}

}  // namespace

Judgement judge(const Session& session) {
  return Judge(session).judge();
}

}  // namespace sentiq
