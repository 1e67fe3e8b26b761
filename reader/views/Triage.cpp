#include "reader/views/Triage.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"
#include "reader/views/Summary.h"

namespace sentiq {
namespace {

constexpr std::size_t dayLength = 10;

struct OutcomeRow {
  std::string_view word;
  std::string_view many;  // In the line about all.
};
constexpr OutcomeRow outcomeRows[] = {
    OutcomeRow{"ended", "ended normally"},
    OutcomeRow{"crashed", "crashed"},
    OutcomeRow{"hung", "hung"},
    OutcomeRow{"power-loss", "lost power"},
    OutcomeRow{"bluescreen", "blue screens"},
    OutcomeRow{"shutdown", "shut down"},
    OutcomeRow{"asleep", "asleep"},
    OutcomeRow{"unknown", "unknown"},
};

std::string signatureOf(const Judgement& judgement) {
  const Evidence& evidence = judgement.evidence;
  if (judgement.outcome == "crashed") {
    return "crashed in " + evidence.text("module", "unknown") + ": " +
           evidence.text("exceptionWords", evidence.text("exception", "unknown")) + " at " +
           evidence.text("offset", "unknown");
  }
  if (judgement.outcome == "hung") {
    const std::string kind = evidence.text("hangKind");
    return kind.empty() ? "hung" : "hung: " + kind;
  }
  if (judgement.outcome == "bluescreen") {
    return "blue screen: " + evidence.text("stopWords", evidence.text("stopCode"));
  }
  return judgement.outcome;
}

// In the order of time.
using Group = std::vector<const TriagedSession*>;

// The day that it began on; empty when its logs do not tell.
std::string dayOf(const TriagedSession& session) {
  const SessionSpan& span = session.span;
  return span.begin ? isoTime(*span.begin, span.offset).substr(0, dayLength) : std::string{};
}

std::string firstDay(const Group& group) {
  const auto dated = std::find_if(group.begin(), group.end(), [](const auto* session) { return session->span.begin; });
  return dated != group.end() ? dayOf(**dated) : std::string{};
}

std::string lastDay(const Group& group) {
  return group.empty() ? std::string{} : dayOf(*group.back());
}

using Names = std::set<std::string>;

Names adaptersOf(const TriagedSession& session) {
  Names names;
  for (const std::string& adapter : session.judgement.adapters) {
    names.insert(adapter.substr(0, adapter.rfind(" (")));  // Its memory may differ from one machine to the next.
  }
  return names;
}

Names kindsBefore(const TriagedSession& session) {
  Names kinds;
  for (const Before& fact : session.judgement.before) {
    kinds.insert(fact.kind);
  }
  return kinds;
}

// In how many sessions of the group each name is.
using Counts = std::map<std::string, std::size_t>;
Counts countsOf(const Group& group, Names (*namesOf)(const TriagedSession& session)) {
  Counts counts;
  for (const TriagedSession* const session : group) {
    for (const std::string& name : namesOf(*session)) {
      ++counts[name];
    }
  }
  return counts;
}

std::size_t withAdapters(const Group& group) {
  return static_cast<std::size_t>(std::count_if(
      group.begin(), group.end(), [](const auto* session) { return !session->judgement.adapters.empty(); }));
}

std::string percent(std::size_t part, std::size_t whole) {
  std::array<char, 16> text{};
  const double share = whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
  static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f %%", share));
  return text.data();
}

void append(std::string& text, const std::string& separator, const std::string& more) {
  text += (text.empty() ? "" : separator) + more;
}

std::string versionsOf(const Group& group) {
  constexpr std::size_t versionsShown = 4;
  std::set<std::string, std::greater<>> versions;  // The newest first.
  for (const TriagedSession* const session : group) {
    versions.insert(session->judgement.evidence.text("canvixVersion"));
  }
  versions.erase("");
  std::string text;
  std::size_t shown = 0;
  for (auto version = versions.begin(); version != versions.end() && shown < versionsShown; ++version, ++shown) {
    append(text, ", ", *version);
  }
  return text + (versions.size() > shown ? ", older ones" : "");
}

// An adapter is named when ten sessions of the group have it, and its share there is twice that in all sessions:
// below that, chance makes such differences in one group or another.
std::string detailsOf(const Group& group, const Group& all, const Counts& allAdapters) {
  constexpr std::size_t fewSessions = 10;
  const std::string versions = versionsOf(group);
  std::string text = versions.empty() ? "" : "Canvix " + versions;
  for (const auto& [adapter, count] : countsOf(group, adaptersOf)) {
    const std::size_t whole = withAdapters(group);
    const std::size_t countOfAll = allAdapters.at(adapter);
    if (count >= fewSessions && count * withAdapters(all) >= 2 * countOfAll * whole) {
      append(text, "; ",
             adapter + ": " + percent(count, whole) + " (of all " + percent(countOfAll, withAdapters(all)) + ")");
    }
  }
  const Counts before = countsOf(group, kindsBefore);
  const auto most =
      std::max_element(before.begin(), before.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  if (most != before.end()) {
    append(text, "; ",
           "before it: " + most->first + " (" + std::to_string(most->second) + " of " + std::to_string(group.size()) +
               ")");
  }
  return text;
}

std::string rowOf(const std::string& sessions, const std::string& share, const std::string& first,
                  const std::string& last, const std::string& what) {
  std::array<char, 64> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%8s%8s  %-10s  %-10s  ", sessions.c_str(), share.c_str(),
                                  first.c_str(), last.c_str()));
  return text.data() + what;
}

std::string headline(const Group& all) {
  std::string text = std::to_string(all.size()) + (all.size() == 1 ? " session" : " sessions");
  if (const std::string day = firstDay(all); !day.empty()) {
    text += " from " + day + " to " + lastDay(all);
  }
  std::string outcomes;
  for (const OutcomeRow& row : outcomeRows) {
    const auto count =
        std::count_if(all.begin(), all.end(), [&](const auto* s) { return s->judgement.outcome == row.word; });
    if (count > 0) {
      append(outcomes, ", ", std::to_string(count) + ' ' + std::string(row.many));
    }
  }
  return text + (outcomes.empty() ? "" : ": ") + outcomes;
}

}  // namespace

