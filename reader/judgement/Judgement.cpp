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

Judgement concluded(const Case& known, Outcome outcome, Severity severity, std::string text, const LogEntry& entry,
                    TimeRange time) {
  Judgement judgement;
  judgement.outcome = outcome;
  judgement.verdict = {severity, std::move(text), known.index.indexOf(entry)};
  judgement.time = time;
  judgement.offset = entry.offset;
  return judgement;
}

Judgement unknown(const Case& known, const std::string& why) {
  Judgement judgement;
  judgement.verdict = {Severity::Notice, "How the session ended is unknown: " + why};
  judgement.offset = known.span.offset;
  return judgement;
}

// A crash is the cause of a hang beside it: the process does not answer while its dump is written.
const Failure* ownFailure(const Case& known) {
  const Failure* own = nullptr;
  for (const Failure& failure : known.failures) {
    if (failure.whose == Whose::Watched && (own == nullptr || (own->hang && !failure.hang))) {
      own = &failure;
    }
  }
  return own;
}

Judgement judgedFailure(const Case& known, const Failure& failure) {
  const ProgramFailure& facts = failure.facts;
  std::string text;
  if (failure.hang) {
    text = "Canvix stopped responding and was closed" + atTimeOf(*failure.best) +
           (facts.hangKind.empty() ? "" : ": " + facts.hangKind);
  } else {
    const auto orUnknown = [](const std::string& value) { return value.empty() ? "unknown" : value; };
    const std::string words(codeWords(CodeKind::Exception, facts.exception.value_or(0)));
    const std::string name = !facts.exceptionName.empty() ? facts.exceptionName : words;
    text = "Canvix crashed" + atTimeOf(*failure.best) + ": module " + orUnknown(facts.module) +
           (facts.moduleVersion.empty() ? "" : ' ' + facts.moduleVersion) + ", exception " +
           (facts.exception ? showHex(*facts.exception) + (name.empty() ? "" : " (" + name + ')') : orUnknown(name)) +
           (facts.offset ? ", offset " + showHex(*facts.offset) : "");
  }
  const Instant time = failure.time();
  Judgement judgement = concluded(known, failure.hang ? Outcome::Hung : Outcome::Crashed, Severity::Error,
                                  std::move(text), *failure.best, {time, time});
  judgement.evidence.failure = facts;
  judgement.evidence.entries = failure.tellers;
  judgement.before = whatWentBefore(known, time, /*hangsToo=*/!failure.hang);
  const Instant over = std::max(time, *known.process.over);
  if (const LogEntry* const shutdown =
          known.index.first({Meaning::ShutdownBegun}, time - shutdownLead, over + lastSign)) {
    judgement.others.push_back(
        {Severity::Notice,
         "About then a shutdown or restart was asked for" + atTimeOf(*shutdown) + ": " + known.wordsFor(*shutdown),
         known.index.indexOf(*shutdown)});
  }
  return judgement;
}

// One that was begun shortly before that time; one of which only the end is known counts unless it was begun later.
const LogEntry* shutdownAbout(const Case& known, Instant time, Ticks begunBy, Ticks doneBy) {
  const LogEntry* const begun = known.index.last({Meaning::ShutdownBegun}, time - shutdownLead, time + begunBy);
  return begun == nullptr && known.index.first({Meaning::ShutdownBegun}, time, time + doneBy) == nullptr
             ? known.index.first({Meaning::ShutdownDone}, time - sameTime, time + doneBy)
             : begun;
}

Judgement judgedExit(const Case& known, const LogEntry& exit) {
  const TimeRange time{*exit.time, *exit.time};
  const std::string ended = "Canvix ended" + atTimeOf(exit);
  if (const LogEntry* const shutdown = shutdownAbout(known, *exit.time, sameTime, shutdownDone)) {
    return concluded(known, Outcome::Shutdown, Severity::Notice,
                     ended + " while the machine shut down: " + inSentence(known.wordsFor(*shutdown)), exit, time);
  }
  const std::string missing = missingAbout(known.session, exit);
  return missing.empty()
             ? concluded(known, Outcome::Ended, Severity::Info,
                         "Canvix ended normally" + atTimeOf(exit) + ": the event log holds no crash or hang of it",
                         exit, time)
             : concluded(known, Outcome::Ended, Severity::Notice, ended + "; whether normally is unknown: " + missing,
                         exit, time);
}

// The sleep after which nothing more was written.
const Sleep* sleepAtLast(const Case& known) {
  const Instant over = *known.process.over;
  const auto sleep = std::find_if(known.sleeps.rbegin(), known.sleeps.rend(),
                                  [&](const Sleep& s) { return s.begin && *s.begin <= *known.span.end + lastSign; });
  const bool isLast = sleep != known.sleeps.rend() && *sleep->begin >= over - lastSign &&
                      !(sleep->end && *sleep->end <= over + lastSign);  // It woke.
  return isLast ? &*sleep : nullptr;
}

