#include "reader/commands/TriageCommand.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>
#include <mutex>
#include <ostream>
#include <utility>

#include "reader/commands/Inputs.h"
#include "reader/commands/OnAllCores.h"
#include "reader/console/Console.h"
#include "reader/input/Progress.h"
#include "reader/session/LogSet.h"
#include "reader/session/Redaction.h"
#include "reader/views/HtmlTriage.h"
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
  Triage(const std::vector<LogInput>& files, const Streams& streams) : units_(unitsOf(files)), streams_(streams) {}

  /// Before the reading.
  void addUnread(const std::string& input) { unread_.push_back(input); }
  void readAll();
  /// All sessions, the oldest first; empties the units.
  std::vector<TriagedSession> judgeAll();
  /// What was not read, or is not whole. @return it, with what was said of it before, for a page.
  std::vector<std::string> sayWhatIsMissing();
  /// With stand-ins, when these are wanted.
  void redactNames(std::vector<std::string>& texts);

 private:
  void work(Progress& progress);
  void count(Unit& unit, Progress& progress);
  void say(const std::string& text, ExitCode code = exitGood);

  std::vector<Unit> units_;
  const Streams& streams_;
  std::atomic<std::size_t> next_{0};

  std::mutex mutex_;  // For what follows, while the threads run.
  std::size_t unitsDone_ = 0;
  std::size_t sessions_ = 0;
  std::size_t files_ = 0;
  std::vector<std::string> damagedFiles_;
  std::vector<std::string> unread_;  // Files, and folders.

  std::atomic<std::size_t> repeated_{0};  // Sessions that were there more than once.
  KnownNames names_;
  std::vector<std::string> said_;
};

void Triage::readAll() {
  Progress progress(streams_.progress);
  onAllCores([&] { work(progress); });
}

void Triage::work(Progress& progress) {
  for (std::size_t i = next_++; i < units_.size() && !streams_.stop; i = next_++) {
    Unit& unit = units_[i];
    try {
      unit.logs = readLogs(unit.files, Keep::Judgement, streams_.stop, streams_.redact ? &unit.names : nullptr);
      if (unit.logs.stopped) {  // Half a session would be judged for a whole one.
        unit.logs = {};
        return;
      }
      count(unit, progress);
    } catch (const std::exception& error) {  // Out of memory, or a path that the system does not take.
      streams_.messages.say(unit.folder + ": " + error.what(), exitFailed);
      const std::lock_guard lock(mutex_);
      unread_.push_back(unit.folder);
    }
  }
}

void Triage::count(Unit& unit, Progress& progress) {
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
      unread_.push_back(file.name);
    }
  }
  for (const std::string& name : unit.logs.foreign) {
    streams_.messages.say(name + ": no log of CanvixSentiq", exitFailed);
    unread_.push_back(name);
  }
  progress.show(std::to_string(sessions_) + " sessions, " + std::to_string(files_) + " files", unitsDone_,
                units_.size(), "folders");
}

std::vector<TriagedSession> Triage::judgeAll() {
  std::vector<Session> sessions;
  std::vector<Session> told;
  for (Unit& unit : units_) {
    names_.learn(unit.names);
    names_.learnText('/' + unit.folder + '/');
    std::move(unit.logs.sessions.begin(), unit.logs.sessions.end(), std::back_inserter(sessions));
    std::move(unit.logs.told.begin(), unit.logs.told.end(), std::back_inserter(told));
    unit = {};
  }
  joinSets(sessions, told);
  std::vector<TriagedSession> judged(sessions.size());
  std::atomic<std::size_t> next{0};
  onAllCores([&] {
    for (std::size_t i = next++; i < sessions.size(); i = next++) {
      Session session = std::exchange(sessions[i], {});
      repeated_ += session.repeated.empty() ? 0 : 1;
      try {
        if (streams_.redact) {
          redact(session, names_);
        }
        judged[i] = triageSession(session);
      } catch (const std::exception& error) {  // Out of memory: it stays unknown.
        streams_.messages.say(session.folder + ": " + error.what(), exitFailed);
        const std::lock_guard lock(mutex_);
        unread_.push_back(session.folder);
      }
    }
  });
  // Those of one moment stay in the order of their folders, whatever stand-ins these are called by.
  std::stable_sort(judged.begin(), judged.end(),
                   [](const TriagedSession& a, const TriagedSession& b) { return a.span.begin < b.span.begin; });
  return judged;
}

