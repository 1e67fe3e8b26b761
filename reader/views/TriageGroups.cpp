#include "reader/views/TriageGroups.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "reader/events/CodeWords.h"
#include "reader/views/JudgementText.h"
#include "reader/views/TextStyle.h"
#include "reader/views/TimeText.h"

namespace sentiq {
namespace {

std::string codeText(CodeKind kind, const std::optional<std::uint64_t>& code) {
  const std::string_view words = code ? codeWords(kind, *code) : "";
  return !words.empty() ? std::string(words) : code ? showHex(*code) : "unknown";
}

std::string crashText(const ProgramFailure& crash) {
  const std::string exception =
      crash.exceptionName.empty() ? codeText(CodeKind::Exception, crash.exception) : crash.exceptionName;
  return " in " + (crash.module.empty() ? "unknown" : crash.module) + ": " + exception + " at " +
         (crash.offset ? showHex(*crash.offset) : "unknown");
}

template <class Items, class Name>
std::set<std::string> namesOf(const Items& items, const Name& name) {
  std::set<std::string> names;
  for (const auto& item : items) {
    names.emplace(name(item));
  }
  return names;
}

std::string withoutMemory(const std::string& adapter) {
  return adapter.substr(0, adapter.rfind(" ("));  // It may differ from one machine to the next.
}

std::set<std::string> adaptersOf(const Judgement& judgement) {
  return namesOf(judgement.adapters, withoutMemory);
}

std::set<std::string> changesOf(const Judgement& judgement) {
  return namesOf(judgement.changes, [](const Change& change) { return changeText(change.change); });
}

template <std::string_view (*name)(BeforeKind)>
std::set<std::string> kindsBefore(const Judgement& judgement) {
  return namesOf(judgement.before, [](const Before& before) { return name(before.kind); });
}

std::set<std::string> versionsOf(const Judgement& judgement) {
  const auto& failure = judgement.evidence.failure;
  return failure && !failure->version.empty() ? std::set{failure->version} : std::set<std::string>{};
}

std::string dayOf(const TriagedSession& session) {
  const SessionSpan& span = session.span;
  return span.begin ? dateText(*span.begin, span.offset) : "";
}

}  // namespace

const Trait adapterTrait{adaptersOf, /*alwaysTold=*/false};
const Trait changeTrait{changesOf, /*alwaysTold=*/true};
const Trait beforeTrait{kindsBefore<beforeName>, /*alwaysTold=*/true};
const Trait beforeWordsTrait{kindsBefore<beforeWords>, /*alwaysTold=*/true};
const Trait versionTrait{versionsOf, /*alwaysTold=*/false};

std::string signatureOf(const Judgement& judgement) {
  std::string name(outcomeName(judgement.outcome));
  const Evidence& evidence = judgement.evidence;
  if (evidence.failure && judgement.outcome == Outcome::Crashed) {
    return name + crashText(*evidence.failure);
  }
  if (evidence.failure && !evidence.failure->hangKind.empty()) {
    return name + ": " + evidence.failure->hangKind;
  }
  if (evidence.fall && evidence.fall->stopCode) {
    return name + ": " + codeText(CodeKind::Stop, evidence.fall->stopCode);
  }
  return name;
}

std::string triageHeadline(const Sessions& all) {
  std::string text = countText(all.size(), "session");
  if (const std::string day = firstDay(all); !day.empty()) {
    text += " from " + day + " to " + lastDay(all);
  }
  std::vector<Outcome> outcomes;
  outcomes.reserve(all.size());
  for (const TriagedSession* const session : all) {
    outcomes.push_back(session->judgement.outcome);
  }
  return text + (outcomes.empty() ? "" : ": ") + outcomesText(outcomes);
}

std::string firstDay(const Sessions& group) {
  const auto dated = std::find_if(group.begin(), group.end(), [](const auto* session) { return session->span.begin; });
  return dated != group.end() ? dayOf(**dated) : "";
}

std::string lastDay(const Sessions& group) {
  return group.empty() ? "" : dayOf(*group.back());
}

std::vector<TriageGroup> groupsOf(const Sessions& all) {
  std::map<std::string, Sessions> bySignature;
  for (const TriagedSession* const session : all) {
    if (session->judgement.outcome != Outcome::Ended) {
      bySignature[signatureOf(session->judgement)].push_back(session);
    }
  }
  std::vector<TriageGroup> groups;
  groups.reserve(bySignature.size());
  for (auto& [signature, sessions] : bySignature) {
    groups.push_back({signature, std::move(sessions)});
  }
  std::stable_sort(groups.begin(), groups.end(),
                   [](const TriageGroup& a, const TriageGroup& b) { return a.sessions.size() > b.sessions.size(); });
  return groups;
}

std::string moreGroups(std::size_t count) {
  return count == 0 ? "" : countText(count, "more group");
}

TraitCounts countTrait(const Trait& trait, const Sessions& sessions) {
  TraitCounts counts;
  for (const TriagedSession* const session : sessions) {
    const std::set<std::string> names = trait.namesOf(session->judgement);
    counts.telling += trait.alwaysTold || !names.empty() ? 1 : 0;
    for (const std::string& name : names) {
      ++counts.sessions[name];
    }
  }
  return counts;
}

std::vector<TraitShare> sharesOf(const Trait& trait, const Sessions& sessions, const TraitCounts& all) {
  constexpr std::size_t fewSessions = 10;
  constexpr std::size_t clearly = 2;
  const TraitCounts group = countTrait(trait, sessions);
  std::vector<TraitShare> shares;
  for (const auto& [name, count] : group.sessions) {
    const std::size_t countOfAll = all.sessions.at(name);
    const bool isClear = count >= fewSessions && count * all.telling >= clearly * countOfAll * group.telling;
    shares.push_back({name, count, showShare(count, group.telling), showShare(countOfAll, all.telling), isClear});
  }
  return shares;
}

std::string showShare(std::size_t part, std::size_t whole) {
  return showNumber(whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole), 1) + " %";
}

}  // namespace sentiq
