// Which parts of logs belong to one session. It is said by session id and process id; where those do not tell machines
// apart, by computer, start of Windows and time; and where a header is gone, by what the lines themselves say.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "reader/session/GrowingSession.h"
#include "reader/session/SessionIndex.h"

namespace sentiq {

class SessionAssembly {
 public:
  /// Ids need not be unique between machines: in another folder, computer or start of Windows have to be the same, or
  /// lines, or the folders hold different logs of it.
  /// @return the index of its session; nothing when it has no session id: then it has to wait for the others.
  std::optional<std::size_t> add(SessionPart part);

  /// All parts are there. Those without a session id go where their process id and their time fit; what fits nowhere is
  /// a session without a name, one for each folder and process.
  std::vector<Session> takeOut();

 private:
  std::optional<std::size_t> find(const Session& part, const SessionExtent& extent, std::size_t origin);
  std::size_t join(std::optional<std::size_t> session, SessionPart part);
  std::optional<std::size_t> findByProcess(const SessionPart& part, const SessionExtent& extent) const;
  void placeNameless();

  std::vector<GrowingSession> sessions_;
  SessionIndex byName_;
  SessionIndex byProcess_;
  std::vector<SessionPart> waiting_;
};

}  // namespace sentiq