// The fall that ended the session: the machine went down when the logs stop, and not hours later.
const Fall* ownFall(const Case& known) {
  const Instant over = *known.process.over;
  const auto fall = std::find_if(known.falls.begin(), known.falls.end(), [&](const Fall& f) { return f.back > over; });
  if (fall == known.falls.end()) {
    return nullptr;
  }
  const auto boot = std::upper_bound(known.boots.begin(), known.boots.end(), over);
  const bool startedBefore = boot != known.boots.end() && *boot < fall->back;
  if (startedBefore || known.index.first({Meaning::ShutdownDone}, over, fall->back) != nullptr) {
    return nullptr;
  }
  const bool slept = sleepAtLast(known) != nullptr;
  const auto told = toldTime(*fall, over - heartbeat);
  const bool then = told ? *told <= over + heartbeat
                         : fall->facts.asleep || fall->facts.inStandby || fall->back - over <= soonRestarted;
  return slept || then ? &*fall : nullptr;
}

Judgement judgedFall(const Case& known, const Fall& fall) {
  const TimeRange range = timeOf(fall, *known.process.over);
  const LogEntry& best = *fall.best;
  const auto show = [&](Instant time) { return showTime(time, best.offset); };
  std::string text = known.wordsFor(best) + ", while Canvix ran, " +
                     (range.from < range.to ? "between " + show(range.from) + " and " + show(range.to)
                                            : "shortly after " + show(range.from));
  if (const Sleep* const sleep = sleepAtLast(known)) {
    const char* const how = sleep->kind == SleepKind::Standby       ? "went into modern standby"
                            : sleep->kind == SleepKind::Hibernation ? "began to hibernate"
                                                                    : "went to sleep";
    text += std::string(", after it ") + how + " at " + show(*sleep->begin);
  }
  if (range.to < fall.back) {
    text += (fall.backIsKnown ? "; it was up again at " : "; it was up again by ") + show(fall.back);
  }
  Judgement judgement = concluded(known, best.meaning == Meaning::BlueScreen ? Outcome::BlueScreen : Outcome::PowerLoss,
                                  Severity::Error, std::move(text), best, range);
  judgement.back = fall.back;
  judgement.evidence.fall = fall.facts;
  judgement.evidence.entries = fall.tellers;
  judgement.before = whatWentBefore(known, *known.process.over, /*hangsToo=*/true);
  return judgement;
}

// Nothing says that Canvix or the machine failed.
Judgement judgedStop(const Case& known) {
  const Instant over = *known.process.over;
  if (const LogEntry* const shutdown = shutdownAbout(known, over, lastSign, lastSign)) {
    return concluded(known, Outcome::Shutdown, Severity::Notice,
                     "The machine was shut down while Canvix ran: " + known.wordsFor(*shutdown) + atTimeOf(*shutdown),
                     *shutdown, {over, std::max(over, *shutdown->time)});
  }
  if (const Sleep* const sleep = sleepAtLast(known)) {
    const LogEntry& entry = known.session.entries[sleep->entry];
    const std::string words = entry.event ? known.wordsFor(entry) : "The machine went to sleep";
    return concluded(known, Outcome::Asleep, Severity::Warning,
                     words + " at " + showTime(*sleep->begin, entry.offset) + ", and the logs end there", entry,
                     {*sleep->begin, *sleep->begin});
  }
  return unknown(known, "the logs stop while Canvix runs");
}

Judgement judged(const Case& known, const Failure* failure) {
  if (!known.process.over) {
    return unknown(known, "its logs are missing");
  }
  if (failure != nullptr) {
    return judgedFailure(known, *failure);
  }
  if (const std::vector<const LogEntry*> exits = known.index.all({Meaning::Exit}); !exits.empty()) {
    return judgedExit(known, *exits.front());
  }
  const Fall* const fall = ownFall(known);
  return fall != nullptr ? judgedFall(known, *fall) : judgedStop(known);
}

void addFigures(const Session& session, Judgement& judgement) {
  for (const MetricSample& record : session.metrics) {
    judgement.lowestDisk = std::min(judgement.lowestDisk.value_or(record.freeDisk), record.freeDisk);
    judgement.lowestPageFile = std::min(judgement.lowestPageFile.value_or(record.freeSwap), record.freeSwap);
  }
  if (!session.metrics.empty()) {
    judgement.adapters = session.metrics.back().adapters;
  }
}

}  // namespace

Judgement judge(const Session& session) {
  const Case known(session);
  const Failure* const failure = ownFailure(known);
  Judgement judgement = judged(known, failure);
  addRemarks(known, failure, judgement);
  addFigures(session, judgement);
  if (known.span.end) {
    judgement.changes = changesBefore(known, judgement.time ? judgement.time->to : *known.span.end,
                                      judgement.evidence.failure ? judgement.evidence.failure->version : "");
  }
  return judgement;
}

}  // namespace sentiq
