#include "reader/views/Triage.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"
#include "reader/session/LogTime.h"
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
  const auto known = [](const std::string& text) { return text.empty() ? std::string("unknown") : text; };
  if (judgement.outcome == "crashed") {
    return "crashed in " + known(evidence.module) + ": " +
           known(evidence.exceptionWords.empty() ? evidence.exception : evidence.exceptionWords) + " at " +
           known(evidence.offset);
  }
  if (judgement.outcome == "hung") {
    return evidence.hangKind.empty() ? "hung" : "hung: " + evidence.hangKind;
  }
  if (judgement.outcome == "bluescreen") {
    return "blue screen: " + known(evidence.stopWords.empty() ? evidence.stopCode : evidence.stopWords);
  }
  return judgement.outcome;
}

// Without its memory, which may differ from one machine to the next.
std::string adapterName(const std::string& adapter) {
  return adapter.substr(0, adapter.rfind(" ("));
}

using Counts = std::map<std::string, std::size_t>;

struct Group {
  std::string signature;
  std::size_t sessions = 0;
  std::string firstDay;
  std::string lastDay;
  std::set<std::string> versions;
  std::size_t withAdapters = 0;
  Counts adapters;
  Counts before;
  std::string folder;  // Of the last session in it.

  void add(const TriagedSession& session);
};

void Group::add(const TriagedSession& session) {
  ++sessions;
  if (session.span.begin) {
    const std::string day = isoTime(*session.span.begin, session.span.offset).substr(0, dayLength);
    firstDay = firstDay.empty() ? day : std::min(firstDay, day);
    if (day >= lastDay) {
      lastDay = day;
      folder = session.folder;
    }
  }
  folder = folder.empty() ? session.folder : folder;
  if (!session.judgement.evidence.canvixVersion.empty()) {
    versions.insert(session.judgement.evidence.canvixVersion);
  }
  std::set<std::string> names;
  for (const std::string& adapter : session.judgement.adapters) {
    names.insert(adapterName(adapter));
  }
  withAdapters += names.empty() ? 0 : 1;
  for (const std::string& name : names) {
    ++adapters[name];
  }
  std::set<std::string> kinds;
  for (const Before& fact : session.judgement.before) {
    kinds.insert(fact.kind);
  }
  for (const std::string& kind : kinds) {
    ++before[kind];
  }
}

std::string percent(std::size_t part, std::size_t whole) {
  std::array<char, 16> text{};
  const double share = whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
  static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f %%", share));
  return text.data();
}

void append(std::string& text, const std::string& more) {
  text += (text.empty() ? "" : "; ") + more;
}

// An adapter is named when ten sessions of the group have it, and its share there is twice that in all sessions:
// below that, chance makes such differences in one group or another.
std::string detailsOf(const Group& group, const Group& all) {
  constexpr std::size_t fewSessions = 10;
  constexpr std::size_t versionsShown = 4;
  std::string text;
  std::string versions;
  std::size_t shown = 0;
  for (auto version = group.versions.rbegin(); version != group.versions.rend() && shown < versionsShown; ++version) {
    versions += (shown++ == 0 ? "" : ", ") + *version;
  }
  if (shown > 0) {
    append(text, "Canvix " + versions + (group.versions.size() > shown ? ", older ones" : ""));
  }
  for (const auto& [adapter, count] : group.adapters) {
    if (count >= fewSessions && count * all.withAdapters >= 2 * all.adapters.at(adapter) * group.withAdapters) {
      append(text, adapter + ": " + percent(count, group.withAdapters) + " (of all " +
                       percent(all.adapters.at(adapter), all.withAdapters) + ")");
    }
  }
  const auto most = std::max_element(group.before.begin(), group.before.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  if (most != group.before.end()) {
    append(text, "before it: " + most->first + " (" + std::to_string(most->second) + " of " +
                     std::to_string(group.sessions) + ")");
  }
  return text;
}

std::string rowOf(std::string sessions, std::string share, std::string first, std::string last,
                  const std::string& rest) {
  sessions.insert(0, sessions.size() < 8 ? 8 - sessions.size() : 0, ' ');
  share.insert(0, share.size() < 8 ? 8 - share.size() : 0, ' ');
  first.resize(dayLength, ' ');
  last.resize(dayLength, ' ');
  return sessions + share + "  " + first + "  " + last + "  " + rest;
}

std::string headline(const std::vector<TriagedSession>& sessions, const Group& all) {
  std::string text = std::to_string(sessions.size()) + (sessions.size() == 1 ? " session" : " sessions");
  if (!all.firstDay.empty()) {
    text += " from " + all.firstDay + " to " + all.lastDay;
  }
  const char* before = ": ";
  for (const OutcomeRow& row : outcomeRows) {
    const auto count = std::count_if(sessions.begin(), sessions.end(),
                                     [&](const TriagedSession& s) { return s.judgement.outcome == row.word; });
    if (count > 0) {
      text += before + std::to_string(count) + ' ' + std::string(row.many);
      before = ", ";
    }
  }
  return text;
}

}  // namespace

TriagedSession triageSession(const Session& session, const std::string& folder) {
  TriagedSession triaged{session.id, session.processId, cleanText(folder), sessionSpan(session), judge(session)};
  triaged.judgement.others = {};
  return triaged;
}

std::string triageText(const std::vector<TriagedSession>& sessions, std::size_t top, std::size_t width) {
  Group all;
  std::map<std::string, Group> bySignature;
  for (const TriagedSession& session : sessions) {
    all.add(session);
    if (session.judgement.outcome != "ended") {
      const std::string signature = signatureOf(session.judgement);
      Group& group = bySignature[signature];
      group.signature = signature;
      group.add(session);
    }
  }
  std::vector<Group> groups;
  std::transform(bySignature.begin(), bySignature.end(), std::back_inserter(groups),
                 [](auto& named) { return std::move(named.second); });
  std::stable_sort(groups.begin(), groups.end(),
                   [](const Group& a, const Group& b) { return a.sessions > b.sessions; });
  std::string text = headline(sessions, all) + '\n';
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
    const Group& group = groups[i];
    line(rowOf(std::to_string(group.sessions), percent(group.sessions, sessions.size()), group.firstDay, group.lastDay,
               group.signature));
    if (const std::string details = detailsOf(group, all); !details.empty()) {
      line("          " + details);
    }
    text += "          " + group.folder + '\n';  // Whole, to be copied.
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
