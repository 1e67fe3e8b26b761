#include "reader/session/LogSet.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "reader/console/Console.h"
#include "reader/input/InputFile.h"
#include "reader/session/GrowingSession.h"
#include "reader/session/InitialLogs.h"
#include "reader/session/LineOwners.h"
#include "reader/session/LogFileReader.h"
#include "reader/session/Neighbours.h"
#include "reader/session/SessionAssembly.h"

namespace sentiq {
namespace {

std::optional<Instant> beginOf(const Session& session) {
  const auto first = std::find_if(session.entries.begin(), session.entries.end(),
                                  [](const LogEntry& entry) { return entry.time && !entry.event; });
  return first != session.entries.end() ? first->time : std::nullopt;
}

void sortByBegin(std::vector<Session>& sessions) {
  std::stable_sort(sessions.begin(), sessions.end(),
                   [](const Session& a, const Session& b) { return beginOf(a) < beginOf(b); });
}

// Of a file that is no log of the program no parts, and a word in the set.
std::vector<SessionPart> readLog(const LogInput& input, Keep keep, const std::atomic<bool>& stop, KnownNames* names,
                                 std::ostream* progress, LogSet& set) {
  constexpr std::size_t enoughToTell = 4U << 20;  // Of what is no log of the program.
  const std::size_t origin = set.files.size();
  LogFileInfo& file = set.files.emplace_back();
  file.name = input.name;
  LogFileReader reader(file, origin, keep, names);
  std::size_t size = 0;
  file.readable = readInput(input.name, progress, stop, [&](std::string_view bytes) {
    reader.feed(bytes);
    size += bytes.size();
    return reader.isKnown() || size < enoughToTell;
  });
  if (!stop) {
    reader.finish();
  }
  std::vector<SessionPart> parts = reader.takeOut();
  if (file.readable && file.lines > 0 && !reader.isKnown() && !stop) {
    set.files.pop_back();
    (input.fromFolder ? set.leftOut : set.foreign).push_back(input.name);
    return {};
  }
  const std::string folder = textFromPath(pathFromText(input.name).parent_path());
  for (SessionPart& part : parts) {
    part.session.folder = folder;
    part.origin = origin;
    part.name = input.name;
  }
  return parts;
}

}  // namespace

LogSet readLogs(const std::vector<LogInput>& files, Keep keep, const std::atomic<bool>& stop, KnownNames* names,
                std::ostream* progress) {
  LogSet set;
  SessionAssembly assembly;
  std::vector<SessionPart> initials;
  for (auto input = files.begin(); input != files.end() && !stop; ++input) {
    std::optional<std::size_t> above;
    for (SessionPart& part : readLog(*input, keep, stop, names, progress, set)) {
      if (part.role == LogRole::Initial) {
        initials.push_back(std::move(part));
      } else {
        part.above = above;
        const auto session = assembly.add(std::move(part));
        above = session ? session : above;
      }
    }
  }
  set.stopped = stop;
  if (set.stopped && keep == Keep::Judgement) {
    return set;  // A triage leaves out what was half read: who has asked for the end need not wait for its assembly.
  }
  set.sessions = assembly.takeOut();
  giveLinesToTheirOwners(set.sessions);
  addInitialLogs(set.sessions, std::move(initials), set.told);
  std::for_each(set.sessions.begin(), set.sessions.end(), sortSession);
  tellNeighbours(set.sessions);
  sortByBegin(set.sessions);
  return set;
}

void joinSets(std::vector<Session>& sessions, std::vector<Session>& told) {
  SessionAssembly assembly;
  std::vector<Session> nameless;
  for (std::size_t i = 0; i < sessions.size(); ++i) {
    if (sessions[i].id.empty()) {
      nameless.push_back(std::move(sessions[i]));
    } else {
      const std::string folder = sessions[i].folder;
      assembly.add({std::move(sessions[i]), LogRole::Unknown, i, folder});
    }
  }
  sessions = assembly.takeOut();
  std::move(nameless.begin(), nameless.end(), std::back_inserter(sessions));
  addInitialLogs(sessions, {}, told);
  std::for_each(sessions.begin(), sessions.end(), sortSession);
  sortByBegin(sessions);
}

}  // namespace sentiq
