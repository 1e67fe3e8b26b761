#include "reader/commands/TriageCommand.h"

#include <algorithm>
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

// What is known of the sessions, and what is missing.
struct Triage {
  std::vector<TriagedSession> sessions;  // The oldest first.
  std::size_t units = 0;                 // Folders.
  std::size_t unitsRead = 0;
  std::size_t sessionsRead = 0;
  std::size_t filesRead = 0;
  std::size_t repeated = 0;  // Sessions that were there more than once.
  std::vector<std::string> damagedFiles;
  std::vector<std::string> unread;  // Files, and folders.
  KnownNames names;
};

void count(Unit& unit, Triage& triage, Messages& messages) {
  const auto addUnread = [&](const std::string& name, const char* why) {
    messages.say(name + why, exitFailed);
    triage.unread.push_back(name);
  };
  ++triage.unitsRead;
  triage.sessionsRead += unit.logs.sessions.size();
  for (const LogFileInfo& file : std::exchange(unit.logs.files, {})) {
    ++triage.filesRead;
    if (file.damagedLines > 0) {
      triage.damagedFiles.push_back(file.name);
    }
    if (!file.readable) {
      addUnread(file.name, ": cannot be read");
    }
  }
  for (const std::string& name : unit.logs.foreign) {
    addUnread(name, ": no log of CanvixSentiq");
  }
}

void readAll(std::vector<Unit>& units, Triage& triage, const Streams& streams) {
  std::mutex mutex;  // For the triage and the progress.
  Progress progress(streams.progress);
  onAllCores(units.size(), [&](std::size_t i) {
    Unit& unit = units[i];
    try {
      unit.logs = readLogs(unit.files, Keep::Judgement, streams.stop, streams.redact ? &unit.names : nullptr);
      if (unit.logs.stopped) {  // Half a session would be judged for a whole one.
        unit.logs = {};
        return;
      }
      const std::lock_guard lock(mutex);
      count(unit, triage, streams.messages);
      progress.show(std::to_string(triage.sessionsRead) + " sessions, " + std::to_string(triage.filesRead) + " files",
                    triage.unitsRead, units.size(), "folders");
    } catch (const std::exception& error) {  // Out of memory, or a path that the system does not take.
      streams.messages.say(unit.folder + ": " + error.what(), exitFailed);
      const std::lock_guard lock(mutex);
      triage.unread.push_back(unit.folder);
    }
  });
}

void judgeAll(std::vector<Session> sessions, Triage& triage, const Streams& streams) {
  std::mutex mutex;  // For the folders that are not read.
  triage.repeated = static_cast<std::size_t>(std::count_if(
      sessions.begin(), sessions.end(), [](const Session& session) { return !session.repeated.empty(); }));
  triage.sessions.resize(sessions.size());
  onAllCores(sessions.size(), [&](std::size_t i) {
    Session session = std::exchange(sessions[i], {});
    try {
      if (streams.redact) {
        redact(session, triage.names);
      }
      triage.sessions[i] = triageSession(session);
    } catch (const std::exception& error) {  // Out of memory: it stays unknown.
      streams.messages.say(session.folder + ": " + error.what(), exitFailed);
      const std::lock_guard lock(mutex);
      triage.unread.push_back(session.folder);
    }
  });
  // Those of one moment stay in the order of their folders, whatever stand-ins these are called by.
  std::stable_sort(triage.sessions.begin(), triage.sessions.end(),
                   [](const TriagedSession& a, const TriagedSession& b) { return a.span.begin < b.span.begin; });
}

