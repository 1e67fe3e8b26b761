#include "reader/views/HtmlTriage.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "reader/views/TriageGroups.h"
#include "reader/views/page/TimeAxis.h"

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
    if (const auto day = dayOf(*session)) {
      ++days[*day];
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
    const std::string name = dayText(day);
    const bool sameMonth = text.empty() || name.starts_with(month);
    text += text.empty() ? name : sameMonth ? ", " + name.substr(monthLength) : "; " + name;
    text += ":\u00A0" + std::to_string(count);
    month = name.substr(0, monthLength);
  }
  return text;
}

/// One page's places; what it is given outlives the writing.
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
    Places places;
    places.text("count", std::to_string(sessions.size()));
    places.text("share", showShare(sessions.size(), all_.size()));
    places.text("first", firstDay(sessions));
    places.text("last", lastDay(sessions));
    places.text("what", group.signature);
    places.text("newest", sessions.back()->folder);
    addDays(daysOf(sessions), places);
    addTraits(sessions, places);
    const std::size_t listed = std::min(sessions.size(), sessionsListed);
    places.list("sessions", listed, [this, &sessions](std::size_t i) {
      const TriagedSession& session = *sessions[sessions.size() - 1 - i];
      Places row;
      row.text("number", std::to_string(&session - all_.front()));  // In the order of time, the same without names.
      const SessionSpan& span = session.span;
      row.text("folder", session.folder);
      row.text("from", span.begin ? showTime(*span.begin, span.offset).substr(0, 16) : "without a time");
      row.text("verdict", session.judgement.verdict.text);
      return row;
    });
    places.text("older", sessions.size() > listed ? std::to_string(sessions.size() - listed) : "");
    return places;
  }

 private:
  // Drawn over the days of all sessions, so that one group can be laid beside another.
  void addDays(const Days& days, Places& places) const {
    places.text("days", daysText(days));
    if (days.empty()) {
      return;
    }
    const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
    const std::size_t most = std::max_element(days.begin(), days.end(), byCount)->second;
    const std::chrono::sys_days from = days_.begin()->first;
    const std::chrono::sys_days until = days_.rbegin()->first;
    const double width = 100.0 / static_cast<double>((until - from).count() + 1);
    places.text("most", std::to_string(most));
    places.text("from", dayText(from));
    places.text("until", from == until ? "" : dayText(until));
    places.list("bars", std::vector<Days::value_type>(days.begin(), days.end()), [=](const Days::value_type& day) {
      constexpr double filled = 0.9;
      const double height = 100.0 * static_cast<double>(day.second) / static_cast<double>(most);
      Places bar;
      bar.text("at", showNumber(width * static_cast<double>((day.first - from).count()), 2));
      bar.text("width", showNumber(width * filled, 2));
      bar.text("top", showNumber(100 - height, 1));
      bar.text("height", showNumber(height, 1));
      bar.text("day", dayText(day.first));
      bar.text("sessions", std::to_string(day.second));
      return bar;
    });
  }

  void addTraits(const Sessions& sessions, Places& places) const {
    std::vector<std::pair<std::string_view, std::vector<TraitShare>>> told;
    for (const TraitOfAll& ofAll : traits_) {
      std::vector<TraitShare> shares = sharesOf(countTrait(ofAll.trait, sessions), ofAll.counts);
      std::stable_sort(shares.begin(), shares.end(), [](const TraitShare& a, const TraitShare& b) {
        return std::pair(a.isClear, a.sessions) > std::pair(b.isClear, b.sessions);
      });
      if (!shares.empty()) {
        told.emplace_back(ofAll.title, std::move(shares));
      }
    }
    places.flag("hasTraits", !told.empty());
    places.list("traits", std::move(told), [](const auto& trait) {
      const std::vector<TraitShare>& shares = trait.second;
      const std::size_t listed = std::min(shares.size(), namesListed);
      Places part;
      part.text("title", std::string(trait.first));
      part.list("names", std::vector<TraitShare>(shares.begin(), shares.begin() + static_cast<std::ptrdiff_t>(listed)),
                [](const TraitShare& share) {
                  Places row;
                  row.flag("clear", share.isClear);
                  row.text("name", share.name);
                  row.text("count", std::to_string(share.sessions));
                  row.text("share", share.share);
                  row.text("shareOfAll", share.shareOfAll);
                  return row;
                });
      part.text("others", shares.size() > listed ? std::to_string(shares.size() - listed) : "");
      return part;
    });
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
  const auto texts = [](std::string_view name) {
    return [name](const std::string& text) {
      Places place;
      place.text(name, text);
      return place;
    };
  };
  Places places = placesOf(options, {"Report.css hash", "Triage.css hash", "Triage.js hash"});
  places.text("title", triageHeadline(all));
  places.list("notes", page.notes, texts("note"));
  places.list("groups", shown, [&](std::size_t i) { return triage.of(groups[i]); });
  places.list("ended", ended.sessions.empty() ? 0 : 1, [&](std::size_t) { return triage.of(ended); });
  places.text("more", moreGroups(groups.size() - shown));
  places.list("inputs", page.inputs, texts("input"));
  writePage("Triage.html", places, out);
}

}  // namespace sentiq
