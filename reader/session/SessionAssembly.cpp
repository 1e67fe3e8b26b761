#include "reader/session/SessionAssembly.h"

#include <algorithm>
#include <chrono>

#include "reader/session/Life.h"

namespace sentiq {
namespace {

constexpr std::string_view anyProcess = "*";

bool processFits(const Session& a, const Session& b) {
  return a.processId == b.processId || a.processId.empty() || b.processId.empty();
}

// On one machine no two have the same ids at one time, whatever their records say of its start.
bool atOneTime(const SessionExtent& a, const SessionExtent& b) {
  const bool overlap = a.begin && b.begin && *a.begin <= *b.end && *b.begin <= *a.end;
  return overlap && sameComputer(a.computer, b.computer).value_or(true);
}

bool isSame(GrowingSession& session, const Session& part, const SessionExtent& extent, std::size_t origin) {
  if (!processFits(session.session(), part)) {
    return false;
  }
  const Tie tie = tieOfRun(session.extent(), extent);
  if (session.session().folder == part.folder) {
    return tie != Tie::Impossible || session.hasOrigin(origin) || atOneTime(session.extent(), extent);
  }
  const bool otherLogs = std::none_of(part.entries.begin(), part.entries.end(),
                                      [&](const LogEntry& entry) { return session.hasRole(entry.role); });
  return tie == Tie::Proven || (tie == Tie::Possible && (otherLogs || session.holdsLineOf(part, origin)));
}

}  // namespace

std::optional<std::size_t> SessionAssembly::add(SessionPart part) {
  if (part.session.id.empty()) {
    waiting_.push_back(std::move(part));
    return std::nullopt;
  }
  const std::optional<std::size_t> found = find(part.session, extentOf(part.session), part.origin);
  return join(found, std::move(part));
}

std::optional<std::size_t> SessionAssembly::find(const Session& part, const SessionExtent& extent, std::size_t origin) {
  const std::string_view process = part.processId.empty() ? anyProcess : part.processId;
  for (const std::string_view folder : {std::string_view(part.folder), anyFolder}) {
    for (const std::string_view processId : {process, std::string_view()}) {
      for (const std::size_t i : byName_.near(joinedKey({part.id, processId, folder}), extent.begin)) {
        if (isSame(sessions_[i], part, extent, origin)) {
          return i;
        }
      }
    }
  }
  return std::nullopt;
}

std::size_t SessionAssembly::join(std::optional<std::size_t> session, SessionPart part) {
  const std::string id = part.session.id;
  const std::string processId = part.session.processId;
  const std::string folder = part.session.folder;
  const std::size_t index = session.value_or(sessions_.size());
  const bool namesProcess = !session || sessions_[index].session().processId.empty();
  if (session) {
    sessions_[index].add(std::move(part));
  } else {
    sessions_.emplace_back(std::move(part.session), part.origin);
  }
  const std::optional<Instant> begin = sessions_[index].extent().begin;
  if (!session || (namesProcess && !processId.empty())) {
    for (const std::string_view where : {std::string_view(folder), anyFolder}) {
      byName_.add(joinedKey({id, processId, where}), begin, index);
      byProcess_.add(joinedKey({processId, where}), begin, index);
      if (!session) {
        byName_.add(joinedKey({id, anyProcess, where}), begin, index);
      }
    }
  }
  return index;
}

// A process id is given again some time after the process has ended.
std::optional<std::size_t> SessionAssembly::findByProcess(const SessionPart& part, const SessionExtent& extent) const {
  constexpr std::chrono::minutes afterExit{1};
  constexpr std::chrono::hours beforeBegin{1};
  for (const std::size_t i : byProcess_.near(joinedKey({part.session.processId, part.session.folder}), extent.begin)) {
    const GrowingSession& session = sessions_[i];
    const bool over = session.exit() && extent.begin && *extent.begin > *session.exit() + afterExit;
    const bool before = session.extent().begin && extent.end && *extent.end < *session.extent().begin - beforeBegin;
    if (!session.session().id.empty() && !over && !before && tieOfRun(session.extent(), extent) != Tie::Impossible) {
      return i;
    }
  }
  return std::nullopt;
}

// Those without a process id, which have times only, come last: then the others have told when each session was.
void SessionAssembly::placeNameless() {
  constexpr std::chrono::minutes afterEnd{5};
  const auto withoutProcess = std::stable_partition(
      waiting_.begin(), waiting_.end(), [](const SessionPart& part) { return !part.session.processId.empty(); });
  std::map<std::string, std::optional<std::size_t>> nameless;  // By folder and process.
  const auto place = [&](std::optional<std::size_t> owner, SessionPart& part) {
    if (owner) {
      join(owner, std::move(part));
    } else {
      std::optional<std::size_t>& session = nameless[joinedKey({part.session.folder, part.session.processId})];
      session = join(session, std::move(part));
    }
  };
  for (auto part = waiting_.begin(); part != withoutProcess; ++part) {
    const std::optional<std::size_t> owner = findByProcess(*part, extentOf(part->session));
    const bool belowHeader = part->above && sessions_[*part->above].session().metrics.empty();
    place(owner || !belowHeader ? owner : part->above, *part);  // No other record says which process is meant.
  }
  SessionIndex byFolder;
  for (std::size_t i = 0; i < sessions_.size(); ++i) {
    byFolder.add(sessions_[i].session().folder, sessions_[i].extent().begin, i);
  }
  for (auto part = withoutProcess; part != waiting_.end(); ++part) {
    const SessionExtent extent = extentOf(part->session);
    std::vector<std::size_t> fitting = byFolder.near(part->session.folder, extent.begin);
    std::erase_if(fitting, [&](std::size_t i) {
      const SessionExtent& own = sessions_[i].extent();
      return !extent.begin || !own.begin || *extent.begin < *own.begin - lifeSlack ||
             *extent.begin > *own.end + afterEnd || tieOfRun(own, extent) == Tie::Impossible;
    });
    place(fitting.size() == 1 ? std::optional(fitting.front()) : std::nullopt, *part);
  }
  waiting_.clear();
}

std::vector<Session> SessionAssembly::takeOut() {
  placeNameless();
  std::vector<Session> sessions;
  sessions.reserve(sessions_.size());
  for (GrowingSession& session : sessions_) {
    sessions.push_back(session.takeOut());
  }
  return sessions;
}

}  // namespace sentiq