// @param unread inputs that are not there.
Triage triageAll(const std::vector<LogInput>& files, std::vector<std::string> unread, const Streams& streams) {
  std::vector<Unit> units = unitsOf(files);
  Triage triage;
  triage.units = units.size();
  triage.unread = std::move(unread);
  readAll(units, triage, streams);
  std::vector<Session> sessions;
  std::vector<Session> told;
  for (Unit& unit : units) {
    triage.names.learn(unit.names);
    triage.names.learnText('/' + unit.folder + '/');
    std::move(unit.logs.sessions.begin(), unit.logs.sessions.end(), std::back_inserter(sessions));
    std::move(unit.logs.told.begin(), unit.logs.told.end(), std::back_inserter(told));
    unit = {};
  }
  joinSets(sessions, told);
  judgeAll(std::move(sessions), triage, streams);
  return triage;
}

// Says what was not read, or is not whole. @return it, with what was said of it before, for a page.
std::vector<std::string> sayWhatIsMissing(Triage& triage, const Streams& streams) {
  std::vector<std::string> said;
  const auto say = [&](const std::string& text, ExitCode code) {
    streams.messages.say(text, code);
    said.push_back(text);
  };
  if (triage.units == 0 && streams.messages.exitCode() == exitGood && !streams.stop) {
    say("no logs found", exitFailed);
  }
  if (streams.stop && (triage.unitsRead < triage.units || triage.units == 0)) {
    say("stopped: " + std::to_string(triage.unitsRead) + " of " + std::to_string(triage.units) + " folders were read",
        exitFailed);
  }
  if (triage.repeated > 0) {
    say(std::to_string(triage.repeated) + (triage.repeated == 1 ? " session was" : " sessions were") +
            " there more than once, and counted once",
        exitGood);
  }
  std::sort(triage.damagedFiles.begin(), triage.damagedFiles.end());  // The threads come as they like.
  std::sort(triage.unread.begin(), triage.unread.end());
  if (!triage.damagedFiles.empty()) {
    say("damaged or unfinished lines in " + someOf(triage.damagedFiles), exitDamaged);
  }
  if (!triage.unread.empty()) {
    said.push_back("not read, or no logs: " + someOf(triage.unread));
  }
  return said;
}

void writeTriagePage(Triage& triage, const TriageOptions& options, const Streams& streams) {
  TriagePage page{options.top.value_or(0), options.inputs, sayWhatIsMissing(triage, streams)};
  if (triage.sessions.empty()) {
    streams.messages.say("no sessions found, so no page is written", exitFailed);
    return;
  }
  if (streams.redact) {
    for (std::vector<std::string>* const texts : {&page.inputs, &page.notes}) {
      for (const std::string& text : *texts) {
        triage.names.learnText('/' + text + '/');  // A folder without logs names its owner, too.
      }
      redact(*texts, triage.names);
    }
  }
  const std::string held = "how " + std::to_string(triage.sessions.size()) +
                           (triage.sessions.size() == 1 ? " session" : " sessions") + " ended";
  writePageFile(
      options.page, held,
      [&](const PageOptions& made, std::ostream& out) { writeHtmlTriage(triage.sessions, page, made, out); }, streams);
}

}  // namespace

void triageLogs(const TriageOptions& options, const Streams& streams) {
  const std::vector<std::string> inputs = existing(options.inputs, /*anyKind=*/false, streams.messages);
  const std::vector<LogInput> files = findLogs(inputs, streams.stop);
  const bool asPage = !options.page.output.empty();
  if (asPage && !sparesLogs(options.page, files, streams.messages)) {
    return;
  }
  std::vector<std::string> unread = options.inputs;
  std::erase_if(
      unread, [&](const std::string& input) { return std::find(inputs.begin(), inputs.end(), input) != inputs.end(); });
  Triage triage = triageAll(files, std::move(unread), streams);
  if (asPage) {
    writeTriagePage(triage, options, streams);
    return;
  }
  if (options.json) {
    for (const TriagedSession& session : triage.sessions) {
      streams.out << triageJson(session) << '\n';
    }
  } else {
    constexpr std::size_t groupsShown = 10;
    streams.out << triageText(triage.sessions, options.top.value_or(groupsShown), streams.width);
  }
  sayWhatIsMissing(triage, streams);
}

}  // namespace sentiq
