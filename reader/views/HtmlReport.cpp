#include "reader/views/HtmlReport.h"

#include <cstddef>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "logging/LogEncoding.h"
#include "reader/judgement/Judgement.h"
#include "reader/views/Chart.h"
#include "reader/views/EntryTable.h"
#include "reader/views/HtmlText.h"
#include "reader/views/Strip.h"
#include "reader/views/Summary.h"
#include "reader/views/page/PageAssets.h"

namespace sentiq {
namespace {

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

// The verdict, and what else there is to say.
void writeStatements(const std::vector<Statement>& statements, const std::string& prefix, std::ostream& out) {
  const auto write = [&](const char* element, const char* style, const Statement& statement) {
    out << '<' << element << " class=\"" << style << severityName(statement.severity) << "\">"
        << htmlText(statement.text);
    if (statement.entry) {
      out << " <a href=\"#" << entryAnchor(prefix, *statement.entry) << "\">in the table</a>";
    }
    out << "</" << element << ">\n";
  };
  write("p", "outcome ", statements.front());
  out << "<ul class=\"statements\">\n";
  for (std::size_t i = 1; i < statements.size(); ++i) {
    write("li", "", statements[i]);
  }
  out << "</ul>\n";
}

/// @param prefix what the names of the session's entries in the page begin with.
void writeSession(const LogSet& logs, const Session& session, const std::string& prefix, std::ostream& out) {
  const Summary summary = summarize(logs, session);
  const SessionSpan span = sessionSpan(session);
  writeStatements(summary.statements, prefix, out);
  std::set<std::size_t> linked = writeStrip(session, span, summary.judgement, prefix, out);
  for (const Statement& statement : summary.statements) {
    if (statement.entry) {
      linked.insert(*statement.entry);
    }
  }
  out << "<h2>Figures</h2>\n";
  writeCharts(session, marksOf(session, span, summary.judgement), out);
  writeList("Gaps of more than 15 s in the records", summary.gaps, out);
  out << "<h2>The session</h2>\n<dl>\n";
  for (const Fact& fact : summary.facts) {
    out << "<dt>" << htmlText(fact.label) << "</dt><dd>" << htmlText(fact.text) << "</dd>\n";
  }
  out << "</dl>\n";
  writeEntries(session, span, linked, prefix, out);
}

void writeSessions(const LogSet& logs, std::ostream& out) {
  const std::vector<Session>& sessions = logs.sessions;
  if (sessions.size() < 2) {
    writeSession(logs, sessions.empty() ? Session{} : sessions.front(), "", out);
    return;
  }
  const auto name = [&](std::size_t i) { return htmlText(sessions[i].id.empty() ? "without a name" : sessions[i].id); };
  out << "<p>" << sessions.size() << " sessions, newest first:</p>\n<ol>\n";
  for (std::size_t i = sessions.size(); i-- > 0;) {
    const Statement verdict = judge(sessions[i]).verdict;
    out << "<li class=\"" << severityName(verdict.severity) << "\"><a href=\"#s" << i << "\">" << name(i)
        << "</a>: " << htmlText(verdict.text) << "</li>\n";
  }
  out << "</ol>\n";
  for (std::size_t i = sessions.size(); i-- > 0;) {
    out << "<details open class=\"session" << (i + 1 == sessions.size() ? " newest" : "") << "\"><summary id=\"s" << i
        << "\">Session " << name(i) << "</summary>\n";
    writeSession(logs, sessions[i], 's' + std::to_string(i), out);
    out << "</details>\n";
  }
}

void writeRawLines(const LogSet& logs, std::ostream& out) {
  out << "<h2>The logs, decoded</h2>\n";
  for (const LogFileInfo& file : logs.files) {
    out << "<details><summary>" << htmlText(file.name) << " (" << roleName(file.role) << " log, " << file.lines
        << " lines)</summary>\n";
    if (file.rawLeftOut > 0) {
      out << "<p>The first " << file.rawLeftOut
          << " lines are left out here; <code>sentiq-logs decode</code> shows them.</p>\n";
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
  out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'sha256-"
      << base64Encode(reportStyleDigest) << "'; script-src 'sha256-" << base64Encode(reportScriptDigest)
      << "'\">\n<title>Canvix session report</title>\n<style>" << reportStyle << "</style>\n<script>" << reportScript
      << "</script>\n</head>\n<body>\n<main>\n<h1>Canvix session report</h1>\n";
  writeSessions(logs, out);
  writeList("Missing or damaged", summarize(logs, Session{}).problems, out);
  writeRawLines(logs, out);
  out << "</main>\n</body>\n</html>\n";
}

}  // namespace sentiq
