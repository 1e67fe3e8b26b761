// Many sessions, grouped by what ended them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "reader/judgement/Judgement.h"
#include "reader/session/Session.h"

namespace sentiq {

/// What is kept of a session once it is judged: about 1 KB.
struct TriagedSession {
  std::string id;
  std::string processId;
  std::string folder;
  SessionSpan span;
  Judgement judgement;
};

TriagedSession triageSession(const Session& session);

/// A line about all, then a row for each group of sessions that did not end normally, the most frequent first.
/// @param sessions the oldest first, those without a begin before it. @param top how many groups at most; 0 shows all.
/// @param width of a line; 0 cuts none.
std::string triageText(const std::vector<TriagedSession>& sessions, std::size_t top, std::size_t width);

/// One JSON object.
std::string triageJson(const TriagedSession& session);

}  // namespace sentiq
