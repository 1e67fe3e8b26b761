#include "reader/views/HtmlTriage.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <map>
#include <span>
#include <string_view>
#include <utility>

#include "reader/views/TextStyle.h"
#include "reader/views/TimeText.h"
#include "reader/views/TriageGroups.h"

namespace sentiq {
namespace {

using Days = std::map<std::chrono::sys_days, std::size_t>;  // How many sessions began on each.

// Several thousand rows of one kind help nobody, and would make the page heavy.
constexpr std::size_t sessionsListed = 2000;
constexpr std::size_t namesListed = 8;

struct TraitOfAll {
  std::string_view title;
  const Trait& trait;
  TraitCounts counts;
};

Days daysOf(const Sessions& sessions) {
  Days days;
  for (const TriagedSession* const session : sessions) {
    if (const SessionSpan& span = session->span; span.begin) {
      ++days[std::chrono::floor<std::chrono::days>(*span.begin + span.offset)];
    }
  }
  return days;
}

// "2025-01-30: 2, 31: 1; 2025-02-01: 4", each with its number in one line.
std::string daysText(const Days& days) {
  constexpr std::size_t monthLength = 8;
  std::string text;
  std::string month;
  for (const auto& [day, count] : days) {
    const std::string name = dateText(day, {});
    const bool sameMonth = text.empty() || name.starts_with(month);
    text += text.empty() ? name : sameMonth ? ", " + name.substr(monthLength) : "; " + name;
    text += ":\u00A0" + std::to_string(count);
    month = name.substr(0, monthLength);
  }
  return text;
}

// Drawn over the days of all sessions, so that one group can be laid beside another.
void addDays(const Days& days, const Days& ofAll, Places& places) {
  places.add("days", daysText(days));
  if (days.empty()) {
    return;
  }
  const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
  const std::size_t most = std::max_element(days.begin(), days.end(), byCount)->second;
  const std::chrono::sys_days from = ofAll.begin()->first;
  const std::chrono::sys_days until = ofAll.rbegin()->first;
  const double width = 100.0 / static_cast<double>((until - from).count() + 1);
  places.add({{"most", std::to_string(most)},
              {"from", dateText(from, {})},
              {"until", from == until ? "" : dateText(until, {})}});
  places.list("bars", days, [&](const Days::value_type& day) {
    constexpr double filled = 0.9;
    const double height = 100.0 * static_cast<double>(day.second) / static_cast<double>(most);
    return Places{{"at", showNumber(width * static_cast<double>((day.first - from).count()), 2)},
                  {"width", showNumber(width * filled, 2)},
                  {"top", showNumber(100 - height, 1)},
                  {"height", showNumber(height, 1)},
                  {"day", dateText(day.first, {})},
                  {"sessions", std::to_string(day.second)}};
  });
}

Places traitPlaces(std::string_view title, std::vector<TraitShare> shares) {
  std::stable_sort(shares.begin(), shares.end(), [](const TraitShare& a, const TraitShare& b) {
    return std::pair(a.isClear, a.sessions) > std::pair(b.isClear, b.sessions);
  });
  const std::size_t listed = std::min(shares.size(), namesListed);
  Places places{{"title", title}, {"others", countOrNothing(shares.size() - listed)}};
  places.list("names", std::span(shares).first(listed), [](const TraitShare& share) {
    return Places{{"clear", share.isClear},
                  {"name", share.name},
                  {"count", std::to_string(share.sessions)},
                  {"share", share.share},
                  {"shareOfAll", share.shareOfAll}};
  });
  return places;
}

/// The places of one page's groups; what it is given outlives the writing.
class TriagePlaces {
 public:
  explicit TriagePlaces(const Sessions& all)
      : all_(all),
        days_(daysOf(all)),
        traits_{{{"Canvix", versionTrait, countTrait(versionTrait, all)},
                 {"Graphics adapter", adapterTrait, countTrait(adapterTrait, all)},
                 {"Went before it", beforeWordsTrait, countTrait(beforeWordsTrait, all)},
                 {"Changed in the days before it", changeTrait, countTrait(changeTrait, all)}}} {}

  Places of(const TriageGroup& group) const {
    const Sessions& sessions = group.sessions;
    const std::size_t listed = std::min(sessions.size(), sessionsListed);
    Places places{{"count", std::to_string(sessions.size())},
                  {"share", showShare(sessions.size(), all_.size())},
                  {"first", firstDay(sessions)},
                  {"last", lastDay(sessions)},
                  {"what", group.signature},
                  {"newest", sessions.back()->folder},
                  {"older", countOrNothing(sessions.size() - listed)}};
    addDays(daysOf(sessions), days_, places);
    addTraits(sessions, places);
    places.longList("sessions", listed, [this, &sessions](std::size_t i) {
      const TriagedSession& session = *sessions[sessions.size() - 1 - i];
      const SessionSpan& span = session.span;
      return Places{
          {"number", std::to_string(&session - all_.front())},  // In the order of time, the same without names.
          {"folder", session.folder},
          {"from", span.begin ? minuteText(*span.begin, span.offset) : "without a time"},
          {"verdict", session.judgement.verdict.text}};
    });
    return places;
  }

 private:
  void addTraits(const Sessions& sessions, Places& places) const {
    std::vector<Places> told;
    for (const TraitOfAll& ofAll : traits_) {
      if (std::vector<TraitShare> shares = sharesOf(ofAll.trait, sessions, ofAll.counts); !shares.empty()) {
        told.push_back(traitPlaces(ofAll.title, std::move(shares)));
      }
    }
    places.add({{"hasTraits", !told.empty()}});
    places.list("traits", told, std::identity());
  }

  const Sessions& all_;
  Days days_;
  std::array<TraitOfAll, 4> traits_;
};

}  // namespace

void writeHtmlTriage(const std::vector<TriagedSession>& sessions, const TriagePage& page, const PageOptions& options,
                     std::ostream& out) {
  Sessions all;
  TriageGroup ended{"ended", {}};
  for (const TriagedSession& session : sessions) {
    all.push_back(&session);
    if (session.judgement.outcome == Outcome::Ended) {
      ended.sessions.push_back(&session);
    }
  }
  const std::vector<TriageGroup> groups = groupsOf(all);
  const std::size_t shown = page.top == 0 ? groups.size() : std::min(page.top, groups.size());
  const TriagePlaces triage(all);
  Places places = placesOf(options, {"Report.css", "Triage.css"}, {"Triage.js"});
  places.add({{"title", triageHeadline(all)}, {"more", moreGroups(groups.size() - shown)}});
  places.list("notes", page.notes, placedAs("note"));
  places.longList("groups", shown, [&](std::size_t i) { return triage.of(groups[i]); });
  places.longList("ended", ended.sessions.empty() ? 0 : 1, [&](std::size_t) { return triage.of(ended); });
  places.list("inputs", page.inputs, placedAs("input"));
  writePage("Triage.html", places, out);
}

}  // namespace sentiq
