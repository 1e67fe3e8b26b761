#include "reader/session/Redaction.h"

#include <algorithm>

namespace sentiq {

void redact(LogSet& logs, const KnownNames& names) {
  for (LogFileInfo& file : logs.files) {
    file.name = names.redacted(file.name);
    for (std::string& line : file.rawLines) {
      line = names.redactedLine(line);
    }
  }
  for (std::vector<Session>* const sessions : {&logs.sessions, &logs.told}) {
    for (Session& session : *sessions) {
      redact(session, names);
    }
  }
  redact(logs.foreign, names);
  redact(logs.leftOut, names);
}

void redact(Session& session, const KnownNames& names) {
  session.folder = names.redacted(session.folder);
  session.computer = names.redacted(session.computer);
  redact(session.repeated, names);
  for (LogEntry& entry : session.entries) {
    entry.text = names.redacted(entry.text);
  }
  for (EventRecord& event : session.events) {
    event.replaceNames([&](std::string_view text) { return names.redacted(text); });
  }
}

void redact(std::vector<std::string>& texts, const KnownNames& names) {
  std::transform(texts.begin(), texts.end(), texts.begin(),
                 [&](const std::string& text) { return names.redacted(text); });
}

}  // namespace sentiq
