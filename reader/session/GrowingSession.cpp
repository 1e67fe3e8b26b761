#include "reader/session/GrowingSession.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>

#include "reader/input/TextHash.h"

namespace sentiq {
namespace {

std::uint64_t hashOf(const Session& session, const LogEntry& entry) {
  if (entry.event) {
    return textHash(session.eventOf(entry).key());
  }
  std::uint64_t hash = textHash(entry.text) + static_cast<std::uint64_t>(entry.role);
  if (entry.metric) {
    const MetricSample& record = session.recordOf(entry);
    hash += static_cast<std::uint64_t>(record.processId) * 31 + static_cast<std::uint64_t>(record.freeDisk);
  }
  return hash * 0x9E3779B97F4A7C15U ^
         static_cast<std::uint64_t>(entry.time ? entry.time->time_since_epoch().count() : 0);
}

}  // namespace

GrowingSession::GrowingSession(Session session, std::size_t origin)
    : session_(std::move(session)), extent_(extentOf(session_)) {
  noteLines(session_, origin);
}

bool GrowingSession::hasOrigin(std::size_t origin) const {
  return std::any_of(originOf_.begin(), originOf_.end(), [&](const auto& first) { return first.second == origin; });
}

void GrowingSession::noteLines(const Session& part, std::size_t origin) {
  for (const LogEntry& entry : part.entries) {
    originOf_.try_emplace(entry.role, origin);
    if (entry.meaning == Meaning::Exit && !entry.event) {
      exit_ = later(exit_, entry.time);
    }
  }
}

void GrowingSession::index() {
  if (!known_) {
    known_.emplace();
    for (const LogEntry& entry : session_.entries) {
      known_->emplace(hashOf(session_, entry), originOf_.at(entry.role));
    }
    for (const CountedEvent& event : session_.counted) {
      known_->emplace(event.hash, 0);
    }
  }
}

// An event is one wherever it stands; lines that are alike are several within one origin.
bool GrowingSession::isNew(const Session& part, const LogEntry& entry, std::size_t origin) {
  const auto [known, isNew] = known_->emplace(hashOf(part, entry), origin);
  return isNew || (!entry.event && known->second == origin);
}

bool GrowingSession::holdsLineOf(const Session& part, std::size_t origin) {
  index();
  return std::any_of(part.entries.begin(), part.entries.end(), [&](const LogEntry& entry) {
    const auto known = !entry.event && entry.time ? known_->find(hashOf(part, entry)) : known_->end();
    return known != known_->end() && known->second != origin;
  });
}

void GrowingSession::add(SessionPart added) {
  Session& part = added.session;
  const std::size_t origin = added.origin;
  const bool tellsOnly = std::all_of(part.entries.begin(), part.entries.end(),
                                     [](const LogEntry& entry) { return entry.role == LogRole::Initial; });
  if (!tellsOnly) {
    extent_.add(extentOf(part));
  }
  for (std::string Session::* const text :
       {&Session::id, &Session::processId, &Session::abnormalSessionId, &Session::folder, &Session::computer,
        &Session::timeZone, &Session::bootText}) {
    if ((session_.*text).empty()) {
      session_.*text = std::move(part.*text);
    }
  }
  session_.booted = session_.booted ? session_.booted : part.booted;
  const bool holdsSuchLines = std::any_of(part.entries.begin(), part.entries.end(), [&](const LogEntry& entry) {
    const auto first = originOf_.find(entry.role);
    return first != originOf_.end() && first->second != origin;
  });
  const auto holdsEvents = [](const Session& session) { return !session.events.empty() || !session.counted.empty(); };
  if (holdsSuchLines || (holdsEvents(part) && holdsEvents(session_))) {
    index();
  }
  noteLines(part, origin);
  bool repeated = false;
  for (LogEntry& entry : part.entries) {
    if (!known_ || isNew(part, entry, origin)) {
      append(part, std::move(entry));
    } else if (entry.event) {
      ++session_.eventCopies;
    } else {
      repeated = repeated || entry.time;
    }
  }
  std::uint64_t copies = part.eventCopies;
  for (const CountedEvent& event : part.counted) {
    if (!known_ || known_->emplace(event.hash, origin).second) {
      session_.counted.push_back(event);
    } else {
      ++copies;
    }
  }
  session_.eventCopies += repeated ? 0 : copies;
  std::move(part.copies.begin(), part.copies.end(), std::back_inserter(session_.copies));
  std::move(part.laterBoots.begin(), part.laterBoots.end(), std::back_inserter(session_.laterBoots));
  std::move(part.repeated.begin(), part.repeated.end(), std::back_inserter(session_.repeated));
  if (repeated && !added.name.empty() &&
      std::find(session_.repeated.begin(), session_.repeated.end(), added.name) == session_.repeated.end()) {
    session_.repeated.push_back(std::move(added.name));
  }
}

void GrowingSession::append(Session& part, LogEntry entry) {
  if (entry.event) {
    EventRecord& event = part.events[*entry.event];
    entry.event = static_cast<std::uint32_t>(session_.events.size());
    session_.events.push_back(std::move(event));
  } else if (entry.metric) {
    MetricSample& record = part.metrics[*entry.metric];
    entry.metric = static_cast<std::uint32_t>(session_.metrics.size());
    session_.metrics.push_back(std::move(record));
  }
  session_.entries.push_back(std::move(entry));
}

void sortSession(Session& session) {
  const auto isBefore = [](const LogEntry& a, const LogEntry& b) {
    return a.time.value_or(Instant{}) < b.time.value_or(Instant{});
  };
  if (!std::is_sorted(session.entries.begin(), session.entries.end(), isBefore)) {
    std::stable_sort(session.entries.begin(), session.entries.end(), isBefore);
  }
  // Of two copies of one copy the one that holds more stays.
  std::vector<ChannelCopy>& copies = session.copies;
  std::stable_sort(copies.begin(), copies.end(), [](const ChannelCopy& a, const ChannelCopy& b) {
    return std::tuple(a.made, std::string_view(a.channel), b.events) <
           std::tuple(b.made, std::string_view(b.channel), a.events);
  });
  const auto end = std::unique(copies.begin(), copies.end(), [](const ChannelCopy& a, const ChannelCopy& b) {
    return a.made == b.made && a.channel == b.channel;
  });
  copies.erase(end, copies.end());
}

}  // namespace sentiq
