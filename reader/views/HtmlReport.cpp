#include "reader/views/HtmlReport.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "reader/session/Judgement.h"
#include "reader/views/Chart.h"
#include "reader/views/HtmlAssets.h"
#include "reader/views/HtmlText.h"
#include "reader/views/Summary.h"

namespace sentiq {
namespace {

struct MarkRow {
  Meaning meaning;
  const char* letter;
  const char* name;
};
constexpr MarkRow markRows[] = {
    MarkRow{Meaning::Crash, "C", "Crash"},   MarkRow{Meaning::Hang, "H", "Hang"},
    MarkRow{Meaning::Exit, "E", "Exit"},     MarkRow{Meaning::Sleep, "S", "Sleep"},
    MarkRow{Meaning::Resume, "R", "Resume"}, MarkRow{Meaning::PowerLoss, "P", "Power loss"},
};

// Marker and event, and both logs' exit lines, tell of one thing: what follows within this time is not marked again.
constexpr std::chrono::seconds sameMark{30};

std::vector<ChartMark> marksOf(const Session& session, const SessionSpan& span) {
  std::vector<ChartMark> marks;
  for (const LogEntry& entry : session.entries) {
    const auto* const row = std::find_if(std::begin(markRows), std::end(markRows),
                                         [&](const MarkRow& r) { return r.meaning == entry.meaning; });
    if (row == std::end(markRows) || !entry.time || !span.contains(*entry.time)) {
      continue;
    }
    const bool marked = std::any_of(marks.begin(), marks.end(), [&](const ChartMark& mark) {
      return mark.letter == row->letter && *entry.time - mark.time < sameMark;
    });
    if (!marked) {
      marks.push_back({*entry.time, row->letter, row->name});
    }
  }
  return marks;
}

void writeStatements(const Summary& summary, std::ostream& out) {
  const Statement& first = summary.statements.front();
  out << "<p class=\"outcome " << severityName(first.severity) << "\">" << htmlText(first.text) << "</p>\n<ul>\n";
  for (std::size_t i = 1; i < summary.statements.size(); ++i) {
    const Statement& statement = summary.statements[i];
    out << "<li class=\"" << severityName(statement.severity) << "\">" << htmlText(statement.text) << "</li>\n";
  }
  out << "</ul>\n<dl>\n";
  for (const Fact& fact : summary.facts) {
    out << "<dt>" << htmlText(fact.label) << "</dt><dd>" << htmlText(fact.text) << "</dd>\n";
  }
  out << "</dl>\n";
}

void writeList(std::string_view title, const std::vector<std::string>& items, std::ostream& out) {
  if (items.empty()) {
    return;
  }
  out << "<h2>" << htmlText(title) << "</h2>\n<ul>\n";
  for (const std::string& item : items) {
    out << "<li>" << htmlText(item) << "</li>\n";
  }
  out << "</ul>\n";
}

void writeCharts(const Session& session, const SessionSpan& span, std::ostream& out) {
  out << "<h2>Disk, page file and battery</h2>\n";
  Chart disk{"disk", "Free disk space", "MiB", 0, {}, marksOf(session, span), span.offset};
  Chart pageFile{"page-file", "Free page file", "MiB", 0, {}, disk.marks, span.offset};
  Chart battery{"battery", "Battery", "%", 100, {}, disk.marks, span.offset};
  for (const LogEntry& entry : session.entries) {
    if (!entry.metric) {
      continue;
    }
    const MetricSample& record = session.metrics[*entry.metric];
    disk.points.push_back({record.time.instant, static_cast<double>(record.freeDisk)});
    disk.top = std::max(disk.top, static_cast<double>(record.totalDisk));
    pageFile.points.push_back({record.time.instant, static_cast<double>(record.freeSwap)});
    pageFile.top = std::max(pageFile.top, static_cast<double>(record.totalSwap));
    if (record.battery) {
      battery.points.push_back({record.time.instant, static_cast<double>(*record.battery)});
    }
  }
  for (const Chart* chart : {&disk, &pageFile, &battery}) {
    if (chart->points.empty()) {
      out << "<p>" << htmlText(chart->title) << ": the logs hold no figures.</p>\n";
    } else {
      writeChart(*chart, out);
    }
  }
}

void writeRow(const Session& session, const LogEntry& entry, std::ostream& out) {
  out << "<tr><td class=\"time\">" << (entry.time ? showTime(*entry.time, entry.offset) : "") << "</td><td>"
      << htmlText(session.sourceOf(entry)) << "</td><td class=\"" << severityName(entry.severity) << "\">"
      << severityName(entry.severity) << "</td><td>";
  if (entry.event) {
    const EventRecord& event = session.events[*entry.event];
    out << htmlText(event.provider) << ' ' << event.id;
  }
  out << "</td><td>" << htmlText(entry.what) << "</td></tr>\n";
}

void writeEvents(const Session& session, std::ostream& out) {
  out << "<h2>Events and log lines</h2>\n"
         "<div class=\"search\" hidden><label for=\"search\">Search</label>"
         "<input id=\"search\" type=\"search\" autocomplete=\"off\"> <span id=\"count\" "
         "role=\"status\"></span></div>\n"
         "<div class=\"wide\" role=\"region\" aria-label=\"Events and log lines\" tabindex=\"0\">"
         "<table id=\"events\"><thead><tr><th scope=\"col\">Local time</th><th scope=\"col\">Source</th>"
         "<th scope=\"col\">Severity</th><th scope=\"col\">Provider, id</th><th "
         "scope=\"col\">What</th></tr></thead>"
         "<tbody>\n";
  for (const LogEntry& entry : session.entries) {
    if (!entry.metric) {
      writeRow(session, entry, out);
    }
  }
  out << "</tbody></table></div>\n";
}

void writeRawLines(const LogSet& logs, std::ostream& out) {
  out << "<h2>The logs, decoded</h2>\n";
  for (const LogFileInfo& file : logs.files) {
    out << "<details><summary>" << htmlText(file.name) << " (" << roleName(file.role) << " log, " << file.lines
        << " lines)</summary>\n";
    if (file.rawLeftOut > 0) {
      out << "<p>The first " << file.rawLeftOut
          << " lines are left out here; <code>sentiq-logs decode</code> shows them."
          << "</p>\n";
    }
    out << "<pre tabindex=\"0\">";
    for (const std::string& line : file.rawLines) {
      out << htmlText(line) << '\n';
    }
    out << "</pre></details>\n";
  }
}

}  // namespace

void writeHtmlReport(const LogSet& logs, std::ostream& out) {
  const Session session = logs.sessions.empty() ? Session{} : logs.sessions.back();
  const Summary summary = summarize(logs, session);
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
         "'unsafe-inline'; "
         "script-src 'unsafe-inline'\">\n<title>Canvix session report</title>\n<style>"
      << reportStyle << "</style>\n</head>\n<body>\n<main>\n<h1>Canvix session report</h1>\n";
  writeStatements(summary, out);
  writeCharts(session, sessionSpan(session), out);
  writeList("Gaps of more than 15 s in the records", summary.gaps, out);
  writeList("Missing or damaged", summary.problems, out);
  writeEvents(session, out);
  writeRawLines(logs, out);
  out << "</main>\n<script>" << reportScript << "</script>\n</body>\n</html>\n";
}

}  // namespace sentiq
