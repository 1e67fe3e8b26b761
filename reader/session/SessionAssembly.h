// Which parts of logs belong to one session. It is said by session id and process id; where those do not tell machines
// apart, by computer, start of Windows and time; and where a header is gone, by what the lines themselves say.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/session/GrowingSession.h"

namespace sentiq {

/// Sessions by a name of theirs and their folder, and of those with both alike the ones that began near a time: however
/// many there are, few are looked at.
class SessionIndex {
 public:
  void add(std::string_view name, std::string_view folder, std::optional<Instant> begin, std::size_t session);

  /// The nearest ones, those that began before it first, each time the nearest first.
  std::vector<std::size_t> near(std::string_view name, std::string_view folder, std::optional<Instant> time) const;

 private:
  std::multimap<std::pair<std::string, Instant>, std::size_t> sessions_;  // By both names and the begin.
};

/// Ids need not be unique between machines: in another folder, computer or start of Windows have to be the same, or
/// lines, or the folders hold different logs of it.
class SessionAssembly {
 public:
  /// @return the index of its session; nothing when it has to wait for the others: without a session id, or as an
  /// initial log, whose session id is that of the session that it is about.
  std::optional<std::size_t> add(SessionPart part);

  /// All parts are there. Those without a session id go where their process id and their time fit, initial logs to the
  /// session that wrote them; what fits nowhere is a session without a name, one for each folder and process.
  /// @param told what initial logs tell, under the ids of the sessions that they are about, each of which gets it.
  /// What these parts tell is added; what is about none of the sessions stays.
  std::vector<Session> takeOut(std::vector<Session>& told);

 private:
  using Fits = std::function<bool(GrowingSession& session, bool sameFolder)>;

  std::optional<std::size_t> find(const SessionIndex& index, const std::string& name, const std::string& folder,
                                  std::optional<Instant> time, const Fits& fits);
  std::optional<std::size_t> findByProcess(const SessionPart& part);
  std::optional<std::size_t> findSubject(const Session& told);
  std::size_t join(std::optional<std::size_t> found, SessionPart part);
  void placeNameless();
  void placeInitial(SessionPart part, std::vector<Session>& told);
  bool tell(Session& told, std::size_t origin);

  std::deque<GrowingSession> sessions_;
  SessionIndex byId_;
  SessionIndex byProcess_;
  std::vector<SessionPart> waiting_;
  std::vector<SessionPart> initials_;
};

}  // namespace sentiq
