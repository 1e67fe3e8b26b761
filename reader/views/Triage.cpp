#include "reader/views/Triage.h"

#include <algorithm>
#include <map>
#include <optional>

#include "reader/views/JudgementJson.h"
#include "reader/views/TextStyle.h"
#include "reader/views/TriageGroups.h"

namespace sentiq {
namespace {

constexpr std::size_t detailIndent = 10;

void append(std::string& text, const std::string& separator, const std::string& more) {
  text += (text.empty() ? "" : separator) + more;
}

std::string versionsOf(const Sessions& group) {
  constexpr std::size_t versionsShown = 4;
  const std::map<std::string, std::size_t> versions = countTrait(versionTrait, group).sessions;
  std::string text;
  std::size_t shown = 0;
  for (auto version = versions.rbegin(); version != versions.rend() && shown < versionsShown; ++version, ++shown) {
    append(text, ", ", version->first);
  }
  return text + (versions.size() > shown ? ", older ones" : "");
}

// What the sessions of a group have in common; counted once of all sessions.
class Details {
 public:
  explicit Details(const Sessions& all)
      : adapters_(countTrait(adapterTrait, all)), changes_(countTrait(changeTrait, all)) {}

  std::vector<std::string> linesOf(const Sessions& group) const {
    std::string line;
    if (const std::string versions = versionsOf(group); !versions.empty()) {
      line = "Canvix " + versions;
    }
    for (const TraitShare& adapter : distinctionsOf(countTrait(adapterTrait, group), adapters_)) {
      append(line, "; ", sharesText(adapter));
    }
    const TraitCounts before = countTrait(beforeTrait, group);
    const auto most = std::max_element(before.sessions.begin(), before.sessions.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    if (most != before.sessions.end()) {
      append(line, "; ",
             "before it: " + most->first + " (" + std::to_string(most->second) + " of " + std::to_string(group.size()) +
                 ")");
    }
    std::vector<std::string> lines;
    if (!line.empty()) {
      lines.push_back(line);
    }
    for (const TraitShare& change : distinctionsOf(countTrait(changeTrait, group), changes_)) {
      lines.push_back("changed before it: " + sharesText(change));
    }
    return lines;
  }

 private:
  static std::string sharesText(const TraitShare& share) {
    return share.name + ": " + share.share + " (of all " + share.shareOfAll + ")";
  }

  TraitCounts adapters_;
  TraitCounts changes_;
};

std::string rowOf(const std::string& sessions, const std::string& share, const std::string& first,
                  const std::string& last, const std::string& what) {
  constexpr std::size_t dayWidth = 12;
  const auto number = [numberWidth = std::size_t{8}](const std::string& text) {
    return std::string(numberWidth - std::min(numberWidth, text.size()), ' ') + text;
  };
  return number(sessions) + number(share) + "  " + padded(first, dayWidth) + padded(last, dayWidth) + what;
}

}  // namespace

TriagedSession triageSession(const Session& session) {
  TriagedSession triaged{session.id, session.processId, harmlessLine(session.folder), sessionSpan(session),
                         judge(session)};
  triaged.judgement.others = {};
  return triaged;
}

std::string triageText(const std::vector<TriagedSession>& sessions, std::size_t top, std::size_t width) {
  Sessions all;
  for (const TriagedSession& session : sessions) {
    all.push_back(&session);
  }
  const std::vector<TriageGroup> groups = groupsOf(all);
  const Details details(all);
  std::string text = wrapped(triageHeadline(all), 0, width) + '\n';
  const auto line = [&](const std::string& whole) { text += fitted(harmlessLine(whole), width) + '\n'; };
  if (!groups.empty()) {
    text += '\n';
    line(rowOf("sessions", "share", "first", "last", "what"));
  }
  const std::size_t shown = top == 0 ? groups.size() : std::min(top, groups.size());
  const std::string indent(detailIndent, ' ');
  for (std::size_t i = 0; i < shown; ++i) {
    const auto& [signature, group] = groups[i];
    line(rowOf(std::to_string(group.size()), showShare(group.size(), all.size()), firstDay(group), lastDay(group),
               signature));
    for (const std::string& detail : details.linesOf(group)) {
      line(indent + detail);
    }
    text += indent + group.back()->folder + '\n';  // Whole, to be copied.
  }
  if (groups.size() > shown) {
    line("and " + moreGroups(groups.size() - shown));
  }
  return text;
}

std::string triageJson(const TriagedSession& session) {
  using Json = nlohmann::ordered_json;
  const SessionSpan& span = session.span;
  const Judgement& judgement = session.judgement;
  const auto timeOf = [&](const std::optional<Instant>& time) {
    return time ? Json(isoTime(*time, span.offset)) : Json();
  };
  const auto numberOf = [](const auto& number) { return number ? Json(*number) : Json(); };
  return dumped({{"id", session.id},
                 {"processId", session.processId},
                 {"begin", timeOf(span.begin)},
                 {"end", timeOf(span.end)},
                 {"outcome", outcomeWord(judgement.outcome)},
                 {"signature", signatureOf(judgement)},
                 {"evidence", evidenceJson(judgement)},
                 {"adapters", judgement.adapters},
                 {"lowestDiskMiB", numberOf(judgement.lowestDisk)},
                 {"lowestPageFileMiB", numberOf(judgement.lowestPageFile)},
                 {"before", beforeJson(judgement)},
                 {"changes", changesJson(judgement)},
                 {"folder", session.folder}});
}

}  // namespace sentiq
