#include "reader/session/SharedEvents.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include "reader/input/CleanText.h"
#include "reader/session/GrowingSession.h"

namespace sentiq {
namespace {

// When events can concern a session.
struct Reach {
  std::size_t session = 0;
  Instant begin;
  Instant end;    // Of its own lines.
  Instant until;  // What is logged later tells of the next one.
  std::unordered_set<std::string> known;  // Events, once there is something to add.
};

bool isSameMachine(const Session& a, const Session& b) {
  return a.computer.empty() || b.computer.empty() || equalIgnoringCase(a.computer, b.computer);
}

// In the order in which they began.
std::vector<Reach> reachesOf(const std::vector<Session>& sessions, const std::vector<std::size_t>& ofFolder) {
  constexpr std::chrono::minutes late{10};  // Error reports come some time after the failure.
  std::vector<Reach> reaches;
  for (const std::size_t i : ofFolder) {
    const SessionSpan span = sessionSpan(sessions[i]);
    if (span.begin) {
      reaches.push_back({i, *span.begin, *span.end, Instant::max(), {}});
    }
  }
  std::stable_sort(reaches.begin(), reaches.end(), [](const Reach& a, const Reach& b) { return a.begin < b.begin; });
  for (std::size_t i = 0; i + 1 < reaches.size(); ++i) {
    reaches[i].until = std::max(reaches[i].end, reaches[i + 1].begin) + late;
  }
  return reaches;
}

struct Sharing {
  std::size_t from;
  std::size_t entry;
  std::size_t to;  // Index of a reach.
};

// However many sessions overlap, an event is looked at for the few that began last before it.
std::vector<Sharing> sharingsOf(const std::vector<Session>& sessions, const std::vector<std::size_t>& givers,
                                const std::vector<Reach>& reaches) {
  constexpr int most = 4;
  std::vector<Sharing> sharings;
  for (const std::size_t giver : givers) {
    const std::vector<LogEntry>& entries = sessions[giver].entries;
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const LogEntry& entry = entries[i];
      if (!entry.event || !entry.time || entry.meaning == Meaning::Other) {
        continue;
      }
      auto reach = std::upper_bound(reaches.begin(), reaches.end(), *entry.time,
                                    [](Instant time, const Reach& r) { return time < r.begin; });
      for (int looked = 0; looked < most && reach != reaches.begin(); ++looked) {
        --reach;
        if (reach->session != giver && *entry.time <= reach->until &&
            isSameMachine(sessions[giver], sessions[reach->session])) {
          sharings.push_back({giver, i, static_cast<std::size_t>(reach - reaches.begin())});
        }
      }
    }
  }
  return sharings;
}

void share(const Session& from, const LogEntry& entry, Session& to, Reach& reach) {
  if (reach.known.empty()) {
    for (const EventRecord& event : to.events) {
      reach.known.insert(event.key());
    }
  }
  const EventRecord& event = from.eventOf(entry);
  if (reach.known.insert(event.key()).second) {
    LogEntry& added = to.entries.emplace_back(entry);
    added.event = static_cast<std::uint32_t>(to.events.size());
    to.events.push_back(event);
  }
}

void shareIn(std::vector<Session>& sessions, const std::vector<std::size_t>& ofFolder) {
  std::vector<Reach> reaches = reachesOf(sessions, ofFolder);
  for (const Sharing& sharing : sharingsOf(sessions, ofFolder, reaches)) {  // Entries are only added behind those meant.
    Reach& reach = reaches[sharing.to];
    const LogEntry entry = sessions[sharing.from].entries[sharing.entry];
    share(sessions[sharing.from], entry, sessions[reach.session], reach);
  }
  for (std::size_t i = 0; i + 1 < reaches.size(); ++i) {  // In this order nothing is given further.
    const Session& next = sessions[reaches[i + 1].session];
    Session& session = sessions[reaches[i].session];
    if (isSameMachine(next, session)) {
      std::copy_if(next.copies.begin(), next.copies.end(), std::back_inserter(session.copies),
                   [&](const ChannelCopy& copy) { return copy.oldest && *copy.oldest <= reaches[i].end; });
    }
  }
  for (const Reach& reach : reaches) {
    sortSession(sessions[reach.session]);
  }
}

}  // namespace

void shareEvents(std::vector<Session>& sessions) {
  std::map<std::string, std::vector<std::size_t>> folders;
  for (std::size_t i = 0; i < sessions.size(); ++i) {
    folders[sessions[i].folder].push_back(i);
  }
  for (const auto& [folder, ofFolder] : folders) {
    if (ofFolder.size() > 1) {
      shareIn(sessions, ofFolder);
    }
  }
}

}  // namespace sentiq
