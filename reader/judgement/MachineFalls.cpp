#include "reader/judgement/MachineFalls.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace sentiq {
namespace {

// All events about the same fall of the machine, but error reports, are written within this time after its start.
constexpr std::chrono::minutes sameBoot{15};
// Several events tell of one start of Windows.
constexpr std::chrono::minutes oneStart{3};

// The last start of Windows up to that time; nothing when none is known.
std::optional<Instant> bootBefore(const std::vector<Instant>& boots, Instant time) {
  constexpr std::chrono::seconds tolerance{5};  // The header's boot time is exact to a second or two.
  const auto after = std::upper_bound(boots.begin(), boots.end(), time + tolerance);
  return after != boots.begin() ? std::optional(*(after - 1)) : std::nullopt;
}

// A later start of Windows than the one that a teller's own run began with would have made the tellers itself.
Fall fallToldBy(Instant time, bool isErrorReport, const std::vector<Instant>& boots, const WatchedProcess& process) {
  const auto boot = bootBefore(boots, time);
  const bool known = boot && (isErrorReport || time - *boot <= sameBoot);
  const bool wasSeen = process.begin && process.over;
  if (known && (!isErrorReport || !wasSeen || time <= *process.over || *boot > *process.over)) {
    return {*boot, true};
  }
  if (wasSeen && time >= *process.begin && time <= *process.over) {  // The machine did not start in between.
    return {boot.value_or(*process.begin), boot.has_value()};
  }
  return {time, false};
}

bool isSameCrash(const MachineFall& a, const MachineFall& b) {
  const bool sameReport = !a.reportId.empty() && a.reportId == b.reportId;
  const bool sameDump = !a.dump.empty() && a.dump == b.dump;
  return sameReport || sameDump || (a.stopCode && a.stopCode == b.stopCode);
}

// Adds what another event tells of the fall.
void addFacts(MachineFall& facts, const MachineFall& more) {
  facts.stopCode = facts.stopCode ? facts.stopCode : more.stopCode;
  facts.dump = facts.dump.empty() ? more.dump : facts.dump;
  facts.reportId = facts.reportId.empty() ? more.reportId : facts.reportId;
  facts.asleep = facts.asleep || more.asleep;
  facts.inStandby = facts.inStandby || more.inStandby;
  facts.powerButton = facts.powerButton || more.powerButton;
  facts.buttonPressed = facts.buttonPressed ? facts.buttonPressed : more.buttonPressed;
  facts.told = facts.told.date.empty() ? more.told : facts.told;
}

// Of a blue screen one with a dump tells most; else the restart, which knows how the machine went down, before the
// event that knows only when.
auto rankOf(const LogEntry& teller, const MachineFall& facts) {
  const bool crash = teller.meaning == Meaning::BlueScreen;
  return std::tuple(crash, !facts.isErrorReport, !facts.dump.empty(), facts.told.date.empty());
}

void addTeller(Fall& fall, const LogEntry& teller, MachineFall facts, const Session& session) {
  if (fall.best == nullptr || rankOf(teller, facts) > rankOf(*fall.best, machineFall(session.eventOf(*fall.best)))) {
    fall.best = &teller;
    std::swap(fall.facts, facts);  // Where they differ, the best one's hold.
  }
  addFacts(fall.facts, facts);
}

// An error report may be written long after the machine was up again, and names its crash.
bool isReported(const Fall& fall, const Fall& own, Instant time, const MachineFall& facts) {
  return fall.back <= time + sameBoot && (fall.back == own.back || isSameCrash(fall.facts, facts));
}

bool isLogged(const Fall& fall, const Fall& own, Instant time) {
  return fall.back == own.back || (!own.backIsKnown && time - fall.back <= sameBoot);
}

// The fall that the entry tells of; else its own one, which is added. The fall of an error report is most often one of
// the last, that of another entry the last.
std::size_t placeOf(std::vector<Fall>& falls, Fall own, Instant time, const MachineFall& facts) {
  const std::size_t mostLookedAt = facts.isErrorReport ? 8 : 1;
  for (std::size_t i = falls.size(); i > 0 && falls.size() - i < mostLookedAt; --i) {
    const Fall& fall = falls[i - 1];
    if (facts.isErrorReport ? isReported(fall, own, time, facts) : isLogged(fall, own, time)) {
      return i - 1;
    }
  }
  falls.push_back(std::move(own));
  return falls.size() - 1;
}

}  // namespace

std::vector<Instant> bootsOf(const Session& session, const EntryIndex& index) {
  std::vector<Instant> all;
  for (const LogEntry* const entry : index.all({Meaning::Boot})) {
    const auto boot = entry->event ? bootTime(session.eventOf(*entry)) : std::nullopt;
    all.push_back(boot.value_or(*entry->time));
  }
  all.insert(all.end(), session.laterBoots.begin(), session.laterBoots.end());
  if (session.booted) {
    all.push_back(*session.booted);
  }
  std::sort(all.begin(), all.end());
  std::vector<Instant> boots;
  for (const Instant boot : all) {
    if (boots.empty() || boot - boots.back() > oneStart) {
      boots.push_back(boot);
    }
  }
  return boots;
}

std::vector<Fall> fallsOf(const Session& session, const EntryIndex& index, const std::vector<Instant>& boots,
                          const WatchedProcess& process) {
  std::vector<std::pair<const LogEntry*, MachineFall>> told;
  for (const LogEntry* const teller : index.all({Meaning::PowerLoss, Meaning::BlueScreen})) {
    told.emplace_back(teller, machineFall(session.eventOf(*teller)));
  }
  // Error reports tell of what others may tell of, too.
  std::stable_partition(told.begin(), told.end(), [](const auto& one) { return !one.second.isErrorReport; });
  std::vector<Fall> falls;
  std::unordered_map<std::string, std::size_t> byReport;  // A report may be sent again at any time.
  for (const auto& [teller, facts] : told) {
    const auto known = byReport.find(facts.reportId);
    const std::size_t place =
        known != byReport.end()
            ? known->second
            : placeOf(falls, fallToldBy(*teller->time, facts.isErrorReport, boots, process), *teller->time, facts);
    if (facts.isErrorReport && !facts.reportId.empty()) {
      byReport.emplace(facts.reportId, place);
    }
    addTeller(falls[place], *teller, facts, session);
    falls[place].tellers.push_back(index.indexOf(*teller));
  }
  std::stable_sort(falls.begin(), falls.end(), [](const Fall& a, const Fall& b) { return a.back < b.back; });
  return falls;
}

std::optional<Instant> toldTime(const Fall& fall, Instant from) {
  constexpr std::chrono::days longest{30};
  return firstMeant(fall.facts.told, from, std::min(fall.back, from + longest), fall.best->offset);
}

TimeRange timeOf(const Fall& fall, Instant lastSign) {
  const auto pressed = fall.facts.buttonPressed;
  const auto told =
      pressed && *pressed >= lastSign && *pressed <= fall.back ? pressed : toldTime(fall, lastSign - heartbeat);
  return {lastSign, std::max(lastSign, told.value_or(fall.back))};
}

}  // namespace sentiq
