#include "reader/commands/TriageCommand.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>
#include <mutex>
#include <ostream>
#include <sstream>
#include <utility>

#include "reader/commands/Inputs.h"
#include "reader/commands/OnAllCores.h"
#include "reader/console/Console.h"
#include "reader/input/Progress.h"
#include "reader/session/LogSet.h"
#include "reader/session/Redaction.h"
#include "reader/views/Triage.h"

namespace sentiq {
namespace {

// A folder with the logs that lie directly in it, and what they hold.
struct Unit {
  std::string folder;
  std::vector<LogInput> files;
  LogSet logs{};
  KnownNames names{};
};

std::vector<Unit> unitsOf(const std::vector<LogInput>& files) {
  std::vector<Unit> units;
  for (const LogInput& file : files) {
    std::string folder = textFromPath(pathFromText(file.name).parent_path());
    if (units.empty() || units.back().folder != folder) {
      units.push_back({std::move(folder), {}});
    }
    units.back().files.push_back(file);
  }
  return units;
}

class Triage {
 public:
  Triage(const std::vector<std::string>& inputs, const Streams& streams)
      : units_(unitsOf(findLogs(existing(inputs, /*anyKind=*/false, streams.messages), &streams.stop))),
        streams_(streams),
        progress_(streams.progress) {}

  void readAll();
  /// All sessions, the oldest first; empties the units.
  std::vector<TriagedSession> judgeAll();
  /// What was not read, or is not whole.
  void sayWhatIsMissing();

 private:
  void work();
  void count(Unit& unit);

  std::vector<Unit> units_;
  const Streams& streams_;
  std::atomic<std::size_t> next_{0};

  std::mutex mutex_;  // For what follows, while the threads run.
  Progress progress_;
  std::size_t unitsDone_ = 0;
  std::size_t sessions_ = 0;
  std::size_t files_ = 0;
  std::size_t repeated_ = 0;  // Sessions that were there more than once.
  std::vector<std::string> damagedFiles_;
};

void Triage::readAll() {
  onAllCores([this] { work(); });
  progress_.end();
}

void Triage::work() {
  std::istringstream noInput;
  Progress noProgress(nullptr);
  for (std::size_t i = next_++; i < units_.size() && !streams_.stop; i = next_++) {
    Unit& unit = units_[i];
    try {
      unit.logs = readLogs(unit.files, noInput, noProgress, Keep::Judgement, streams_.stop,
                           streams_.redact ? &unit.names : nullptr);
      if (unit.logs.stopped) {  // Half a session would be judged for a whole one.
        unit.logs = {};
        return;
      }
      count(unit);
    } catch (const std::exception& error) {  // Out of memory, or a path that the system does not take.
      streams_.messages.say(unit.folder + ": " + error.what(), exitFailed);
    }
  }
}

void Triage::count(Unit& unit) {
  const std::lock_guard lock(mutex_);
  ++unitsDone_;
  sessions_ += unit.logs.sessions.size();
  for (const LogFileInfo& file : std::exchange(unit.logs.files, {})) {
    ++files_;
    if (file.damagedLines > 0) {
      damagedFiles_.push_back(file.name);
    }
    if (!file.readable) {
      streams_.messages.say(file.name + ": cannot be read", exitFailed);
    }
  }
  for (const std::string& name : unit.logs.foreign) {
    streams_.messages.say(name + ": no log of CanvixSentiq", exitFailed);
  }
  progress_.show(std::to_string(sessions_) + " sessions, " + std::to_string(files_) + " files", unitsDone_,
                 units_.size(), "folders");
}

std::vector<TriagedSession> Triage::judgeAll() {
  std::vector<Session> sessions;
  std::vector<Session> told;
  KnownNames names;
  for (Unit& unit : units_) {
    names.learn(unit.names);
    names.learnText(unit.folder + '/');
    std::move(unit.logs.sessions.begin(), unit.logs.sessions.end(), std::back_inserter(sessions));
    std::move(unit.logs.told.begin(), unit.logs.told.end(), std::back_inserter(told));
    unit = {};
  }
  joinSets(sessions, told);
  std::vector<TriagedSession> judged;
  judged.reserve(sessions.size());
  for (Session& session : sessions) {
    repeated_ += session.repeated.empty() ? 0 : 1;
    if (streams_.redact) {
      redact(session, names);
    }
    judged.push_back(triageSession(std::exchange(session, {})));
  }
  std::stable_sort(judged.begin(), judged.end(), [](const TriagedSession& a, const TriagedSession& b) {
    return std::pair(a.span.begin, a.folder) < std::pair(b.span.begin, b.folder);
  });
  return judged;
}

void Triage::sayWhatIsMissing() {
  Messages& messages = streams_.messages;
  if (units_.empty() && messages.exitCode() == exitGood && !streams_.stop) {
    messages.say("no logs found", exitFailed);
  }
  if (streams_.stop && (unitsDone_ < units_.size() || units_.empty())) {
    messages.say(
        "stopped: " + std::to_string(unitsDone_) + " of " + std::to_string(units_.size()) + " folders were read",
        exitFailed);
  }
  if (repeated_ > 0) {
    messages.say(std::to_string(repeated_) + (repeated_ == 1 ? " session was" : " sessions were") +
                 " there more than once, and counted once");
  }
  if (!damagedFiles_.empty()) {
    std::sort(damagedFiles_.begin(), damagedFiles_.end());  // The threads come as they like.
    messages.say("damaged or unfinished lines in " + someOf(damagedFiles_), exitDamaged);
  }
}

}  // namespace

void triageLogs(const TriageOptions& options, const Streams& streams) {
  Triage triage(options.inputs, streams);
  triage.readAll();
  const std::vector<TriagedSession> sessions = triage.judgeAll();
  if (options.json) {
    for (const TriagedSession& session : sessions) {
      streams.out << triageJson(session) << '\n';
    }
  } else {
    streams.out << triageText(sessions, options.top, streams.width);
  }
  triage.sayWhatIsMissing();
}

}  // namespace sentiq
