#include "reader/views/EntryTable.h"

#include <ostream>
#include <unordered_map>
#include <vector>

#include "reader/views/HtmlText.h"

namespace sentiq {
namespace {

constexpr std::size_t mostRows = 100;  // Of one table, so that the browser can leave out those that are not in sight.

struct Row {
  std::size_t index;                   // Of the entry.
  std::vector<const LogEntry*> older;  // Of the same kind.
};

// A day, or as much of it as one table holds.
struct Day {
  std::string title;
  bool beforeSession;
  std::vector<Row> rows;
};

std::string localTime(const LogEntry& entry) {
  return entry.time ? showTime(*entry.time, entry.offset) : std::string(23, ' ');
}

std::string providerOf(const Session& session, const LogEntry& entry) {
  return entry.event ? session.eventOf(entry).provider + ' ' + std::to_string(session.eventOf(entry).id)
                     : std::string{};
}

std::string kindOf(const Session& session, const LogEntry& entry) {
  const std::string provider = providerOf(session, entry);
  return session.sourceOf(entry) + '\n' + std::string(severityName(entry.severity)) + '\n' +
         (provider.empty() ? entry.what : provider);
}

std::vector<Day> daysOf(const Session& session, const SessionSpan& span, const std::set<std::size_t>& linked) {
  std::vector<Day> days;
  std::unordered_map<std::string, std::size_t> kinds;  // The row of each within the last day.
  for (std::size_t i = session.entries.size(); i-- > 0;) {
    const LogEntry& entry = session.entries[i];
    if (entry.metric) {
      continue;
    }
    const bool before = entry.time && span.begin && *entry.time < *span.begin;
    const std::string title =
        (entry.time ? localTime(entry).substr(0, 10) : "Without a time") + (before ? ", before the session" : "");
    if (days.empty() || days.back().title != title || days.back().rows.size() == mostRows) {
      days.push_back({title, before, {}});
      kinds.clear();
    }
    std::vector<Row>& rows = days.back().rows;
    // What means something for the session stands by itself, each time.
    const bool isNew = entry.meaning != Meaning::Other || kinds.try_emplace(kindOf(session, entry), rows.size()).second;
    if (isNew || linked.contains(i)) {
      rows.push_back({i, {}});
    } else {
      rows[kinds[kindOf(session, entry)]].older.push_back(&entry);
    }
  }
  return days;
}

void writeRow(const Session& session, const Row& row, const std::string& id, std::ostream& out) {
  const LogEntry& entry = session.entries[row.index];
  out << "<tr";
  if (!id.empty()) {
    out << " id=\"" << id << '"';
  }
  if (entry.severity != Severity::Info) {
    out << " class=\"" << severityName(entry.severity) << '"';
  }
  if (!row.older.empty()) {
    out << " data-more=\"" << row.older.size() << '"';
  }
  out << "><td class=\"time\">" << localTime(entry).substr(11) << "<td>" << htmlText(session.sourceOf(entry))
      << "<td class=\"severity\">" << severityName(entry.severity) << "<td>" << htmlText(providerOf(session, entry))
      << "<td>" << htmlText(entry.what);
  if (!row.older.empty()) {
    out << "<details open><summary>" << row.older.size() << " more, the first at "
        << localTime(*row.older.back()).substr(11) << "</summary>";
    for (const LogEntry* const older : row.older) {
      out << localTime(*older).substr(11) << (older->what == entry.what ? "" : ' ' + htmlText(older->what)) << '\n';
    }
    out << "</details>";
  }
  out << '\n';
}

}  // namespace

std::string entryAnchor(const std::string& prefix, std::size_t entry) {
  return prefix + 'e' + std::to_string(entry);
}

void writeEntries(const Session& session, const SessionSpan& span, const std::set<std::size_t>& linked,
                  const std::string& prefix, std::ostream& out) {
  const std::vector<Day> days = daysOf(session, span, linked);
  out << "<h2>Events and log lines, newest first</h2>\n<div class=\"entries\">\n"
         "<div class=\"controls\" hidden><label>Search <input type=\"search\" autocomplete=\"off\"></label>"
         "<label>Severity <select><option value=\"0\">all</option><option value=\"1\">notice and above</option>"
         "<option value=\"2\">warning and above</option><option value=\"3\">error</option></select></label>"
         "<button type=\"button\" aria-pressed=\"false\">Older, too</button>"
         "<span role=\"status\"></span></div>\n";
  for (const Day& day : days) {
    out << "<section class=\"day" << (day.beforeSession ? " older" : "") << "\"><h3>" << day.title
        << "</h3><table><thead><tr><th scope=\"col\">Local time<th scope=\"col\">Source<th scope=\"col\">Severity"
           "<th scope=\"col\">Provider, id<th scope=\"col\">What<tbody>\n";
    for (const Row& row : day.rows) {
      writeRow(session, row, linked.contains(row.index) ? entryAnchor(prefix, row.index) : "", out);
    }
    out << "</table></section>\n";
  }
  out << "</div>\n";
}

}  // namespace sentiq