TriagedSession triageSession(const Session& session) {
  TriagedSession triaged{session.id, session.processId, cleanText(session.folder), sessionSpan(session),
                         judge(session)};
  triaged.judgement.others = {};
  return triaged;
}

std::string triageText(const std::vector<TriagedSession>& sessions, std::size_t top, std::size_t width) {
  Group all;
  std::map<std::string, Group> bySignature;
  for (const TriagedSession& session : sessions) {
    all.push_back(&session);
    if (session.judgement.outcome != "ended") {
      bySignature[signatureOf(session.judgement)].push_back(&session);
    }
  }
  std::vector<std::pair<std::string, Group>> groups(bySignature.begin(), bySignature.end());
  std::stable_sort(groups.begin(), groups.end(),
                   [](const auto& a, const auto& b) { return a.second.size() > b.second.size(); });
  const Counts adapters = countsOf(all, adaptersOf);
  std::string text = headline(all) + '\n';
  const auto line = [&](const std::string& whole) {
    constexpr std::size_t ellipsis = 1;
    text += (width == 0 ? whole : shortText(whole, std::max(width, ellipsis) - ellipsis)) + '\n';
  };
  if (!groups.empty()) {
    text += '\n';
    line(rowOf("sessions", "share", "first", "last", "what"));
  }
  const std::size_t shown = top == 0 ? groups.size() : std::min(top, groups.size());
  for (std::size_t i = 0; i < shown; ++i) {
    const auto& [signature, group] = groups[i];
    line(rowOf(std::to_string(group.size()), percent(group.size(), all.size()), firstDay(group), lastDay(group),
               signature));
    if (const std::string details = detailsOf(group, all, adapters); !details.empty()) {
      line("          " + details);
    }
    text += "          " + group.back()->folder + '\n';  // Whole, to be copied.
  }
  if (shown < groups.size()) {
    line("and " + std::to_string(groups.size() - shown) + " more groups");
  }
  return text;
}

std::string triageJson(const TriagedSession& session) {
  using nlohmann::ordered_json;
  const SessionSpan& span = session.span;
  const Judgement& judgement = session.judgement;
  const auto timeOf = [&](const std::optional<Instant>& time) {
    return time ? ordered_json(isoTime(*time, span.offset)) : ordered_json();
  };
  const auto numberOf = [](const auto& number) { return number ? ordered_json(*number) : ordered_json(); };
  const ordered_json object{{"id", session.id},
                            {"processId", session.processId},
                            {"begin", timeOf(span.begin)},
                            {"end", timeOf(span.end)},
                            {"outcome", judgement.outcome},
                            {"signature", signatureOf(judgement)},
                            {"evidence", evidenceJson(judgement)},
                            {"adapters", judgement.adapters},
                            {"lowestDiskMiB", numberOf(judgement.lowestDisk)},
                            {"lowestPageFileMiB", numberOf(judgement.lowestPageFile)},
                            {"before", beforeJson(judgement)},
                            {"folder", session.folder}};
  return object.dump(/*indent=*/-1, ' ', /*ensure_ascii=*/false, ordered_json::error_handler_t::replace);
}

}  // namespace sentiq
