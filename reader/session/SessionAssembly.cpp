#include "reader/session/SessionAssembly.h"

#include <algorithm>
#include <chrono>
#include <iterator>

#include "reader/session/Life.h"

namespace sentiq {
namespace {

constexpr std::string_view anyFolder = "*";

bool processFits(const Session& a, const Session& b) {
  return a.processId == b.processId || a.processId.empty() || b.processId.empty();
}

// On one machine no two have the same ids at one time, whatever their records say of its start.
bool atOneTime(const SessionExtent& a, const SessionExtent& b) {
  const bool overlap = a.begin && b.begin && *a.begin <= *b.end && *b.begin <= *a.end;
  return overlap && sameComputer(a.computer, b.computer).value_or(true);
}

bool isSame(GrowingSession& session, const SessionPart& added, const SessionExtent& extent, bool sameFolder) {
  const Session& part = added.session;
  if (!processFits(session.session(), part)) {
    return false;
  }
  const Tie tie = tieOfRun(session.extent(), extent);
  if (sameFolder) {
    return tie != Tie::Impossible || session.hasOrigin(added.origin) || atOneTime(session.extent(), extent);
  }
  const bool otherLogs = std::none_of(part.entries.begin(), part.entries.end(),
                                      [&](const LogEntry& entry) { return session.hasRole(entry.role); });
  return tie == Tie::Proven || (tie == Tie::Possible && (otherLogs || session.holdsLineOf(part, added.origin)));
}

// The initial log is begun with the program, a moment after the watchdog log; what is left of that after a sleep begins
// later, but under the same start of Windows.
bool canBeWriter(const SessionExtent& own, const SessionExtent& initial, bool sameFolder) {
  constexpr std::chrono::minutes moment{2};
  const bool beganThen = !own.begin || !initial.begin || std::chrono::abs(*own.begin - *initial.begin) <= moment;
  return sameStart(own, initial).value_or(sameFolder || beganThen);
}

std::pair<std::string, Instant> keyOf(std::string_view name, std::string_view folder, std::optional<Instant> time) {
  return {(std::string(name) += '\0') += folder, time.value_or(Instant{})};
}

}  // namespace

void SessionIndex::add(std::string_view name, std::string_view folder, std::optional<Instant> begin,
                       std::size_t session) {
  sessions_.emplace(keyOf(name, folder, begin), session);
}

std::vector<std::size_t> SessionIndex::near(std::string_view name, std::string_view folder,
                                            std::optional<Instant> time) const {
  std::vector<std::size_t> found;
  const auto key = keyOf(name, folder, time);
  const auto take = [&](auto place, const auto& end) {
    constexpr int most = 8;
    for (int i = 0; i < most && place != end && place->first.first == key.first; ++i, ++place) {
      found.push_back(place->second);
    }
  };
  const auto after = sessions_.upper_bound(key);
  take(std::make_reverse_iterator(after), sessions_.rend());
  take(after, sessions_.end());
  return found;
}

std::optional<std::size_t> SessionAssembly::add(SessionPart part) {
  if (part.role == LogRole::Initial || part.session.id.empty()) {
    (part.role == LogRole::Initial ? initials_ : waiting_).push_back(std::move(part));
    return std::nullopt;
  }
  const SessionExtent extent = extentOf(part.session);
  const auto found = find(byId_, part.session.id, part.session.folder, extent.begin,
                          [&](GrowingSession& session, bool here) { return isSame(session, part, extent, here); });
  return join(found, std::move(part));
}

// The first one that fits, in the folder or else in any.
std::optional<std::size_t> SessionAssembly::find(const SessionIndex& index, const std::string& name,
                                                 const std::string& folder, std::optional<Instant> time,
                                                 const Fits& fits) {
  for (const std::string_view where : {std::string_view(folder), anyFolder}) {
    for (const std::size_t i : index.near(name, where, time)) {
      if (fits(sessions_[i], sessions_[i].session().folder == folder)) {
        return i;
      }
    }
  }
  return std::nullopt;
}

std::size_t SessionAssembly::join(std::optional<std::size_t> found, SessionPart part) {
  const std::size_t index = found.value_or(sessions_.size());
  const bool hadProcess = found && !sessions_[index].session().processId.empty();
  if (found) {
    sessions_[index].add(std::move(part));
  } else {
    sessions_.emplace_back(std::move(part.session), part.origin);
  }
  const Session& session = sessions_[index].session();
  for (const std::string_view folder : {std::string_view(session.folder), anyFolder}) {
    if (!found && !session.id.empty()) {
      byId_.add(session.id, folder, sessions_[index].extent().begin, index);
    }
    if (!hadProcess && !session.processId.empty()) {
      byProcess_.add(session.processId, folder, sessions_[index].extent().begin, index);
    }
  }
  return index;
}

// A process id is given again some time after the process has ended.
std::optional<std::size_t> SessionAssembly::findByProcess(const SessionPart& part) {
  constexpr std::chrono::minutes afterExit{1};
  constexpr std::chrono::hours beforeBegin{1};
  const SessionExtent extent = extentOf(part.session);
  const auto fits = [&](const GrowingSession& session, bool here) {
    const SessionExtent& own = session.extent();
    const bool over = session.exit() && extent.begin && *extent.begin > *session.exit() + afterExit;
    const bool before = own.begin && extent.end && *extent.end < *own.begin - beforeBegin;
    return !over && tieOfRun(own, extent) != Tie::Impossible &&
           (part.role == LogRole::Initial ? canBeWriter(own, extent, here)
                                          : here && !before && !session.session().id.empty());
  };
  return find(byProcess_, part.session.processId, part.session.folder, extent.begin, fits);
}

std::optional<std::size_t> SessionAssembly::findSubject(const Session& told) {
  const SessionExtent extent = extentOf(told);
  return find(byId_, told.id, told.folder, extent.begin, [&](const GrowingSession& session, bool here) {
    const SessionExtent& own = session.extent();
    const Tie tie = tieToSubject(extent, own);
    // In another folder something has to speak for it as soon as there is something that could.
    const bool knowsMachine = !extent.computer.empty() || !own.computer.empty() || (extent.bootFrom && own.bootFrom);
    return tie == Tie::Proven || (tie == Tie::Possible && (here || !knowsMachine));
  });
}

// Those without a process id, which have times only, come last: then the others have told when each session was.
void SessionAssembly::placeNameless() {
  constexpr std::chrono::minutes afterEnd{5};
  const auto withoutProcess = std::stable_partition(
      waiting_.begin(), waiting_.end(), [](const SessionPart& part) { return !part.session.processId.empty(); });
  std::map<std::pair<std::string, std::string>, std::size_t> nameless;  // By folder and process.
  const auto place = [&](std::optional<std::size_t> owner, SessionPart& part) {
    if (owner) {
      join(owner, std::move(part));
      return;
    }
    const auto [known, isNew] = nameless.emplace(std::pair(part.session.folder, part.session.processId), 0);
    known->second = join(isNew ? std::nullopt : std::optional(known->second), std::move(part));
  };
  for (auto part = waiting_.begin(); part != withoutProcess; ++part) {
    const std::optional<std::size_t> owner = findByProcess(*part);
    const bool belowHeader = part->above && sessions_[*part->above].session().metrics.empty();
    place(owner || !belowHeader ? owner : part->above, *part);  // No other record says which process is meant.
  }
  SessionIndex byFolder;
  for (std::size_t i = 0; i < sessions_.size(); ++i) {
    byFolder.add({}, sessions_[i].session().folder, sessions_[i].extent().begin, i);
  }
  for (auto part = withoutProcess; part != waiting_.end(); ++part) {
    const SessionExtent extent = extentOf(part->session);
    std::vector<std::size_t> fitting = byFolder.near({}, part->session.folder, extent.begin);
    std::erase_if(fitting, [&](std::size_t i) {
      const SessionExtent& own = sessions_[i].extent();
      return !extent.begin || !own.begin || *extent.begin < *own.begin - lifeSlack ||
             *extent.begin > *own.end + afterEnd || tieOfRun(own, extent) == Tie::Impossible;
    });
    place(fitting.size() == 1 ? std::optional(fitting.front()) : std::nullopt, *part);
  }
}

void SessionAssembly::placeInitial(SessionPart part, std::vector<Session>& told) {
  Session& initial = part.session;
  const std::optional<std::size_t> writer = findByProcess(part);
  const std::string about = std::exchange(initial.id, {});
  bool hasSubject = false;
  if (!about.empty() && (!writer || sessions_[*writer].session().id != about)) {
    Session& telling = told.emplace_back(initial);
    telling.id = about;
    telling.processId.clear();
    hasSubject = findSubject(telling).has_value();
  }
  initial.abnormalSessionId = about;
  if (writer || !hasSubject) {
    join(writer, std::move(part));
  }
}

// Adds what an initial log tells to the session that it is about, if that is there.
bool SessionAssembly::tell(Session& told, std::size_t origin) {
  const std::optional<std::size_t> subject = findSubject(told);
  if (!subject) {
    return false;
  }
  // What its header says is true of the session that wrote it.
  const std::optional<Instant> begin = sessions_[*subject].extent().begin;
  if (told.booted && begin && *told.booted > *begin) {
    told.laterBoots.push_back(*told.booted);
  }
  told.bootText.clear();
  told.booted.reset();
  told.timeZone.clear();
  told.abnormalSessionId.clear();
  sessions_[*subject].add({std::move(told), LogRole::Initial, origin, {}});
  return true;
}

std::vector<Session> SessionAssembly::takeOut(std::vector<Session>& told) {
  placeNameless();
  for (SessionPart& part : initials_) {
    placeInitial(std::move(part), told);
  }
  std::size_t origin = 0;
  std::erase_if(told, [&](Session& part) { return tell(part, --origin); });
  std::vector<Session> sessions;
  sessions.reserve(sessions_.size());
  for (GrowingSession& session : sessions_) {
    sessions.push_back(session.takeOut());
  }
  return sessions;
}

}  // namespace sentiq
