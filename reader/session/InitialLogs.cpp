#include "reader/session/InitialLogs.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "reader/session/GrowingSession.h"
#include "reader/session/SessionIndex.h"

namespace sentiq {
namespace {

SessionIndex indexOf(const std::vector<GrowingSession>& sessions, std::string Session::* key) {
  SessionIndex index;
  for (std::size_t i = 0; i < sessions.size(); ++i) {
    const Session& session = sessions[i].session();
    for (const std::string_view folder : {std::string_view(session.folder), anyFolder}) {
      index.add(joinedKey({session.*key, folder}), sessions[i].extent().begin, i);
    }
  }
  return index;
}

// The initial log is begun with the program, a moment after the watchdog log; what is left of that after a sleep begins
// later, but under the same start of Windows.
std::optional<std::size_t> writerOf(const std::vector<GrowingSession>& sessions, const SessionIndex& byProcess,
                                    const Session& initial, const SessionExtent& extent) {
  constexpr std::chrono::minutes moment{2};
  constexpr std::chrono::minutes afterExit{1};
  if (initial.processId.empty()) {
    return std::nullopt;
  }
  for (const std::string_view folder : {std::string_view(initial.folder), anyFolder}) {
    std::optional<std::size_t> nearest;
    Ticks least = Ticks::max();
    for (const std::size_t i : byProcess.near(joinedKey({initial.processId, folder}), extent.begin)) {
      const SessionExtent& own = sessions[i].extent();
      const Ticks distance = own.begin && extent.begin ? std::chrono::abs(*own.begin - *extent.begin) : Ticks{};
      const std::optional<Instant> exit = sessions[i].exit();
      const bool over = exit && extent.begin && *extent.begin > *exit + afterExit;
      const bool fits = !over && sameStart(own, extent).value_or(folder != anyFolder || distance <= moment);
      if (fits && distance < least && tieOfRun(own, extent) != Tie::Impossible) {
        nearest = i;
        least = distance;
      }
    }
    if (nearest) {
      return nearest;
    }
  }
  return std::nullopt;
}

std::optional<std::size_t> subjectOf(const std::vector<GrowingSession>& sessions, const SessionIndex& byId,
                                     const Session& told) {
  const SessionExtent extent = extentOf(told);
  for (const std::string_view folder : {std::string_view(told.folder), anyFolder}) {
    for (const std::size_t i : byId.near(joinedKey({told.id, folder}), extent.begin)) {
      const SessionExtent& own = sessions[i].extent();
      const Tie tie = tieToSubject(extent, own);
      // In another folder something has to speak for it as soon as there is something that could.
      const bool knowsMachine = !extent.computer.empty() || !own.computer.empty() || (extent.bootFrom && own.bootFrom);
      if (tie == Tie::Proven || (tie == Tie::Possible && (folder != anyFolder || !knowsMachine))) {
        return i;
      }
    }
  }
  return std::nullopt;
}

// Adds what an initial log tells to the session that it is about, if that is there.
bool tell(std::vector<GrowingSession>& sessions, const SessionIndex& byId, Session& told, std::size_t origin) {
  const std::optional<std::size_t> subject = subjectOf(sessions, byId, told);
  if (!subject) {
    return false;
  }
  // What its header says is true of the session that wrote it.
  const std::optional<Instant> begin = sessions[*subject].extent().begin;
  if (told.booted && begin && *told.booted > *begin) {
    told.laterBoots.push_back(*told.booted);
  }
  told.bootText.clear();
  told.booted.reset();
  told.timeZone.clear();
  told.abnormalSessionId.clear();
  sessions[*subject].add({std::move(told), LogRole::Initial, origin, {}});
  return true;
}

}  // namespace

void addInitialLogs(std::vector<Session>& sessions, std::vector<SessionPart> initials, std::vector<Session>& told) {
  if (initials.empty() && told.empty()) {
    return;
  }
  std::vector<GrowingSession> growing(std::make_move_iterator(sessions.begin()),
                                      std::make_move_iterator(sessions.end()));
  SessionIndex byProcess = indexOf(growing, &Session::processId);
  const SessionIndex byId = indexOf(growing, &Session::id);
  for (SessionPart& part : initials) {
    Session& initial = part.session;
    const SessionExtent extent = extentOf(initial);
    const std::string about = std::exchange(initial.id, {});
    const std::optional<std::size_t> writer = writerOf(growing, byProcess, initial, extent);
    bool hasSubject = false;
    if (!about.empty() && (!writer || growing[*writer].session().id != about)) {
      Session& telling = told.emplace_back(initial);
      telling.id = about;
      telling.processId.clear();
      hasSubject = subjectOf(growing, byId, telling).has_value();
    }
    initial.abnormalSessionId = about;
    if (writer) {
      growing[*writer].add(std::move(part));
    } else if (!hasSubject) {
      for (const std::string_view folder : {std::string_view(initial.folder), anyFolder}) {
        byProcess.add(joinedKey({initial.processId, folder}), extent.begin, growing.size());
      }
      growing.emplace_back(std::move(initial), part.origin);
    }
  }
  std::size_t origin = 0;
  std::erase_if(told, [&](Session& part) { return tell(growing, byId, part, --origin); });
  sessions.clear();
  for (GrowingSession& session : growing) {
    sessions.push_back(session.takeOut());
  }
}

}  // namespace sentiq
