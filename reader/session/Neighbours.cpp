#include "reader/session/Neighbours.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <unordered_set>
#include <utility>

#include "reader/events/EventFacts.h"

namespace sentiq {
namespace {

// So many sessions run at once on a machine, at most, as far as anybody has seen.
constexpr std::size_t mostLookedAt = 4;

std::string computerOf(const Session& session) {
  const auto named = std::find_if(session.events.begin(), session.events.end(),
                                  [](const EventRecord& event) { return !event.computer().empty(); });
  return named != session.events.end() ? std::string(named->computer()) : std::string{};
}

// What one session has to give: its own entries and copies, not what it has been given.
struct Known {
  SessionSpan span;
  std::size_t entries;
  std::size_t copies;
};

EarlierSession earlierSession(const Session& session, const SessionSpan& span) {
  EarlierSession earlier{{*span.end, span.offset}, {}, {}};
  if (!session.metrics.empty()) {
    earlier.adapters = session.metrics.back().adapters;
  }
  for (const EventRecord& event : session.events) {
    if (isFailure(event.meaning)) {
      earlier.canvixVersion = programFailure(event).version;
    }
  }
  return earlier;
}

void lend(const Session& from, const Known& known, Session& to, const SessionSpan& span) {
  constexpr std::chrono::minutes late{5};
  std::unordered_set<std::string> keys;
  for (const EventRecord& event : to.events) {
    keys.insert(event.key());
  }
  for (std::size_t i = 0; i < known.entries; ++i) {
    const LogEntry& entry = from.entries[i];
    if (!entry.event || entry.borrowed || entry.meaning == Meaning::Other || !entry.time || *entry.time < *span.begin ||
        *entry.time > *known.span.end + late || !keys.insert(from.eventOf(entry).key()).second) {
      continue;
    }
    LogEntry& copy = to.entries.emplace_back(entry);
    copy.borrowed = true;
    copy.event = static_cast<std::uint32_t>(to.events.size());
    to.events.push_back(from.eventOf(entry));
  }
  to.copies.insert(to.copies.end(), from.copies.begin(),
                   from.copies.begin() + static_cast<std::ptrdiff_t>(known.copies));
  if (from.booted && *from.booted > *span.begin) {
    to.laterBoots.push_back(*from.booted);
  }
}

void putInOrder(Session& session) {
  std::stable_sort(session.entries.begin(), session.entries.end(), [](const LogEntry& a, const LogEntry& b) {
    return a.time.value_or(Instant{}) < b.time.value_or(Instant{});
  });
  std::stable_sort(session.copies.begin(), session.copies.end(),
                   [](const ChannelCopy& a, const ChannelCopy& b) { return a.made < b.made; });
}

// @param machine the sessions of one, the oldest first.
void tellOneMachine(const std::vector<Session*>& machine) {
  std::vector<Known> known;
  for (const Session* const session : machine) {
    known.push_back({sessionSpan(*session), session->entries.size(), session->copies.size()});
  }
  for (std::size_t i = 0; i < machine.size(); ++i) {
    bool nextSeen = false;
    const std::size_t end = std::min(machine.size(), i + mostLookedAt + 1);
    for (std::size_t j = i - std::min(i, mostLookedAt); j < end; ++j) {
      const bool before = *known[j].span.end < *known[i].span.begin;
      const bool after = *known[j].span.begin > *known[i].span.end;
      if (before) {
        machine[i]->earlier = earlierSession(*machine[j], known[j].span);
      } else if (j != i && !(after && nextSeen)) {
        lend(*machine[j], known[j], *machine[i], known[i].span);
        nextSeen = nextSeen || after;
      }
    }
  }
  for (Session* const session : machine) {
    putInOrder(*session);
  }
}

}  // namespace

void tellNeighbours(std::vector<Session>& sessions) {
  std::map<std::string, std::string> computers;  // One of each folder, for sessions whose events name none.
  std::vector<std::string> named;
  for (const Session& session : sessions) {
    named.push_back(computerOf(session));
    if (!named.back().empty()) {
      computers.emplace(session.folder, named.back());
    }
  }
  std::map<std::pair<std::string, std::string>, std::vector<Session*>> machines;
  for (std::size_t i = 0; i < sessions.size(); ++i) {
    if (sessionSpan(sessions[i]).begin) {
      const std::string& folder = sessions[i].folder;
      machines[{folder, named[i].empty() ? computers[folder] : named[i]}].push_back(&sessions[i]);
    }
  }
  for (const auto& [name, machine] : machines) {
    if (machine.size() > 1) {
      tellOneMachine(machine);
    }
  }
}

}  // namespace sentiq
