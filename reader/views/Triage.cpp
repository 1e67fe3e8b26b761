#include "reader/views/Triage.h"

#include <algorithm>
#include <map>

#include "reader/views/JudgementJson.h"
#include "reader/views/TextStyle.h"
#include "reader/views/TriageGroups.h"

namespace sentiq {
namespace {

constexpr std::size_t detailIndent = 10;

void addVersions(const Sessions& group, std::vector<std::string>& told) {
  constexpr std::size_t versionsShown = 4;
  const std::map<std::string, std::size_t> counts = countTrait(versionTrait, group).sessions;
  std::vector<std::string> versions;  // The newest first.
  for (auto version = counts.rbegin(); version != counts.rend() && versions.size() < versionsShown; ++version) {
    versions.push_back(version->first);
  }
  if (counts.size() > versions.size()) {
    versions.emplace_back("older ones");
  }
  if (!versions.empty()) {
    told.push_back("Canvix " + joined(versions));
  }
}

void addMostFrequentBefore(const Sessions& group, std::vector<std::string>& told) {
  const std::map<std::string, std::size_t> counts = countTrait(beforeTrait, group).sessions;
  const auto most =
      std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  if (most != counts.end()) {
    told.push_back("before it: " + most->first + " (" + std::to_string(most->second) + " of " +
                   std::to_string(group.size()) + ")");
  }
}

void addClearShares(const Trait& trait, const Sessions& group, const TraitCounts& all, const std::string& what,
                    std::vector<std::string>& told) {
  for (const TraitShare& share : sharesOf(trait, group, all)) {
    if (share.isClear) {
      told.push_back(what + share.name + ": " + share.share + " (of all " + share.shareOfAll + ")");
    }
  }
}

// What the sessions of a group have in common: most of it in one line.
std::vector<std::string> detailsOf(const Sessions& group, const TraitCounts& adapters, const TraitCounts& changes) {
  std::vector<std::string> common;
  addVersions(group, common);
  addClearShares(adapterTrait, group, adapters, "", common);
  addMostFrequentBefore(group, common);
  std::vector<std::string> lines;
  if (!common.empty()) {
    lines.push_back(joined(common, "; "));
  }
  addClearShares(changeTrait, group, changes, "changed before it: ", lines);
  return lines;
}

std::string rowOf(const std::string& sessions, const std::string& share, const std::string& first,
                  const std::string& last, const std::string& what) {
  constexpr std::size_t numberWidth = 8;
  constexpr std::size_t dayWidth = 12;
  return padded(numberWidth, sessions) + padded(numberWidth, share) + "  " + padded(first, dayWidth) +
         padded(last, dayWidth) + what;
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
  const TraitCounts adapters = countTrait(adapterTrait, all);
  const TraitCounts changes = countTrait(changeTrait, all);
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
    for (const std::string& detail : detailsOf(group, adapters, changes)) {
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
  const SessionSpan& span = session.span;
  const Judgement& judgement = session.judgement;
  return dumped({{"id", session.id},
                 {"processId", session.processId},
                 {"begin", timeJson(span.begin, span.offset)},
                 {"end", timeJson(span.end, span.offset)},
                 {"outcome", outcomeWord(judgement.outcome)},
                 {"signature", signatureOf(judgement)},
                 {"evidence", evidenceJson(judgement)},
                 {"adapters", judgement.adapters},
                 {"lowestDiskMiB", orNull(judgement.lowestDisk)},
                 {"lowestPageFileMiB", orNull(judgement.lowestPageFile)},
                 {"before", beforeJson(judgement)},
                 {"changes", changesJson(judgement)},
                 {"folder", session.folder}});
}

}  // namespace sentiq
