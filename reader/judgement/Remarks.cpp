#include "reader/judgement/Remarks.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <utility>

#include "reader/events/EventWords.h"
#include "reader/judgement/Surroundings.h"

namespace sentiq {
namespace {

class Remarks {
 public:
  Remarks(const Case& known, std::vector<Statement>& remarks) : case_(known), remarks_(remarks) {}

  void sayOtherFailures(const Failure* own);
  void sayTroubleOfItsOwn();
  void sayLater(const Judgement& judgement);
  void sayTimeBefore();

 private:
  std::string wordsFor(const LogEntry& entry) const { return wordsOf(case_.session, entry); }
  void say(std::string text, const LogEntry& entry, Severity severity = Severity::Notice) {
    remarks_.push_back({severity, std::move(text), case_.index.indexOf(entry)});
  }

  const Case& case_;
  std::vector<Statement>& remarks_;
};

void Remarks::sayOtherFailures(const Failure* own) {
  std::set<std::int64_t> told;
  for (const Failure& failure : case_.failures) {
    const LogEntry& entry = *failure.best;
    const std::int64_t process = failure.facts.processId;
    if (failure.whose == Whose::Other && told.insert(process).second) {
      say("Another Canvix" + (process != 0 ? ", process " + std::to_string(process) : "") +
              (failure.hang ? ", stopped responding" : ", crashed") + atTimeOf(entry) + ": " + wordsFor(entry),
          entry);
    } else if (failure.whose == Whose::WatchedRanOn) {
      say("It ran on after this" + atTimeOf(entry) + ": " + wordsFor(entry), entry);
    } else if (failure.whose == Whose::Watched && &failure != own && own != nullptr && failure.hang && !own->hang &&
               failure.time() > own->time() && told.insert(0).second) {  // 0 is no process.
      say("It also stopped responding" + atTimeOf(entry), entry);
    }
  }
}

void Remarks::sayTroubleOfItsOwn() {
  for (const Meaning meaning : {Meaning::Recovered, Meaning::Leak}) {
    const std::vector<const LogEntry*> found = case_.index.all({meaning});
    const auto entry =
        std::find_if(found.begin(), found.end(), [&](const LogEntry* e) { return case_.span.contains(*e->time); });
    if (entry != found.end()) {
      say(wordsFor(**entry) + atTimeOf(**entry), **entry);
    }
  }
}

// That the machine went down later proves nothing, but is worth a line.
void Remarks::sayLater(const Judgement& judgement) {
  constexpr std::chrono::hours soonEnough{24};
  constexpr std::chrono::seconds sameTime{10};
  const bool told = judgement.evidence.fall || judgement.outcome == Outcome::Shutdown;
  if (told || !case_.process.over) {
    return;
  }
  const Instant over = *case_.process.over;
  const LogEntry* later = nullptr;
  if (!isFailure(judgement.outcome)) {
    later = case_.index.first({Meaning::ShutdownBegun, Meaning::ShutdownDone}, over + sameTime, over + soonEnough);
  }
  const auto fall = std::find_if(case_.falls.begin(), case_.falls.end(),
                                 [&](const Fall& candidate) { return candidate.back > over + sameTime; });
  if (fall != case_.falls.end() && fall->back <= over + soonEnough && (later == nullptr || fall->back < *later->time)) {
    say("Later, " + showDuration(fall->back - over) + " after the end at most: " + inSentence(wordsFor(*fall->best)),
        *fall->best);
  } else if (later != nullptr) {
    say("Later, " + showDuration(*later->time - over) + " after the end: " + inSentence(wordsFor(*later)), *later);
  }
}

// What befell Canvix and the machine before the session, newest first: one line each.
void Remarks::sayTimeBefore() {
  const Instant begin = case_.span.begin.value_or(Instant::max());
  const LogEntry* failed = nullptr;
  for (const Failure& failure : case_.failures) {
    failed = failure.time() < begin && failure.whose == Whose::Nobody ? failure.best : failed;
  }
  // The last end of the machine before it: a fall is told when Windows is up again.
  const LogEntry* ended =
      case_.index.last({Meaning::ShutdownBegun, Meaning::ShutdownDone}, Instant::min(), begin - Ticks(1));
  for (const Fall& fall : case_.falls) {
    ended = fall.back <= begin && (ended == nullptr || *ended->time <= fall.back) ? fall.best : ended;
  }
  const LogEntry* found[]{failed, ended};
  if (failed != nullptr && ended != nullptr && *failed->time < *ended->time) {
    std::swap(found[0], found[1]);
  }
  for (const LogEntry* const entry : found) {
    if (entry != nullptr) {
      say("Before this session: " + inSentence(wordsFor(*entry)) + " (logged" + atTimeOf(*entry) + ')', *entry,
          entry->severity);
    }
  }
}

}  // namespace

std::vector<Statement> remarksOn(const Case& known, const Judgement& judgement, const Failure* own) {
  std::vector<Statement> all;
  Remarks remarks(known, all);
  remarks.sayOtherFailures(own);
  remarks.sayTroubleOfItsOwn();
  remarks.sayLater(judgement);
  for (Statement& statement : machineStatements(known.session, known.index, known.span, known.sleeps)) {
    all.push_back(std::move(statement));
  }
  remarks.sayTimeBefore();
  return all;
}

}  // namespace sentiq
