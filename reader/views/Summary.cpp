#include "reader/views/Summary.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string_view>

#include "reader/judgement/RecordGaps.h"
#include "reader/views/JudgementJson.h"
#include "reader/views/JudgementText.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

std::vector<std::string> gapsOf(const Session& session) {
  std::vector<std::string> gaps;
  for (const RecordGap& gap : recordGaps(session)) {
    gaps.push_back(showDuration(gap.length) + " from " + showTime(gap.from.instant, gap.from.offset) +
                   (gap.slept ? " (the machine slept)" : ""));
  }
  return gaps;
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

class TextSummary {
 public:
  TextSummary(bool colour, std::size_t width) : colour_(colour), width_(width) {}

  void add(const Summary& summary) {
    for (const Statement& statement : summary.statements) {
      text += styled(statement.severity, wrapped(harmlessLine(statement.text), 0, width_), colour_) + '\n';
    }
    addList(changesTitle, summary.changes);
    text += '\n';
    for (const Fact& fact : summary.facts) {
      constexpr std::size_t labelWidth = 26;
      text += padded(fact.label, labelWidth) + wrapped(fact.text, labelWidth, width_) + '\n';
    }
    addList("Gaps of more than 15 s in the records", summary.gaps);
    addList("The same logs again, taken once", summary.repeated);
  }

  void addList(std::string_view title, const std::vector<std::string>& items) {
    if (items.empty()) {
      return;
    }
    text.append("\n").append(title).append("\n");
    for (const std::string& item : items) {
      constexpr std::size_t indent = 2;
      text.append(indent, ' ').append(wrapped(harmlessLine(item), indent, width_)).append("\n");
    }
  }

  std::string text;

 private:
  bool colour_;
  std::size_t width_;
};

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

Summary summarize(const LogSet& logs, const Session& session) {
  Summary summary;
  summary.judgement = judge(session);
  const Judgement& judgement = summary.judgement;
  summary.statements = {judgement.verdict};
  for (const Before& before : judgement.before) {
    summary.statements.push_back({Severity::Warning, beforeText(before), before.entry});
  }
  summary.statements.insert(summary.statements.end(), judgement.others.begin(), judgement.others.end());
  if (isFailure(judgement.outcome)) {
    for (const Change& change : judgement.changes) {
      summary.changes.push_back(changeText(change));
    }
  }
  summary.facts = factsOf(session, judgement);
  summary.gaps = gapsOf(session);
  summary.repeated = session.repeated;
  summary.problems = logs.sessions.size() > 1 ? damageOf(logs, session) : problemsOf(logs);
  return summary;
}

std::string summaryJson(const Summary& summary) {
  const Judgement& judgement = summary.judgement;
  nlohmann::ordered_json object{{"outcome", outcomeWord(judgement.outcome)},
                                {"evidence", evidenceJson(judgement)},
                                {"before", beforeJson(judgement)},
                                {"changes", changesJson(judgement)}};
  for (const Statement& statement : summary.statements) {
    object["statements"].push_back({{"severity", severityName(statement.severity)}, {"text", statement.text}});
  }
  for (const Fact& fact : summary.facts) {
    object[fact.key] = fact.value;
  }
  object["gaps"] = summary.gaps;
  object["repeated"] = summary.repeated;
  object["problems"] = summary.problems;
  return dumped(object);
}

std::string summaryText(const LogSet& logs, bool colour, std::size_t width) {
  TextSummary summary(colour, width);
  const std::size_t count = logs.sessions.size();
  if (count > 1) {
    summary.text = std::to_string(count) + " sessions, the newest last\n";
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (count > 1) {
      summary.text += "\nSession " + std::to_string(i + 1) + " of " + std::to_string(count) + '\n';
    }
    summary.add(summarize(logs, logs.sessions[i]));
  }
  summary.addList("Missing, damaged or left out", problemsOf(logs));
  return summary.text;
}

}  // namespace sentiq