std::vector<std::string> Triage::sayWhatIsMissing() {
  if (units_.empty() && streams_.messages.exitCode() == exitGood && !streams_.stop) {
    say("no logs found", exitFailed);
  }
  if (streams_.stop && (unitsDone_ < units_.size() || units_.empty())) {
    say("stopped: " + std::to_string(unitsDone_) + " of " + std::to_string(units_.size()) + " folders were read",
        exitFailed);
  }
  if (repeated_ > 0) {
    say(std::to_string(repeated_) + (repeated_ == 1 ? " session was" : " sessions were") +
        " there more than once, and counted once");
  }
  std::sort(damagedFiles_.begin(), damagedFiles_.end());  // The threads come as they like.
  std::sort(unread_.begin(), unread_.end());
  if (!damagedFiles_.empty()) {
    say("damaged or unfinished lines in " + someOf(damagedFiles_), exitDamaged);
  }
  if (!unread_.empty()) {
    said_.push_back("not read, or no logs: " + someOf(unread_));
  }
  return said_;
}

void Triage::say(const std::string& text, ExitCode code) {
  streams_.messages.say(text, code);
  said_.push_back(text);
}

void Triage::redactNames(std::vector<std::string>& texts) {
  if (streams_.redact) {
    for (const std::string& text : texts) {
      names_.learnText('/' + text + '/');  // A folder without logs names its owner, too.
    }
    redact(texts, names_);
  }
}

void writeTriagePage(Triage& triage, const std::vector<TriagedSession>& sessions, const TriageOptions& options,
                     const Streams& streams) {
  TriagePage page{options.top.value_or(0), options.inputs, triage.sayWhatIsMissing()};
  if (sessions.empty()) {
    streams.messages.say("no sessions found, so no page is written", exitFailed);
    return;
  }
  triage.redactNames(page.inputs);
  triage.redactNames(page.notes);
  const std::string held =
      "how " + std::to_string(sessions.size()) + (sessions.size() == 1 ? " session" : " sessions") + " ended";
  writePageFile(
      options.page, held,
      [&](const PageOptions& made, std::ostream& out) { writeHtmlTriage(sessions, page, made, out); }, streams);
}

}  // namespace

void triageLogs(const TriageOptions& options, const Streams& streams) {
  const std::vector<std::string> inputs = existing(options.inputs, /*anyKind=*/false, streams.messages);
  const std::vector<LogInput> files = findLogs(inputs, &streams.stop);
  const bool asPage = !options.page.output.empty();
  if (asPage && !sparesLogs(options.page, files, streams.messages)) {
    return;
  }
  Triage triage(files, streams);
  for (const std::string& input : options.inputs) {
    if (std::find(inputs.begin(), inputs.end(), input) == inputs.end()) {
      triage.addUnread(input);
    }
  }
  triage.readAll();
  const std::vector<TriagedSession> sessions = triage.judgeAll();
  if (asPage) {
    writeTriagePage(triage, sessions, options, streams);
    return;
  }
  if (options.json) {
    for (const TriagedSession& session : sessions) {
      streams.out << triageJson(session) << '\n';
    }
  } else {
    constexpr std::size_t groupsShown = 10;
    streams.out << triageText(sessions, options.top.value_or(groupsShown), streams.width);
  }
  triage.sayWhatIsMissing();
}

}  // namespace sentiq
