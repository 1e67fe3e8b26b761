#include "reader/session/PartList.h"

#include <algorithm>
#include <utility>

namespace sentiq {
namespace {

// Lines before the first time stamp take the first one's time.
void completeEntries(SessionPart& part) {
  std::vector<LogEntry>& entries = part.session.entries;
  const auto first =
      std::find_if(entries.begin(), entries.end(), [](const LogEntry& entry) { return entry.time && !entry.event; });
  for (auto entry = entries.begin(); entry != first && first != entries.end(); ++entry) {
    if (!entry->time) {
      entry->time = first->time;
      entry->offset = first->offset;
    }
  }
  for (LogEntry& entry : entries) {
    entry.role = part.role;
  }
}

}  // namespace

SessionPart& PartList::current() {
  return parts_.empty() ? parts_.emplace_back() : parts_[current_];
}

void PartList::begin() {
  current_ = parts_.size();
  parts_.emplace_back();
}

void PartList::nameProcess(const std::string& processId) {
  current().session.processId = processId;
  ofProcess_[processId] = current_;
}

SessionPart& PartList::ofProcess(const std::string& processId) {
  const std::string& named = current().session.processId;
  if (named == processId) {
    return parts_[current_];
  }
  if (named.empty()) {
    nameProcess(processId);
    return parts_[current_];
  }
  const auto [found, isNew] = ofProcess_.emplace(processId, parts_.size());
  if (isNew) {
    parts_.emplace_back().session.processId = processId;
  }
  return parts_[found->second];
}

std::vector<SessionPart> PartList::takeOut() {
  for (SessionPart& part : parts_) {
    completeEntries(part);
  }
  std::vector<SessionPart> taken = std::exchange(parts_, {});
  ofProcess_.clear();
  if (!taken.empty()) {
    const SessionPart& last = taken[current_];
    SessionPart& next = parts_.emplace_back();
    next.role = last.role;
    next.session.id = last.session.id;
    next.session.processId = last.session.processId;
  }
  current_ = 0;
  return taken;
}

}  // namespace sentiq
