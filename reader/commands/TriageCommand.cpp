#include "reader/commands/TriageCommand.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <mutex>
#include <ostream>
#include <sstream>
#include <thread>
#include <utility>

#include "reader/commands/ExitCode.h"
#include "reader/console/Console.h"
#include "reader/session/LogSet.h"
#include "reader/views/Triage.h"

namespace sentiq {
namespace {

// A folder with the logs that lie directly in it, and what they hold.
struct Unit {
  std::string folder;
  std::vector<LogInput> files;
  LogSet logs{};
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
  Triage(const std::vector<std::string>& inputs, std::ostream& messages, std::ostream* terminal,
         const std::atomic<bool>& stop)
      : units_(unitsOf(findLogs(inputs))), messages_(messages), stop_(stop), progress_(terminal) {}

  void readAll();
  /// All sessions, the oldest first; empties the units.
  std::vector<TriagedSession> judgeAll();
  int exitCode();

 private:
  void work();
  void count(Unit& unit);

  std::vector<Unit> units_;
  std::ostream& messages_;
  const std::atomic<bool>& stop_;
  std::atomic<std::size_t> next_{0};

  std::mutex mutex_;  // For what follows, while the threads run.
  Progress progress_;
  std::size_t unitsDone_ = 0;
  std::size_t sessions_ = 0;
  std::size_t files_ = 0;
  std::size_t damagedFiles_ = 0;
  bool unreadable_ = false;
};

void Triage::readAll() {
  {
    std::vector<std::jthread> threads;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) {
      threads.emplace_back([this] { work(); });
    }
    work();
  }
  progress_.end();
}

void Triage::work() {
  std::istringstream noInput;
  Progress noProgress(nullptr);
  for (std::size_t i = next_++; i < units_.size() && !stop_; i = next_++) {
    Unit& unit = units_[i];
    try {
      unit.logs = readLogs(unit.files, noInput, noProgress, Keep::Judgement);
      count(unit);
    } catch (const std::exception& error) {  // Out of memory, or a path that the system does not take.
      const std::lock_guard lock(mutex_);
      messages_ << "sentiq-logs: " + unit.folder + ": " + error.what() + '\n';
      unreadable_ = true;
    }
  }
}

void Triage::count(Unit& unit) {
  const std::lock_guard lock(mutex_);
  ++unitsDone_;
  sessions_ += unit.logs.sessions.size();
  for (const LogFileInfo& file : std::exchange(unit.logs.files, {})) {
    ++files_;
    damagedFiles_ += file.damagedLines > 0 ? 1 : 0;
    if (!file.readable) {
      messages_ << "sentiq-logs: " + file.name + ": cannot be read\n";
      unreadable_ = true;
    }
  }
  progress_.show(std::to_string(sessions_) + " sessions, " + std::to_string(files_) + " files", unitsDone_,
                 units_.size(), "folders");
}

std::vector<TriagedSession> Triage::judgeAll() {
  std::vector<Session> sessions;
  std::vector<Session> told;
  for (Unit& unit : units_) {
    std::move(unit.logs.sessions.begin(), unit.logs.sessions.end(), std::back_inserter(sessions));
    std::move(unit.logs.told.begin(), unit.logs.told.end(), std::back_inserter(told));
    unit = {};
  }
  tell(sessions, told);
  std::vector<TriagedSession> judged;
  judged.reserve(sessions.size());
  for (Session& session : sessions) {
    judged.push_back(triageSession(std::exchange(session, {})));
  }
  std::stable_sort(judged.begin(), judged.end(), [](const TriagedSession& a, const TriagedSession& b) {
    return std::pair(a.span.begin, a.folder) < std::pair(b.span.begin, b.folder);
  });
  return judged;
}

int Triage::exitCode() {
  if (units_.empty()) {
    messages_ << "sentiq-logs: no logs found\n";
  }
  if (unitsDone_ < units_.size() && stop_) {
    messages_ << "sentiq-logs: stopped: " + std::to_string(unitsDone_) + " of " + std::to_string(units_.size()) +
                     " folders were read\n";
    return exitFailed;
  }
  if (damagedFiles_ > 0) {
    messages_ << "sentiq-logs: " + std::to_string(damagedFiles_) + " files hold damaged or unfinished lines\n";
  }
  return unreadable_ || units_.empty() ? exitFailed : damagedFiles_ > 0 ? exitDamaged : exitGood;
}

}  // namespace

int triageLogs(const TriageOptions& options, std::ostream& out, std::ostream& messages, std::ostream* terminal,
               const std::atomic<bool>& stop) {
  Triage triage(options.inputs, messages, terminal, stop);
  triage.readAll();
  const std::vector<TriagedSession> sessions = triage.judgeAll();
  if (options.json) {
    for (const TriagedSession& session : sessions) {
      out << triageJson(session) << '\n';
    }
  } else {
    out << triageText(sessions, options.top, options.width);
  }
  return triage.exitCode();
}

}  // namespace sentiq
