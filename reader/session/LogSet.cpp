#include "reader/session/LogSet.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

#include "reader/console/Console.h"
#include "reader/input/InputFile.h"
#include "reader/session/InitialLogs.h"
#include "reader/session/LineOwners.h"
#include "reader/session/LogFileReader.h"
#include "reader/session/Neighbours.h"
#include "reader/session/SessionAssembly.h"

namespace sentiq {
namespace {

std::vector<Session> takeOut(std::vector<GrowingSession> growing) {
  std::vector<Session> sessions;
  sessions.reserve(growing.size());
  for (GrowingSession& session : growing) {
    sessions.push_back(session.takeOut());
  }
  return sessions;
}

std::vector<GrowingSession> growing(std::vector<Session> sessions) {
  constexpr std::size_t ownLogs = std::numeric_limits<std::size_t>::max();
  std::vector<GrowingSession> result;
  result.reserve(sessions.size());
  for (Session& session : sessions) {
    result.emplace_back(std::move(session), ownLogs);
  }
  return result;
}

std::optional<Instant> beginOf(const Session& session) {
  const auto first = std::find_if(session.entries.begin(), session.entries.end(),
                                  [](const LogEntry& entry) { return entry.time && !entry.event; });
  return first != session.entries.end() ? first->time : std::nullopt;
}

void sortByBegin(std::vector<Session>& sessions) {
  std::stable_sort(sessions.begin(), sessions.end(),
                   [](const Session& a, const Session& b) { return beginOf(a) < beginOf(b); });
}

// Files to parts.
class Reading {
 public:
  Reading(std::istream& standardInput, Progress& progress, Keep keep, const std::atomic<bool>& stop, KnownNames* names)
      : standardInput_(standardInput), progress_(progress), keep_(keep), stop_(stop), names_(names) {}

  void read(const LogInput& input);
  LogSet finish();

 private:
  void add(std::vector<SessionPart> parts, const std::string& name);

  std::istream& standardInput_;
  Progress& progress_;
  const Keep keep_;
  const std::atomic<bool>& stop_;
  KnownNames* const names_;
  LogSet set_;
  SessionAssembly assembly_;
  std::vector<SessionAssembly::Part> initials_;
};

void Reading::read(const LogInput& input) {
  constexpr std::size_t enoughToTell = 4U << 20;  // Of what is no log of the program.
  LogFileInfo& file = set_.files.emplace_back();
  file.name = input.name;
  LogFileReader reader(file, set_.files.size() - 1, keep_, names_);
  std::size_t size = 0;
  file.readable = readInput(input.name, standardInput_, progress_, stop_, [&](std::string_view bytes) {
    reader.feed(bytes);
    size += bytes.size();
    return reader.isKnown() || size < enoughToTell;
  });
  if (!stop_) {
    reader.finish();
  }
  std::vector<SessionPart> parts = reader.takeOut();
  if (file.readable && file.lines > 0 && !reader.isKnown() && !stop_) {
    set_.files.pop_back();
    (input.fromFolder ? set_.leftOut : set_.foreign).push_back(input.name);
    return;
  }
  add(std::move(parts), input.name);
}

void Reading::add(std::vector<SessionPart> parts, const std::string& name) {
  const std::string folder = textFromPath(pathFromText(name).parent_path());
  const std::size_t origin = set_.files.size() - 1;
  std::optional<std::size_t> above;
  for (SessionPart& part : parts) {
    part.session.folder = folder;
    SessionAssembly::Part next{std::move(part.session), origin, name, above};
    if (part.role == LogRole::Initial) {
      initials_.push_back(std::move(next));
    } else if (const auto session = assembly_.add(std::move(next))) {
      above = session;
    }
  }
}

LogSet Reading::finish() {
  std::vector<Session> sessions = takeOut(assembly_.takeOut());
  giveLinesToTheirOwners(sessions);
  std::vector<GrowingSession> all = growing(std::move(sessions));
  addInitialLogs(all, std::move(initials_), set_.told);
  set_.sessions = takeOut(std::move(all));
  tellNeighbours(set_.sessions);
  sortByBegin(set_.sessions);
  set_.stopped = stop_;
  return std::move(set_);
}

LogSet stoppedSet() {
  LogSet set;
  set.stopped = true;
  return set;
}

}  // namespace

LogSet readLogs(const std::vector<LogInput>& files, std::istream& standardInput, Progress& progress, Keep keep,
                const std::atomic<bool>& stop, KnownNames* names) {
  Reading reading(standardInput, progress, keep, stop, names);
  for (const LogInput& input : files) {
    if (stop) {
      break;
    }
    reading.read(input);
  }
  // A triage leaves out what was half read: who has asked for the end need not wait for its assembly.
  return stop && keep == Keep::Judgement ? stoppedSet() : reading.finish();
}

void joinSets(std::vector<Session>& sessions, std::vector<Session>& told) {
  SessionAssembly assembly;
  std::vector<Session> nameless;
  for (std::size_t i = 0; i < sessions.size(); ++i) {
    if (sessions[i].id.empty()) {
      nameless.push_back(std::move(sessions[i]));
    } else {
      const std::string folder = sessions[i].folder;
      assembly.add({std::move(sessions[i]), i, folder});
    }
  }
  std::vector<GrowingSession> all = assembly.takeOut();
  tellSessions(all, told);
  sessions = takeOut(std::move(all));
  std::move(nameless.begin(), nameless.end(), std::back_inserter(sessions));
  sortByBegin(sessions);
}

}  // namespace sentiq
