#include "reader/views/HtmlReport.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <utility>
#include <vector>

#include "reader/views/JudgementText.h"
#include "reader/views/Summary.h"
#include "reader/views/page/EntryTable.h"
#include "reader/views/page/PageSession.h"
#include "reader/views/page/Strip.h"

namespace sentiq {
namespace {

Places textPlace(std::string_view name, std::string text) {
  Places place;
  place.text(name, std::move(text));
  return place;
}

void addStatements(const PageSession& page, Places& places) {
  const Judgement& judgement = page.judgement();
  places.text("verdict", judgement.verdict.text);
  places.text("severity", std::string(severityName(judgement.verdict.severity)));
  places.text("link", page.rowName(judgement.verdict.entry));
  places.list("before", judgement.before, [&page](const Before& before) {
    Places place;
    place.text("earlier", showDuration(before.earlier));
    place.text("text", before.text);
    place.text("row", page.rowName(before.entry));
    return place;
  });
  places.list("others", judgement.others, [&page](const Statement& statement) {
    Places place;
    place.text("severity", std::string(severityName(statement.severity)));
    place.text("text", statement.text);
    place.text("row", page.rowName(statement.entry));
    return place;
  });
  const bool changed = isFailure(judgement.outcome) && !judgement.changes.empty();
  places.text("changed", changed ? std::string(changesTitle) : "");
  places.list("changes", judgement.changes, [&page](const Change& change) {
    Places place;
    place.text("earlier", showDuration(change.earlier));
    place.text("time", showTime(change.time, change.offset).substr(0, 16));
    place.text("text", changeText(change.change));
    place.flag("failed", change.change.failed);
    place.text("row", page.rowName(change.entry));
    return place;
  });
}

// Who and what, for below the headline, and the other facts; what the logs do not tell is left out.
void addFacts(const PageSession& page, Places& places) {
  constexpr std::array<std::string_view, 7> keys{"canvixVersion", "computer",  "windowsBuild", "adapters",
                                                 "sessionId",     "processId", "timeZone"};
  std::vector<Fact> facts = page.summary.facts;
  std::erase_if(facts, [](const Fact& fact) { return fact.value.is_null(); });
  const auto rank = [&](const Fact& fact) { return std::find(keys.begin(), keys.end(), fact.key); };
  std::stable_sort(facts.begin(), facts.end(), [&](const Fact& a, const Fact& b) { return rank(a) < rank(b); });
  const auto rest =
      std::find_if(facts.begin(), facts.end(), [&](const Fact& fact) { return rank(fact) == keys.end(); });
  const auto place = [](const Fact& fact) {
    Places row;
    row.text("name", fact.label);
    row.text("value", fact.text);
    return row;
  };
  places.list("who", std::vector<Fact>(facts.begin(), rest), place);
  places.list("facts", std::vector<Fact>(rest, facts.end()), place);
  places.list("gaps", page.summary.gaps, [](const std::string& gap) { return textPlace("gap", gap); });
  places.list("repeated", page.summary.repeated, [](const std::string& file) { return textPlace("copy", file); });
}

/// @param page has to outlive the writing.
Places sessionPlaces(const PageSession& page, bool isOpen) {
  Places places;
  places.text("name", page.prefix);
  places.text("prefix", page.prefix);
  places.flag("open", isOpen);
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
  Places places;
  places.text("name", page.prefix);
  places.text("from", page.begin ? showTime(*page.begin, page.offset).substr(0, 16) : "without a time");
  places.text("length", page.begin && page.end ? showDuration(*page.end - *page.begin) : "");
  places.text("outcome", std::string(outcomeName(page.judgement().outcome)));
  places.text("severity", std::string(severityName(page.judgement().verdict.severity)));
  places.text("verdict", page.judgement().verdict.text);
  return places;
}

Places filePlaces(const LogSet& logs, std::size_t index) {
  const LogFileInfo& file = logs.files[index];
  Places places;
  places.text("number", std::to_string(index + 1));
  places.text("file", file.name);
  places.text("role", roleName(file.role));
  places.text("lines", std::to_string(file.lines));
  places.text("leftOut", file.rawLeftOut > 0 ? std::to_string(file.rawLeftOut) : "");
  places.list("raw", file.rawLines.size(), [&file](std::size_t i) { return textPlace("line", file.rawLines[i]); });
  return places;
}

}  // namespace

void writeHtmlReport(const LogSet& logs, const PageOptions& options, std::ostream& out) {
  const Session none;
  std::deque<PageSession> pages;  // Newest first.
  for (std::size_t i = logs.sessions.size(); i-- > 0;) {
    pages.push_back(pageSession(logs, logs.sessions[i], logs.sessions.size() > 1 ? 's' + std::to_string(i) : ""));
  }
  if (pages.empty()) {
    pages.push_back(pageSession(logs, none, ""));
  }
  const bool several = pages.size() > 1;
  std::vector<Outcome> outcomes;
  outcomes.reserve(pages.size());
  for (const PageSession& page : pages) {
    outcomes.push_back(page.judgement().outcome);
  }
  Places places = placesOf(options, {"Report.css hash", "Entries.js hash", "Figures.js hash", "Report.js hash"});
  places.text("title", several ? std::to_string(pages.size()) + " sessions of Canvix: " + outcomesText(outcomes)
                               : pages.front().judgement().verdict.text);
  places.flag("several", several);
  places.text("part", several ? "3" : "2");  // The level of headings within a session.
  places.list("overview", pages.size(), [&pages](std::size_t i) { return overviewPlaces(pages[i]); });
  places.list("sessions", pages.size(), [&pages](std::size_t i) { return sessionPlaces(pages[i], i == 0); });
  std::vector<std::string> problems = problemsOf(logs);
  places.flag("problems", !problems.empty());
  places.list("problemItems", std::move(problems),
              [](const std::string& problem) { return textPlace("item", problem); });
  places.list("files", logs.files.size(), [&logs](std::size_t i) { return filePlaces(logs, i); });
  writePage("Report.html", places, out);
}

}  // namespace sentiq
