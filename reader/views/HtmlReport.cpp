#include "reader/views/HtmlReport.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <vector>

#include "reader/views/Facts.h"
#include "reader/views/JudgementText.h"
#include "reader/views/Summary.h"
#include "reader/views/TimeText.h"
#include "reader/views/page/EntryTable.h"
#include "reader/views/page/PageSession.h"
#include "reader/views/page/Strip.h"

namespace sentiq {
namespace {

void addStatements(const PageSession& page, Places& places) {
  const Judgement& judgement = page.judgement;
  const bool changed = isFailure(judgement.outcome) && !judgement.changes.empty();
  places.add({{"verdict", judgement.verdict.text},
              {"severity", severityName(judgement.verdict.severity)},
              {"link", page.rowName(judgement.verdict.entry)},
              {"changed", changed ? changesTitle : ""}});
  places.list("before", judgement.before, [&](const Before& before) {
    return Places{
        {"earlier", showDuration(before.earlier)}, {"text", before.text}, {"row", page.rowName(before.entry)}};
  });
  places.list("others", judgement.others, [&](const Statement& statement) {
    return Places{{"severity", severityName(statement.severity)},
                  {"text", statement.text},
                  {"row", page.rowName(statement.entry)}};
  });
  places.list("changes", judgement.changes, [&](const Change& change) {
    return Places{{"earlier", showDuration(change.earlier)},
                  {"time", minuteText(change.time, change.offset)},
                  {"text", changeText(change.change)},
                  {"failed", change.change.failed},
                  {"row", page.rowName(change.entry)}};
  });
}

// Who and what, for below the headline, and the other facts; what the logs do not tell is left out.
void addFacts(const PageSession& page, Places& places) {
  constexpr std::array<std::string_view, 7> keys{"canvixVersion", "computer",  "windowsBuild", "adapters",
                                                 "sessionId",     "processId", "timeZone"};
  std::vector<Fact> facts = factsOf(page.session, page.judgement);
  std::erase_if(facts, [](const Fact& fact) { return fact.value.json.is_null(); });
  const auto rank = [&](const Fact& fact) { return std::find(keys.begin(), keys.end(), fact.key); };
  std::stable_sort(facts.begin(), facts.end(), [&](const Fact& a, const Fact& b) { return rank(a) < rank(b); });
  const auto rest =
      std::find_if(facts.begin(), facts.end(), [&](const Fact& fact) { return rank(fact) == keys.end(); });
  const auto place = [](const Fact& fact) { return Places{{"name", fact.label}, {"value", fact.value.text}}; };
  places.list("who", std::vector<Fact>(facts.begin(), rest), place);
  places.list("facts", std::vector<Fact>(rest, facts.end()), place);
  places.list("gaps", gapsOf(page.session), placedAs("gap"));
  places.list("repeated", page.session.repeated, placedAs("copy"));
}

/// @param page has to outlive the writing.
Places sessionPlaces(const PageSession& page, bool isOpen) {
  Places places{{"name", page.prefix}, {"prefix", page.prefix}, {"open", isOpen}};
  addStatements(page, places);
  addFacts(page, places);
  std::vector<ChartMark> marks;
  if (const std::optional<StripItems> strip = stripItems(page)) {
    addStrip(page, *strip, places);
    marks = marksOf(page, *strip);
  }
  addCharts(page, marks, places);
  addEntries(page, places);
  return places;
}

// A line of the overview.
Places overviewPlaces(const PageSession& page) {
  return {{"name", page.prefix},
          {"from", page.begin ? minuteText(*page.begin, page.offset) : "without a time"},
          {"length", page.begin && page.end ? showDuration(*page.end - *page.begin) : ""},
          {"outcome", outcomeName(page.judgement.outcome)},
          {"severity", severityName(page.judgement.verdict.severity)},
          {"verdict", page.judgement.verdict.text}};
}

Places filePlaces(const LogFileInfo& file, std::size_t number) {
  Places places{{"number", std::to_string(number)},
                {"file", file.name},
                {"role", roleName(file.role)},
                {"lines", std::to_string(file.lines)},
                {"leftOut", countOrNothing(file.rawLeftOut)}};
  places.longList("raw", file.rawLines.size(), [&file](std::size_t i) { return Places{{"line", file.rawLines[i]}}; });
  return places;
}

}  // namespace

void writeHtmlReport(const LogSet& logs, const PageOptions& options, std::ostream& out) {
  const Session none;
  std::deque<PageSession> pages;  // Newest first.
  std::vector<Outcome> outcomes;
  const bool several = logs.sessions.size() > 1;
  for (std::size_t i = logs.sessions.size(); i-- > 0;) {
    pages.push_back(pageSession(logs.sessions[i], several ? 's' + std::to_string(i) : ""));
    outcomes.push_back(pages.back().judgement.outcome);
  }
  if (pages.empty()) {
    pages.push_back(pageSession(none, ""));
  }
  const std::vector<std::string> problems = problemsOf(logs);
  Places places = placesOf(options, {"Report.css"}, {"Entries.js", "Figures.js", "Report.js"});
  places.add({{"title", several ? std::to_string(pages.size()) + " sessions of Canvix: " + outcomesText(outcomes)
                                : pages.front().judgement.verdict.text},
              {"several", several},
              {"part", several ? "3" : "2"},  // The level of headings within a session.
              {"problems", !problems.empty()}});
  places.list("overview", pages, overviewPlaces);
  places.longList("sessions", pages.size(), [&](std::size_t i) { return sessionPlaces(pages[i], i == 0); });
  places.list("problemItems", problems, placedAs("item"));
  places.longList("files", logs.files.size(), [&](std::size_t i) { return filePlaces(logs.files[i], i + 1); });
  writePage("Report.html", places, out);
}

}  // namespace sentiq
