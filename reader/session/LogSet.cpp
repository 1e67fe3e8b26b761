#include "reader/session/LogSet.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>
#include <vector>

#include "reader/console/Console.h"
#include "reader/input/InputFile.h"
#include "reader/input/LineSplitter.h"
#include "reader/session/LogFileReader.h"

namespace sentiq {
namespace {

void findIn(const std::filesystem::path& folder, std::vector<LogInput>& files) {
  std::vector<std::string> logs;
  std::vector<std::filesystem::path> folders;
  std::error_code error;
  for (std::filesystem::directory_iterator item(folder, error); !error && item != end(item); item.increment(error)) {
    std::error_code unknown;
    if (item->is_directory(unknown) && !item->is_symlink(unknown)) {
      folders.push_back(item->path());
    } else if (item->path().extension() == ".log" && item->is_regular_file(unknown)) {
      logs.push_back(textFromPath(item->path()));
    }
  }
  if (error) {
    files.push_back({textFromPath(folder)});
  }
  std::sort(logs.begin(), logs.end());
  for (std::string& log : logs) {
    files.push_back({std::move(log), /*fromFolder=*/true});
  }
  std::sort(folders.begin(), folders.end());
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

// A session being put together from its parts.
struct Whole {
  Session session;
  std::string folder;
  std::unordered_set<std::string> eventKeys{};

  void add(Session part);
};

void Whole::add(Session part) {
  const auto fill = [](std::string& text, std::string& from) {
    if (text.empty()) {
      text = std::move(from);
    }
  };
  fill(session.id, part.id);
  fill(session.processId, part.processId);
  fill(session.abnormalSessionId, part.abnormalSessionId);
  fill(session.timeZone, part.timeZone);
  fill(session.bootTime, part.bootTime);
  session.counted.merge(part.counted);
  session.eventCopies += part.eventCopies + part.counted.size();  // What is in both stays behind.
  session.applicationCopied = std::max(session.applicationCopied, part.applicationCopied);
  for (LogEntry& entry : part.entries) {
    if (entry.event) {
      EventRecord& event = part.events[*entry.event];
      if (!eventKeys.insert(event.key()).second) {
        ++session.eventCopies;
        continue;
      }
      entry.event = session.events.size();
      session.events.push_back(std::move(event));
    } else if (entry.metric) {
      const std::size_t index = session.metrics.size();
      session.metrics.push_back(std::move(part.metrics[*entry.metric]));
      entry.metric = index;
    }
    session.entries.push_back(std::move(entry));
  }
}

bool isSameSession(const Whole& whole, const Session& part, const std::string& folder) {
  const Session& session = whole.session;
  if (part.id.empty()) {
    return session.id.empty() && session.processId == part.processId && whole.folder == folder;
  }
  return session.id == part.id &&
         (session.processId == part.processId || session.processId.empty() || part.processId.empty());
}

// An initial log names the session before, but its process id is that of the session that wrote it; of several with
// that process id, of the one that began at nearly the same time.
Whole* writerOf(std::vector<Whole>& wholes, const Session& initial) {
  constexpr std::chrono::hours anyTime{24 * 365 * 100};
  const auto distance = [&](const Whole& whole) -> Ticks {
    const auto a = beginOf(whole.session);
    const auto b = beginOf(initial);
    return a && b ? std::chrono::abs(*a - *b) : Ticks(anyTime);
  };
  Whole* nearest = nullptr;
  for (Whole& whole : wholes) {
    if (whole.session.processId == initial.processId && !initial.processId.empty() &&
        (nearest == nullptr || distance(whole) < distance(*nearest))) {
      nearest = &whole;
    }
  }
  return nearest;
}

struct FilePart {
  SessionPart part;
  std::string folder;
};

void sortByTime(std::vector<LogEntry>& entries) {
  std::stable_sort(entries.begin(), entries.end(), [](const LogEntry& a, const LogEntry& b) {
    return a.time.value_or(Instant{}) < b.time.value_or(Instant{});
  });
}

void assemble(std::vector<FilePart> parts, LogSet& set) {
  std::vector<Whole> wholes;
  const auto firstInitial = std::stable_partition(parts.begin(), parts.end(),
                                                  [](const FilePart& p) { return p.part.role != LogRole::Initial; });
  for (auto p = parts.begin(); p != firstInitial; ++p) {
    const auto whole = std::find_if(wholes.begin(), wholes.end(), [&](const Whole& candidate) {
      return isSameSession(candidate, p->part.session, p->folder);
    });
    (whole != wholes.end() ? *whole : wholes.emplace_back(Whole{{}, p->folder})).add(std::move(p->part.session));
  }
  // An initial log tells the session that it is about how it ended, and its writer what went before.
  for (auto p = firstInitial; p != parts.end(); ++p) {
    Session& initial = p->part.session;
    const std::string about = std::exchange(initial.id, {});
    const auto subject = std::find_if(wholes.begin(), wholes.end(),
                                      [&](const Whole& whole) { return !about.empty() && whole.session.id == about; });
    Whole* const writer = writerOf(wholes, initial);
    const bool hasSubject = subject != wholes.end() && &*subject != writer;
    Session told = initial;
    told.processId.clear();
    if (hasSubject) {
      subject->add(std::move(told));
    } else if (!about.empty()) {
      told.id = about;
      set.told.push_back(std::move(told));
    }
    initial.abnormalSessionId = about;
    if (writer != nullptr || !hasSubject) {
      (writer != nullptr ? *writer : wholes.emplace_back(Whole{{}, p->folder})).add(std::move(initial));
    }
  }
  std::stable_sort(wholes.begin(), wholes.end(),
                   [](const Whole& a, const Whole& b) { return beginOf(a.session) < beginOf(b.session); });
  for (Whole& whole : wholes) {
    sortByTime(whole.session.entries);
    set.sessions.push_back(std::move(whole.session));
  }
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
  std::vector<FilePart> parts;
  for (const LogInput& input : files) {
    LogFileInfo& file = set.files.emplace_back();
    file.name = input.name;
    LogFileReader reader(file, set.files.size() - 1, keep);
    LineSplitter splitter;
    const LineSplitter::Visit visit = [&](const Line& line) { reader.take(line); };
    file.readable =
        readInput(input.name, standardInput, progress, [&](std::string_view bytes) { splitter.feed(bytes, visit); });
    splitter.finish(visit);
    std::vector<SessionPart> found = reader.takeOut();
    if (input.fromFolder && file.readable && file.role == LogRole::Unknown) {  // Another program's log.
      set.leftOut.push_back(input.name);
      set.files.pop_back();
      continue;
    }
    const std::string folder = textFromPath(pathFromText(input.name).parent_path());
    for (SessionPart& part : found) {
      parts.push_back({std::move(part), folder});
    }
  }
  assemble(std::move(parts), set);
  return set;
}

void join(Session& session, Session part) {
  Whole whole{std::move(session), {}};
  for (const EventRecord& event : whole.session.events) {
    whole.eventKeys.insert(event.key());
  }
  whole.add(std::move(part));
  sortByTime(whole.session.entries);
  session = std::move(whole.session);
}

}  // namespace sentiq
