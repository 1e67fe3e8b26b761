#include "reader/judgement/Remarks.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "reader/events/EventFacts.h"
#include "reader/events/EventWords.h"

namespace sentiq {
namespace {

class Remarks {
 public:
  Remarks(const Case& known, std::vector<Statement>& remarks) : case_(known), remarks_(remarks) {}

  void sayOtherFailures(const Failure* own) {
    std::set<std::int64_t> told;
    for (const Failure& failure : case_.failures) {
      const LogEntry& entry = *failure.best;
      const std::int64_t process = failure.facts.processId;
      if (failure.whose == Whose::Other && told.insert(process).second) {
        say("Another Canvix" + (process != 0 ? ", process " + std::to_string(process) : "") +
                (failure.hang ? ", stopped responding" : ", crashed") + atTimeOf(entry) + ": " + case_.wordsFor(entry),
            entry);
      } else if (failure.whose == Whose::WatchedRanOn) {
        say("It ran on after this" + atTimeOf(entry) + ": " + case_.wordsFor(entry), entry);
      } else if (failure.whose == Whose::Watched && &failure != own && own != nullptr && failure.hang && !own->hang &&
                 failure.time() > own->time() && told.insert(0).second) {  // 0 is no process.
        say("It also stopped responding" + atTimeOf(entry), entry);
      }
    }
  }

  void sayTroubleOfItsOwn() {
    for (const Meaning meaning : {Meaning::Recovered, Meaning::Leak}) {
      const std::vector<const LogEntry*> found = case_.index.all({meaning});
      const auto entry =
          std::find_if(found.begin(), found.end(), [&](const LogEntry* e) { return case_.span.contains(*e->time); });
      if (entry != found.end()) {
        say(case_.wordsFor(**entry) + atTimeOf(**entry), **entry);
      }
    }
  }

  // That the machine went down later proves nothing, but is worth a line.
  void sayLater(const Judgement& judgement) {
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
    if (fall != case_.falls.end() && fall->back <= over + soonEnough &&
        (later == nullptr || fall->back < *later->time)) {
      say("Later, " + showDuration(fall->back - over) +
              " after the end at most: " + inSentence(case_.wordsFor(*fall->best)),
          *fall->best);
    } else if (later != nullptr) {
      say("Later, " + showDuration(*later->time - over) + " after the end: " + inSentence(case_.wordsFor(*later)),
          *later);
    }
  }

  void saySleeps() {
    constexpr std::chrono::minutes atStart{1};
    std::map<SleepKind, std::size_t> counts;
    for (const Sleep& sleep : case_.sleeps) {
      // What ended right after the start was before the session.
      const bool during = sleep.begin ? case_.span.contains(*sleep.begin)
                                      : case_.span.contains(*sleep.end) && *sleep.end - *case_.span.begin > atStart;
      counts[sleep.kind] += during ? 1 : 0;
    }
    sayTimes("The machine slept ", counts[SleepKind::Sleep]);
    sayTimes("The machine hibernated ", counts[SleepKind::Hibernation]);
    sayTimes("Modern standby began ", counts[SleepKind::Standby]);
  }

  // The system tells each program at once how its display is, and standby events tell of standby themselves.
  void sayDisplayChanges() {
    constexpr std::chrono::seconds atStart{15};
    constexpr std::chrono::minutes close{2};
    const std::vector<LogEntry>& entries = case_.session.entries;
    const auto first = std::find_if(entries.begin(), entries.end(), [](const LogEntry& entry) {
      return entry.time && !entry.event && entry.role == LogRole::Watchdog;
    });
    if (first == entries.end()) {  // No watchdog log, which alone tells of the display.
      return;
    }
    const std::vector<const LogEntry*> standby = case_.index.all({Meaning::StandbyBegun, Meaning::StandbyEnded});
    const std::vector<const LogEntry*> changes = case_.index.all({Meaning::DisplayChange});
    const auto count = std::count_if(changes.begin(), changes.end(), [&](const LogEntry* entry) {
      const Instant time = *entry->time;
      const auto next = std::partition_point(standby.begin(), standby.end(),
                                             [&](const LogEntry* event) { return *event->time < time - close; });
      return case_.span.contains(time) && time - *first->time > atStart &&
             (next == standby.end() || *(*next)->time > time + close);
    });
    sayTimes("The display went on or off, or standby began or ended, ", static_cast<std::size_t>(count));
  }

  void sayClockSet() {
    constexpr std::chrono::seconds worthALine{10};
    for (const LogEntry* const entry : case_.index.all({Meaning::Clock})) {
      const auto set = clockSet(case_.session.eventOf(*entry));
      const Ticks change = set && !set->readAnew ? set->to - set->from : Ticks{};
      if (case_.span.contains(*entry->time) && std::chrono::abs(change) >= worthALine) {
        say(case_.wordsFor(*entry) + ", " + showDuration(std::chrono::abs(change)) +
                (change > Ticks{} ? " forward" : " back"),
            *entry);
      }
    }
  }

  // What befell Canvix and the machine before the session, newest first: one line each.
  void sayTimeBefore() {
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
        say("Before this session: " + inSentence(case_.wordsFor(*entry)) + " (logged" + atTimeOf(*entry) + ')', *entry,
            entry->severity);
      }
    }
  }

 private:
  void say(std::string text, const LogEntry& entry, Severity severity = Severity::Notice) {
    remarks_.push_back({severity, std::move(text), case_.index.indexOf(entry)});
  }

  void sayTimes(const char* what, std::size_t times) {
    if (times > 0) {
      remarks_.push_back({Severity::Notice, what + std::to_string(times) + (times == 1 ? " time" : " times")});
    }
  }

  const Case& case_;
  std::vector<Statement>& remarks_;
};

}  // namespace

void addRemarks(const Case& known, const Failure* own, Judgement& judgement) {
  Remarks remarks(known, judgement.others);
  remarks.sayOtherFailures(own);
  remarks.sayTroubleOfItsOwn();
  remarks.sayLater(judgement);
  remarks.saySleeps();
  remarks.sayDisplayChanges();
  remarks.sayClockSet();
  remarks.sayTimeBefore();
}

}  // namespace sentiq
