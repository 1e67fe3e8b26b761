#include "reader/views/Summary.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string_view>

#include "reader/judgement/Judgement.h"
#include "reader/judgement/RecordGaps.h"
#include "reader/views/Facts.h"
#include "reader/views/JudgementJson.h"
#include "reader/views/JudgementText.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

// Never empty: what happened, then what went before, and others.
std::vector<Statement> statementsOf(const Judgement& judgement) {
  std::vector<Statement> statements{judgement.verdict};
  for (const Before& before : judgement.before) {
    statements.push_back({Severity::Warning, beforeText(before)});
  }
  statements.insert(statements.end(), judgement.others.begin(), judgement.others.end());
  return statements;
}

void addDamage(const LogFileInfo& file, std::vector<std::string>& problems) {
  if (file.damagedLines > 0) {
    problems.push_back(harmlessLine(file.name) + ": " + std::to_string(file.damagedLines) +
                       " damaged or unfinished lines of " + std::to_string(file.lines));
  }
}

std::vector<std::string> damageOf(const LogSet& logs, const Session& session) {
  std::set<std::uint32_t> files;
  for (const LogEntry& entry : session.entries) {
    files.insert(entry.file);
  }
  std::vector<std::string> problems;
  for (const std::uint32_t file : files) {
    addDamage(logs.files[file], problems);
  }
  return problems;
}

std::string listText(std::string_view title, const std::vector<std::string>& items, std::size_t width) {
  constexpr std::size_t indent = 2;
  std::string text;
  for (const std::string& item : items) {
    text.append(indent, ' ').append(wrapped(harmlessLine(item), indent, width)).append("\n");
  }
  return text.empty() ? text : '\n' + std::string(title) + '\n' + text;
}

std::string sessionText(const Session& session, bool colour, std::size_t width) {
  constexpr std::size_t labelWidth = 26;
  const Judgement judgement = judge(session);
  std::string text;
  for (const Statement& statement : statementsOf(judgement)) {
    text += styled(statement.severity, wrapped(harmlessLine(statement.text), 0, width), colour) + '\n';
  }
  std::vector<std::string> changes;
  changes.reserve(judgement.changes.size());
  for (const Change& change : judgement.changes) {
    changes.push_back(changeText(change));
  }
  text += isFailure(judgement.outcome) ? listText(changesTitle, changes, width) : "";
  text += '\n';
  for (const Fact& fact : factsOf(session, judgement)) {
    text += padded(fact.label, labelWidth) + wrapped(fact.value.text, labelWidth, width) + '\n';
  }
  return text + listText("Gaps of more than 15 s in the records", gapsOf(session), width) +
         listText("The same logs again, taken once", session.repeated, width);
}

}  // namespace

std::vector<std::string> problemsOf(const LogSet& logs) {
  std::vector<std::string> problems;
  for (const LogFileInfo& file : logs.files) {
    const std::string name = harmlessLine(file.name);
    if (!file.readable) {
      problems.push_back(name + ": cannot be read");
    } else if (file.role == LogRole::Unknown) {
      problems.push_back(name + (file.lines == 0 ? ": empty" : ": holds no log of CanvixSentiq"));
    }
    addDamage(file, problems);
  }
  for (const std::vector<std::string>* const foreign : {&logs.foreign, &logs.leftOut}) {
    if (!foreign->empty()) {
      problems.push_back("Left out, no log of CanvixSentiq: " + joined(*foreign));
    }
  }
  // There is an initial log only after a session that ended abnormally.
  for (const LogRole role : {LogRole::Session, LogRole::Watchdog}) {
    if (std::none_of(logs.files.begin(), logs.files.end(), [role](const auto& file) { return file.role == role; })) {
      problems.push_back("No " + roleName(role) + " log");
    }
  }
  return problems;
}

std::vector<std::string> gapsOf(const Session& session) {
  std::vector<std::string> gaps;
  for (const RecordGap& gap : recordGaps(session)) {
    gaps.push_back(showDuration(gap.length) + " from " + showTime(gap.from.instant, gap.from.offset) +
                   (gap.slept ? " (the machine slept)" : ""));
  }
  return gaps;
}

std::string summaryJson(const LogSet& logs, const Session& session) {
  const Judgement judgement = judge(session);
  nlohmann::ordered_json object{{"outcome", outcomeWord(judgement.outcome)},
                                {"evidence", evidenceJson(judgement)},
                                {"before", beforeJson(judgement)},
                                {"changes", changesJson(judgement)}};
  for (const Statement& statement : statementsOf(judgement)) {
    object["statements"].push_back({{"severity", severityName(statement.severity)}, {"text", statement.text}});
  }
  for (const Fact& fact : factsOf(session, judgement)) {
    object[fact.key] = fact.value.json;
  }
  object["gaps"] = gapsOf(session);
  object["repeated"] = session.repeated;
  object["problems"] = logs.sessions.size() > 1 ? damageOf(logs, session) : problemsOf(logs);
  return dumped(object);
}

std::string summaryText(const LogSet& logs, bool colour, std::size_t width) {
  const std::size_t count = logs.sessions.size();
  std::string text = count > 1 ? std::to_string(count) + " sessions, the newest last\n" : "";
  for (std::size_t i = 0; i < count; ++i) {
    text += count > 1 ? "\nSession " + std::to_string(i + 1) + " of " + std::to_string(count) + '\n' : "";
    text += sessionText(logs.sessions[i], colour, width);
  }
  return text + listText("Missing, damaged or left out", problemsOf(logs), width);
}

}  // namespace sentiq
