#include "reader/commands/Inputs.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "reader/console/Console.h"
#include "reader/session/Redaction.h"

namespace sentiq {

namespace {

enum class Kind { Missing, FileOrFolder, Other };

Kind kindOf(const std::string& input) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(pathFromText(input), error);
  return input == "-"                                      ? Kind::Other
         : !std::filesystem::exists(status)                ? Kind::Missing
         : is_regular_file(status) || is_directory(status) ? Kind::FileOrFolder
                                                           : Kind::Other;
}

KnownNames namesOfPaths(const std::vector<LogInput>& files) {
  KnownNames names;
  for (const LogInput& file : files) {
    names.learnText('/' + file.name);  // It may begin with the folder of users.
  }
  return names;
}

constexpr const char* otherKind = ": is neither a file nor a folder";

}  // namespace

std::vector<std::string> existing(const std::vector<std::string>& inputs, bool anyKind, Messages& messages) {
  std::vector<std::string> found;
  for (const std::string& input : inputs) {
    const Kind kind = kindOf(input);
    if (kind == Kind::Missing) {
      messages.say(input + ": there is no such file or folder", exitFailed);
    } else if (kind == Kind::Other && !anyKind) {
      messages.say(input + otherKind, exitFailed);
    } else {
      found.push_back(input);
    }
  }
  return found;
}

void sayWaitedFor(const std::vector<std::string>& inputs, Messages& messages) {
  for (const std::string& input : inputs) {
    const Kind kind = kindOf(input);
    if (kind != Kind::FileOrFolder) {
      messages.say(input + (kind == Kind::Missing ? ": is not there yet" : otherKind));
    }
  }
}

LogSet readInputs(const std::vector<std::string>& inputs, Keep keep, const Streams& streams) {
  Messages& messages = streams.messages;
  const std::vector<std::string> found = existing(inputs, /*anyKind=*/true, messages);
  const std::vector<LogInput> files = findLogs(found, streams.stop);
  KnownNames names = streams.redact ? namesOfPaths(files) : KnownNames();
  LogSet logs = readLogs(files, keep, streams.stop, streams.redact ? &names : nullptr, streams.progress);
  for (const LogFileInfo& file : logs.files) {
    if (!file.readable) {
      messages.say(file.name + ": cannot be read", exitFailed);
    }
    messages.raise(file.damagedLines > 0 ? exitDamaged : exitGood);
  }
  // Beside real logs a foreign one is left out, as in a folder.
  for (const std::string& name : logs.foreign) {
    messages.say(name + ": no log of CanvixSentiq", logs.files.empty() ? exitFailed : exitGood);
  }
  if (logs.files.empty() && logs.foreign.empty() && !found.empty()) {
    messages.say("no logs found", exitFailed);
  }
  if (streams.redact) {
    redact(logs, names);
  }
  return logs;
}

KnownNames namesIn(const std::vector<LogInput>& files, const Streams& streams) {
  KnownNames names = namesOfPaths(files);
  std::vector<LogInput> twice = files;
  std::erase_if(twice, [](const LogInput& file) { return kindOf(file.name) != Kind::FileOrFolder; });
  readLogs(twice, Keep::Judgement, streams.stop, &names, streams.progress);
  return names;
}

void sayLeftOut(const LogSet& logs, Messages& messages) {
  if (!logs.leftOut.empty()) {
    messages.say("left out, no logs of CanvixSentiq: " + someOf(logs.leftOut));
  }
  for (const Session& session : logs.sessions) {
    if (!session.repeated.empty()) {
      messages.say("the same logs again, taken once: " + someOf(session.repeated));
    }
  }
}

std::string someOf(const std::vector<std::string>& names) {
  constexpr std::size_t shown = 5;
  std::string text;
  for (std::size_t i = 0; i < std::min(shown, names.size()); ++i) {
    text += (i == 0 ? "" : ", ") + names[i];
  }
  return text + (names.size() > shown ? " and " + std::to_string(names.size() - shown) + " more" : "");
}

}  // namespace sentiq
