#include "reader/views/TriageCommand.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <exception>
#include <iterator>
#include <mutex>
#include <ostream>
#include <sstream>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "reader/ExitCode.h"
#include "reader/console/Console.h"
#include "reader/input/Progress.h"
#include "reader/session/LogSet.h"
#include "reader/views/Triage.h"

namespace sentiq {
namespace {

using Clock = std::chrono::steady_clock;

struct Unit {
  std::string folder;
  std::vector<LogInput> files;
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

bool isSettled(const std::string& outcome) {
  return outcome == "crashed" || outcome == "hung" || outcome == "bluescreen" || outcome == "power-loss";
}

class Triage {
 public:
  Triage(const std::vector<std::string>& inputs, std::ostream& messages, std::ostream* terminal,
         const std::atomic<bool>& stop)
      : units_(unitsOf(findLogs(inputs))), messages_(messages), terminal_(terminal), stop_(stop) {}

  void run();
  std::vector<TriagedSession> takeOut() { return std::move(sessions_); }
  int exitCode();

 private:
  // A session that may still be told how it ended, by an initial log that lies elsewhere.
  struct Open {
    std::size_t index;  // Of what it was judged to be.
    Session session;
  };

  void work();
  void readUnit(const Unit& unit);
  void showProgress();
  void tellOpenOnes();

  const std::vector<Unit> units_;
  std::ostream& messages_;
  std::ostream* terminal_;
  const std::atomic<bool>& stop_;
  const Clock::time_point begin_ = Clock::now();
  std::atomic<std::size_t> next_{0};

  std::mutex mutex_;  // For what follows, while the threads run.
  std::size_t unitsDone_ = 0;
  std::size_t filesDone_ = 0;
  std::size_t damagedFiles_ = 0;
  bool unreadable_ = false;
  Clock::time_point shown_ = begin_;
  std::vector<TriagedSession> sessions_;
  std::vector<Open> open_;
  std::vector<Session> told_;
};

void Triage::run() {
  {
    std::vector<std::jthread> threads;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) {
      threads.emplace_back([this] { work(); });
    }
    work();
  }
  if (terminal_ != nullptr) {
    *terminal_ << "\r\x1b[K" << std::flush;
  }
  tellOpenOnes();
}

void Triage::work() {
  for (std::size_t i = next_++; i < units_.size() && !stop_; i = next_++) {
    try {
      readUnit(units_[i]);
    } catch (const std::exception& error) {  // Out of memory, or a path that the system does not take.
      const std::lock_guard lock(mutex_);
      messages_ << "sentiq-logs: " + units_[i].folder + ": " + error.what() + '\n';
      unreadable_ = true;
    }
  }
}

void Triage::readUnit(const Unit& unit) {
  std::istringstream noInput;
  Progress noProgress(nullptr);
  LogSet logs = readLogs(unit.files, noInput, noProgress, Keep::Judgement);
  std::vector<TriagedSession> judged;
  for (const Session& session : logs.sessions) {
    judged.push_back(triageSession(session, unit.folder));
  }
  const std::lock_guard lock(mutex_);
  ++unitsDone_;
  for (const LogFileInfo& file : logs.files) {
    ++filesDone_;
    damagedFiles_ += file.damagedLines > 0 ? 1 : 0;
    if (!file.readable) {
      messages_ << "sentiq-logs: " + file.name + ": cannot be read\n";
      unreadable_ = true;
    }
  }
  for (std::size_t i = 0; i < judged.size(); ++i) {
    if (!judged[i].id.empty() && !isSettled(judged[i].judgement.outcome)) {
      open_.push_back({sessions_.size(), std::move(logs.sessions[i])});
    }
    sessions_.push_back(std::move(judged[i]));
  }
  std::move(logs.told.begin(), logs.told.end(), std::back_inserter(told_));
  showProgress();
}

void Triage::showProgress() {
  using Seconds = std::chrono::duration<double>;
  constexpr std::chrono::milliseconds interval{200};
  const Clock::time_point now = Clock::now();
  if (terminal_ == nullptr || now - shown_ < interval) {
    return;
  }
  shown_ = now;
  const double rate = static_cast<double>(unitsDone_) / Seconds(now - begin_).count();
  const auto left = static_cast<long>(static_cast<double>(units_.size() - unitsDone_) / rate);
  *terminal_ << "\r\x1b[K" + std::to_string(unitsDone_) + " of " + std::to_string(units_.size()) + " folders, " +
                    std::to_string(sessions_.size()) + " sessions, " + std::to_string(filesDone_) + " files, " +
                    std::to_string(static_cast<long>(rate)) + " folders/s, " + std::to_string(left) + " s left"
             << std::flush;
}

void Triage::tellOpenOnes() {
  std::unordered_map<std::string, const Session*> toldOf;
  for (const Session& told : told_) {
    toldOf.emplace(told.id, &told);
  }
  for (Open& open : open_) {
    TriagedSession& judged = sessions_[open.index];
    if (const auto told = toldOf.find(judged.id); told != toldOf.end()) {
      join(open.session, *told->second);
      judged = triageSession(open.session, judged.folder);
    }
  }
  std::stable_sort(sessions_.begin(), sessions_.end(), [](const TriagedSession& a, const TriagedSession& b) {
    return std::pair(a.span.begin, a.folder) < std::pair(b.span.begin, b.folder);
  });
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
  triage.run();
  const std::vector<TriagedSession> sessions = triage.takeOut();
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
