// Every command but decode on any bytes: one line for each entry, JSON that is JSON, a page that is whole.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include <nlohmann/json.hpp>

#include "reader/console/Console.h"
#include "reader/judgement/Judgement.h"
#include "reader/judgement/Outcome.h"
#include "reader/session/LogSet.h"
#include "reader/views/HtmlReport.h"
#include "reader/views/MetricsTable.h"
#include "reader/views/Summary.h"
#include "reader/views/Timeline.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/TestFiles.h"

static void requireJsonLines(const std::string& text, std::size_t lines) {
  std::istringstream in(text);
  for (std::string line; std::getline(in, line); --lines) {
    require(nlohmann::json::accept(line));
  }
  require(lines == 0);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace sentiq;
  static const test::TempFolder folder;
  const std::filesystem::path file = folder / "a.log";
  std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const auto read = [&](Keep keep) { return readLogs({{textFromPath(file)}}, keep, false); };
  const LogSet logs = read(Keep::RawLines);
  for (const Session& session : read(Keep::Judgement).sessions) {
    require(!outcomeWord(judge(session).outcome).empty());
  }

  std::ostringstream text, json, records, page;
  TimelineOptions options;
  options.records = true;
  writeTimeline(logs, options, text);
  options.json = true;
  writeTimeline(logs, options, json);
  const std::string lines = text.str();
  std::size_t entries = 0, metrics = 0;
  for (const Session& session : logs.sessions) {
    entries += session.entries.size();
    metrics += session.metrics.size();
    requireJsonLines(summaryJson(logs, session), 1);
  }
  require(logs.sessions.empty() || !summaryText(logs, /*colour=*/true, /*width=*/80).empty());
  require(static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n')) == entries);
  requireJsonLines(json.str(), entries);

  writeMetrics(logs, TableForm::Text, /*width=*/80, text);
  writeMetrics(logs, TableForm::Json, /*width=*/0, records);
  requireJsonLines(records.str(), metrics);

  writeHtmlReport(logs, {}, page);
  require(page.str().ends_with("</html>\n"));
  return 0;
}
