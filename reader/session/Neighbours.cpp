#include "reader/session/Neighbours.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "reader/events/EventFacts.h"
#include "reader/session/GrowingSession.h"
#include "reader/session/SessionExtent.h"

namespace sentiq {
namespace {

// However many sessions of a folder overlap, these are enough: those that began last before something.
constexpr std::size_t mostLookedAt = 4;

// When something can concern a session.
struct Reach {
  std::size_t session = 0;
  Instant begin;
  LogTime end;  // Of its own lines.
  std::optional<Instant> exit;
  std::ptrdiff_t ownCopies = 0;           // The others are told by neighbours.
  Instant until;                          // What is logged later tells of the next one.
  std::unordered_set<std::string> known;  // Its events, once there is something to add.
};

bool isSameMachine(const Session& a, const Session& b) {
  return sameComputer(a.computer, b.computer).value_or(true);
}

std::optional<Instant> exitOf(const Session& session) {
  const auto exit = std::find_if(session.entries.begin(), session.entries.end(),
                                 [](const LogEntry& entry) { return entry.meaning == Meaning::Exit && entry.time; });
  return exit != session.entries.end() ? exit->time : std::nullopt;
}

// In the order in which they began.
std::vector<Reach> reachesOf(const std::vector<Session>& sessions, const std::vector<std::size_t>& ofFolder) {
  constexpr std::chrono::minutes late{10};  // Error reports come some time after the failure.
  std::vector<Reach> reaches;
  for (const std::size_t i : ofFolder) {
    const Session& session = sessions[i];
    const SessionSpan span = sessionSpan(session);
    if (span.begin) {
      reaches.push_back(
          {i, *span.begin, {*span.end, span.offset}, exitOf(session), std::ssize(session.copies), Instant::max(), {}});
    }
  }
  std::stable_sort(reaches.begin(), reaches.end(), [](const Reach& a, const Reach& b) { return a.begin < b.begin; });
  for (std::size_t i = 0; i + 1 < reaches.size(); ++i) {
    reaches[i].until = std::max(reaches[i].end.instant, reaches[i + 1].begin) + late;
  }
  return reaches;
}

void lend(const EventRecord& event, LogEntry entry, Session& to, Reach& reach) {
  if (reach.known.empty()) {
    for (const EventRecord& own : to.events) {
      reach.known.insert(own.key());
    }
  }
  if (reach.known.insert(event.key()).second) {
    entry.borrowed = true;
    entry.event = static_cast<std::uint32_t>(to.events.size());
    to.events.push_back(event);
    to.entries.push_back(std::move(entry));
  }
}

void lendEvents(std::vector<Session>& sessions, std::size_t giver, std::vector<Reach>& reaches) {
  for (const LogEntry& entry : sessions[giver].entries) {
    if (!entry.event || !entry.time || entry.meaning == Meaning::Other || entry.borrowed) {
      continue;
    }
    auto reach = std::upper_bound(reaches.begin(), reaches.end(), *entry.time,
                                  [](Instant time, const Reach& r) { return time < r.begin; });
    for (std::size_t looked = 0; looked < mostLookedAt && reach != reaches.begin(); ++looked) {
      --reach;
      Session& other = sessions[reach->session];
      if (reach->session != giver && *entry.time <= reach->until && isSameMachine(sessions[giver], other)) {
        lend(sessions[giver].eventOf(entry), entry, other, *reach);
      }
    }
  }
}

EarlierSession earlierSession(const Session& session, const LogTime& end) {
  EarlierSession earlier{end, {}, {}};
  const auto last = std::find_if(session.entries.rbegin(), session.entries.rend(),
                                 [](const LogEntry& entry) { return entry.metric.has_value(); });
  if (last != session.entries.rend()) {
    earlier.adapters = session.recordOf(*last).adapters;
  }
  for (const EventRecord& event : session.events) {
    if (isFailure(event.meaning)) {
      earlier.canvixVersion = programFailure(event).version;
    }
  }
  return earlier;
}

// Of those that began just before it or after it; of the last one that had ended by then what it was like.
void tellOfOthers(std::vector<Session>& sessions, const std::vector<Reach>& reaches, std::size_t index) {
  const Reach& reach = reaches[index];
  Session& session = sessions[reach.session];
  const Reach* before = nullptr;
  const std::size_t end = std::min(index + mostLookedAt + 1, reaches.size());
  for (std::size_t i = index - std::min(index, mostLookedAt); i < end; ++i) {
    const Session& other = sessions[reaches[i].session];
    if (i == index || !isSameMachine(session, other)) {
      continue;
    }
    if (reaches[i].exit) {
      session.otherExits.push_back(*reaches[i].exit);
    }
    std::copy_if(other.copies.begin(), other.copies.begin() + reaches[i].ownCopies, std::back_inserter(session.copies),
                 [&](const ChannelCopy& copy) {
                   return copy.oldest && *copy.oldest <= reach.end.instant && copy.made > reach.end.instant;
                 });
    if (i > index && other.booted && *other.booted > reach.begin) {
      session.laterBoots.push_back(*other.booted);
    }
    if (i < index && reaches[i].end.instant < reach.begin) {
      before = &reaches[i];
    }
  }
  if (before != nullptr) {
    session.earlier = earlierSession(sessions[before->session], before->end);
  }
}

void tellOneFolder(std::vector<Session>& sessions, const std::vector<std::size_t>& ofFolder) {
  std::vector<Reach> reaches = reachesOf(sessions, ofFolder);
  for (std::size_t i = 0; i < reaches.size(); ++i) {
    tellOfOthers(sessions, reaches, i);
  }
  for (const std::size_t giver : ofFolder) {
    lendEvents(sessions, giver, reaches);
  }
  for (const Reach& reach : reaches) {
    sortSession(sessions[reach.session]);
  }
}

}  // namespace

void tellNeighbours(std::vector<Session>& sessions) {
  for (const auto& [folder, ofFolder] : byFolder(sessions)) {
    if (ofFolder.size() > 1) {
      tellOneFolder(sessions, ofFolder);
    }
  }
}

}  // namespace sentiq
