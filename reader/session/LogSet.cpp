#include "reader/session/LogSet.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "reader/console/Console.h"
#include "reader/input/InputFile.h"
#include "reader/session/LogFileReader.h"

namespace sentiq {
namespace {

void findIn(const std::filesystem::path& folder, std::vector<LogInput>& files) {
  std::set<std::filesystem::path> logs;
  std::set<std::filesystem::path> folders;
  std::error_code error;
  for (std::filesystem::directory_iterator item(folder, error); !error && item != end(item); item.increment(error)) {
    std::error_code unknown;
    if (item->is_directory(unknown) && !item->is_symlink(unknown)) {
      folders.insert(item->path());
    } else if (item->path().extension() == ".log" && item->is_regular_file(unknown)) {
      logs.insert(item->path());
    }
  }
  if (error) {
    files.push_back({textFromPath(folder)});
  }
  for (const std::filesystem::path& log : logs) {
    files.push_back({textFromPath(log), /*fromFolder=*/true});
  }
  for (const std::filesystem::path& inner : folders) {
    findIn(inner, files);
  }
}

std::optional<Instant> beginOf(const Session& session) {
  std::optional<Instant> begin;
  for (const LogEntry& entry : session.entries) {
    if (entry.time && !entry.event) {
      begin = std::min(begin.value_or(*entry.time), *entry.time);
    }
  }
  return begin;
}

bool isSameSession(const Session& session, const Session& part) {
  if (part.id.empty()) {
    return session.id.empty() && session.processId == part.processId && session.folder == part.folder;
  }
  return session.id == part.id &&
         (session.processId == part.processId || session.processId.empty() || part.processId.empty());
}

// An initial log names the session before, but its process id is that of the session that wrote it; of several with
// that process id, of the one that began at nearly the same time.
Session* writerOf(std::vector<Session>& sessions, const Session& initial) {
  constexpr std::chrono::hours anyTime{24 * 365 * 100};
  const auto distance = [&](const Session& session) -> Ticks {
    const auto a = beginOf(session);
    const auto b = beginOf(initial);
    return a && b ? std::chrono::abs(*a - *b) : Ticks(anyTime);
  };
  Session* nearest = nullptr;
  for (Session& session : sessions) {
    if (session.processId == initial.processId && !initial.processId.empty() &&
        (nearest == nullptr || distance(session) < distance(*nearest))) {
      nearest = &session;
    }
  }
  return nearest;
}

// Adds what another log holds of the session.
void join(Session& session, Session part) {
  for (std::string Session::* const text : {&Session::id, &Session::processId, &Session::abnormalSessionId,
                                            &Session::folder, &Session::timeZone, &Session::bootTime}) {
    if ((session.*text).empty()) {
      session.*text = std::move(part.*text);
    }
  }
  session.counted.merge(part.counted);
  session.eventCopies += part.eventCopies + part.counted.size();  // What is in both stays behind.
  session.applicationCopied = std::max(session.applicationCopied, part.applicationCopied);
  std::unordered_set<std::string> known;
  for (const EventRecord& event : session.events) {
    known.insert(event.key());
  }
  for (LogEntry& entry : part.entries) {
    if (entry.event) {
      EventRecord& event = part.events[*entry.event];
      if (!known.insert(event.key()).second) {
        ++session.eventCopies;
        continue;
      }
      entry.event = session.events.size();
      session.events.push_back(std::move(event));
    } else if (entry.metric) {
      MetricSample& record = part.metrics[*entry.metric];
      entry.metric = session.metrics.size();
      session.metrics.push_back(std::move(record));
    }
    session.entries.push_back(std::move(entry));
  }
  std::stable_sort(session.entries.begin(), session.entries.end(), [](const LogEntry& a, const LogEntry& b) {
    return a.time.value_or(Instant{}) < b.time.value_or(Instant{});
  });
}

void assemble(std::vector<SessionPart> parts, LogSet& set) {
  std::vector<Session>& sessions = set.sessions;
  const auto firstInitial = std::stable_partition(
      parts.begin(), parts.end(), [](const SessionPart& part) { return part.role != LogRole::Initial; });
  for (auto part = parts.begin(); part != firstInitial; ++part) {
    const auto same = std::find_if(sessions.begin(), sessions.end(),
                                   [&](const Session& session) { return isSameSession(session, part->session); });
    join(same != sessions.end() ? *same : sessions.emplace_back(), std::move(part->session));
  }
  // An initial log tells the session that it is about how it ended, and its writer what went before.
  for (auto part = firstInitial; part != parts.end(); ++part) {
    Session& initial = part->session;
    const std::string about = std::exchange(initial.id, {});
    Session* const writer = writerOf(sessions, initial);
    const bool ofAnother = !about.empty() && (writer == nullptr || writer->id != about);
    if (ofAnother) {
      Session& told = set.told.emplace_back(initial);
      told.id = about;
      told.processId.clear();
    }
    initial.abnormalSessionId = about;
    const bool hasSubject = ofAnother && std::any_of(sessions.begin(), sessions.end(),
                                                     [&](const Session& session) { return session.id == about; });
    if (writer != nullptr || !hasSubject) {
      join(writer != nullptr ? *writer : sessions.emplace_back(), std::move(initial));
    }
  }
  tell(sessions, set.told);
  std::stable_sort(sessions.begin(), sessions.end(),
                   [](const Session& a, const Session& b) { return beginOf(a) < beginOf(b); });
}

}  // namespace

std::vector<LogInput> findLogs(const std::vector<std::string>& inputs) {
  std::vector<LogInput> files;
  for (const std::string& input : inputs) {
    std::error_code error;
    const std::filesystem::path path = pathFromText(input);
    if (input != "-" && std::filesystem::is_directory(path, error)) {
      findIn(path, files);
    } else {
      files.push_back({input});
    }
  }
  return files;
}

LogSet readLogs(const std::vector<LogInput>& files, std::istream& standardInput, Progress& progress, Keep keep) {
  LogSet set;
  std::vector<SessionPart> parts;
  for (const LogInput& input : files) {
    LogFileInfo& file = set.files.emplace_back();
    file.name = input.name;
    LogFileReader reader(file, set.files.size() - 1, keep);
    file.readable = readInput(input.name, standardInput, progress, [&](std::string_view bytes) { reader.feed(bytes); });
    reader.finish();
    std::vector<SessionPart> found = reader.takeOut();
    if (input.fromFolder && file.readable && file.role == LogRole::Unknown) {  // Another program's log.
      set.leftOut.push_back(input.name);
      set.files.pop_back();
      continue;
    }
    const std::string folder = textFromPath(pathFromText(input.name).parent_path());
    for (SessionPart& part : found) {
      part.session.folder = folder;
      parts.push_back(std::move(part));
    }
  }
  assemble(std::move(parts), set);
  return set;
}

void tell(std::vector<Session>& sessions, std::vector<Session>& told) {
  std::unordered_map<std::string, Session*> subjects;
  for (Session& session : sessions) {
    subjects.emplace(session.id, &session);
  }
  std::erase_if(told, [&](Session& part) {
    const auto subject = subjects.find(part.id);
    if (subject == subjects.end()) {
      return false;
    }
    join(*subject->second, std::move(part));
    return true;
  });
}

}  // namespace sentiq
