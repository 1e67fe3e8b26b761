#include "reader/session/Session.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "reader/events/EventWords.h"
#include "reader/input/CleanText.h"

namespace sentiq {

bool SessionSpan::contains(Instant time) const {
  constexpr std::chrono::minutes afterEnd{5};
  return begin && end && time >= *begin && time <= *end + afterEnd;
}

SessionSpan sessionSpan(const Session& session) {
  SessionSpan span;
  const MetricSample* firstRecord = nullptr;
  for (const LogEntry& entry : session.entries) {
    if (entry.time && !entry.event && entry.role != LogRole::Initial) {
      span.begin = earlier(span.begin, entry.time);
      span.end = later(span.end, entry.time);
      span.offset = entry.offset;
      firstRecord = firstRecord == nullptr && entry.metric ? &session.recordOf(entry) : firstRecord;
    }
  }
  if (firstRecord != nullptr) {
    span.begin = earlier(span.begin, firstRecord->time.instant - firstRecord->ran.value_or(Ticks{}));
  }
  return span;
}

std::vector<std::size_t> asWritten(const Session& session, bool (*isWanted)(const LogEntry&)) {
  const std::vector<LogEntry>& entries = session.entries;
  std::vector<std::size_t> written;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (isWanted(entries[i])) {
      written.push_back(i);
    }
  }
  std::stable_sort(written.begin(), written.end(), [&](std::size_t a, std::size_t b) {
    return std::tie(entries[a].file, entries[a].line) < std::tie(entries[b].file, entries[b].line);
  });
  return written;
}

std::map<std::string, std::vector<std::size_t>> byFolder(const std::vector<Session>& sessions) {
  std::map<std::string, std::vector<std::size_t>> folders;
  for (std::size_t i = 0; i < sessions.size(); ++i) {
    folders[sessions[i].folder].push_back(i);
  }
  return folders;
}

std::string sourceOf(const Session& session, const LogEntry& entry) {
  return entry.event ? cleanText(session.eventOf(entry).channel()) : roleName(entry.role);
}

std::string roleName(LogRole role) {
  constexpr std::array<const char*, 4> names{"unknown", "session", "watchdog", "initial"};
  return names[static_cast<std::size_t>(role)];
}

std::string wordsOf(const Session& session, const LogEntry& entry) {
  return entry.event    ? eventWords(session.eventOf(entry), entry.offset)
         : entry.metric ? describeMetric(session.recordOf(entry))
                        : entry.text;
}

}  // namespace sentiq
