#include "reader/session/GrowingSession.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace sentiq {
namespace {

std::size_t eventHash(const EventRecord& event) {
  return std::hash<std::string>{}(event.key());
}

// Of a line or a record.
std::uint64_t lineHash(const Session& session, const LogEntry& entry) {
  std::uint64_t hash = std::hash<std::string_view>{}(entry.text) + static_cast<std::uint64_t>(entry.role);
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
  return std::find(originOf_.begin(), originOf_.end(), origin) != originOf_.end();
}

void GrowingSession::noteLines(const Session& part, std::size_t origin) {
  for (const LogEntry& entry : part.entries) {
    std::optional<std::size_t>& first = originOf_[static_cast<std::size_t>(entry.role)];
    if (!first) {
      first = origin;
    }
    if (entry.meaning == Meaning::Exit && !entry.event && entry.time) {
      exit_ = std::max(exit_.value_or(*entry.time), *entry.time);
    }
  }
}

void GrowingSession::indexLines() {
  if (!lines_) {
    lines_.emplace();
    for (const LogEntry& entry : session_.entries) {
      if (!entry.event) {
        lines_->emplace(lineHash(session_, entry), *originOf_[static_cast<std::size_t>(entry.role)]);
      }
    }
  }
}

void GrowingSession::indexEvents() {
  if (!events_) {
    events_.emplace();
    for (const EventRecord& event : session_.events) {
      events_->insert(eventHash(event));
    }
  }
}

bool GrowingSession::isKnown(const Session& part, const LogEntry& entry, std::size_t origin) const {
  const auto found = lines_->find(lineHash(part, entry));
  return found != lines_->end() && found->second != origin;
}

bool GrowingSession::holdsLineOf(const Session& part, std::size_t origin) {
  indexLines();
  return std::any_of(part.entries.begin(), part.entries.end(),
                     [&](const LogEntry& entry) { return !entry.event && entry.time && isKnown(part, entry, origin); });
}

void GrowingSession::add(Session part, std::size_t origin, const std::string& name) {
  for (std::string Session::* const text :
       {&Session::id, &Session::processId, &Session::abnormalSessionId, &Session::folder, &Session::computer,
        &Session::timeZone, &Session::bootText}) {
    if ((session_.*text).empty()) {
      session_.*text = std::move(part.*text);
    }
  }
  session_.booted = session_.booted ? session_.booted : part.booted;
  const bool tellsOnly = std::all_of(part.entries.begin(), part.entries.end(),
                                     [](const LogEntry& entry) { return entry.role == LogRole::Initial; });
  if (!tellsOnly) {
    extent_.add(extentOf(part));
  }
  const bool compared = std::any_of(part.entries.begin(), part.entries.end(), [&](const LogEntry& entry) {
    const auto& first = originOf_[static_cast<std::size_t>(entry.role)];
    return first && *first != origin;
  });
  if (compared) {
    indexLines();
  }
  if (!part.events.empty() && !session_.events.empty()) {
    indexEvents();
  }
  noteLines(part, origin);
  bool repeated = false;
  for (LogEntry& entry : part.entries) {
    if (!entry.event && lines_) {
      if (isKnown(part, entry, origin)) {
        repeated = repeated || entry.time.has_value();
        continue;
      }
      lines_->emplace(lineHash(part, entry), origin);
    }
    append(part, std::move(entry));
  }
  session_.counted.merge(part.counted);
  session_.eventCopies += repeated ? 0 : part.eventCopies + part.counted.size();  // What is in both stays behind.
  std::move(part.copies.begin(), part.copies.end(), std::back_inserter(session_.copies));
  std::move(part.laterBoots.begin(), part.laterBoots.end(), std::back_inserter(session_.laterBoots));
  std::move(part.repeated.begin(), part.repeated.end(), std::back_inserter(session_.repeated));
  if (repeated && !name.empty() &&
      std::find(session_.repeated.begin(), session_.repeated.end(), name) == session_.repeated.end()) {
    session_.repeated.push_back(name);
  }
}

void GrowingSession::append(Session& part, LogEntry entry) {
  if (entry.event) {
    EventRecord& event = part.events[*entry.event];
    if (events_ && !events_->insert(eventHash(event)).second) {
      ++session_.eventCopies;
      return;
    }
    entry.event = static_cast<std::uint32_t>(session_.events.size());
    session_.events.push_back(std::move(event));
  } else if (entry.metric) {
    MetricSample& record = part.metrics[*entry.metric];
    entry.metric = static_cast<std::uint32_t>(session_.metrics.size());
    session_.metrics.push_back(std::move(record));
  }
  session_.entries.push_back(std::move(entry));
}

Session GrowingSession::takeOut() {
  sortSession(session_);
  return std::move(session_);
}

void sortSession(Session& session) {
  std::stable_sort(session.entries.begin(), session.entries.end(), [](const LogEntry& a, const LogEntry& b) {
    return a.time.value_or(Instant{}) < b.time.value_or(Instant{});
  });
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
