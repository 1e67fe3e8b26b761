#include "reader/session/InitialLogs.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <utility>

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
  if (initial.processId.empty()) {
    return std::nullopt;
  }
  for (const std::string_view folder : {std::string_view(initial.folder), anyFolder}) {
    std::optional<std::size_t> nearest;
    Ticks least = Ticks::max();
    for (const std::size_t i : byProcess.near(joinedKey({initial.processId, folder}), extent.begin)) {
      const SessionExtent& own = sessions[i].extent();
      const Ticks distance = own.begin && extent.begin ? std::chrono::abs(*own.begin - *extent.begin) : Ticks{};
      const bool fits = sameStart(own, extent).value_or(folder != anyFolder || distance <= moment);
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

}  // namespace

void addInitialLogs(std::vector<GrowingSession>& sessions, std::vector<SessionAssembly::Part> initials,
                    std::vector<Session>& told) {
  SessionIndex byProcess = indexOf(sessions, &Session::processId);
  const SessionIndex byId = indexOf(sessions, &Session::id);
  for (SessionAssembly::Part& part : initials) {
    Session& initial = part.session;
    const SessionExtent extent = extentOf(initial);
    const std::string about = std::exchange(initial.id, {});
    const std::optional<std::size_t> writer = writerOf(sessions, byProcess, initial, extent);
    bool hasSubject = false;
    if (!about.empty() && (!writer || sessions[*writer].session().id != about)) {
      Session& telling = told.emplace_back(initial);
      telling.id = about;
      telling.processId.clear();
      hasSubject = subjectOf(sessions, byId, telling).has_value();
    }
    initial.abnormalSessionId = about;
    if (writer) {
      sessions[*writer].add(std::move(initial), part.origin, part.name);
    } else if (!hasSubject) {
      for (const std::string_view folder : {std::string_view(initial.folder), anyFolder}) {
        byProcess.add(joinedKey({initial.processId, folder}), extent.begin, sessions.size());
      }
      sessions.emplace_back(std::move(initial), part.origin);
    }
  }
  tellSessions(sessions, told);
}

void tellSessions(std::vector<GrowingSession>& sessions, std::vector<Session>& told) {
  const SessionIndex byId = indexOf(sessions, &Session::id);
  std::size_t origin = 0;
  std::erase_if(told, [&](Session& part) {
    const std::optional<std::size_t> subject = subjectOf(sessions, byId, part);
    if (subject) {
      // What its header says is true of the session that wrote it.
      const std::optional<Instant> begin = sessions[*subject].extent().begin;
      if (part.booted && begin && *part.booted > *begin) {
        part.laterBoots.push_back(*part.booted);
      }
      part.bootText.clear();
      part.booted.reset();
      part.timeZone.clear();
      part.abnormalSessionId.clear();
      sessions[*subject].add(std::move(part), --origin, {});
    }
    return subject.has_value();
  });
}

}  // namespace sentiq
