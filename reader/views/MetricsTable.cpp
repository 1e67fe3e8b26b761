#include "reader/views/MetricsTable.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "reader/views/JudgementJson.h"
#include "reader/views/TextStyle.h"

namespace sentiq {
namespace {

using Json = nlohmann::ordered_json;

struct Column {
  const char* name;   // For scripts, with the unit.
  const char* label;  // For the eye.
  int place;          // There, from the left: what matters most stands first, and is left out last.
  std::size_t width;
  Json (*value)(const MetricSample&);
};

Json elapsed(const std::optional<Ticks>& duration) {
  return duration ? Json(showElapsed(*duration)) : Json();
}

constexpr Column columns[] = {
    {"time", "local time", 0, 19, [](const MetricSample& r) { return Json(isoTime(r.time.instant, r.time.offset)); }},
    {"diskFreeMiB", "disk MiB", 1, 9, [](const MetricSample& r) { return Json(r.freeDisk); }},
    {"diskTotalMiB", "of", 9, 9, [](const MetricSample& r) { return Json(r.totalDisk); }},
    {"pageFileFreeMiB", "page file MiB", 2, 13, [](const MetricSample& r) { return Json(r.freeSwap); }},
    {"pageFileTotalMiB", "of", 10, 9, [](const MetricSample& r) { return Json(r.totalSwap); }},
    {"batteryPercent", "battery %", 3, 9, [](const MetricSample& r) { return orNull(r.battery); }},
    {"processId", "process", 8, 8, [](const MetricSample& r) { return Json(r.processId); }},
    {"memoryMiB", "memory MiB", 4, 10, [](const MetricSample& r) { return orNull(r.memory); }},
    {"cpuPercent", "cpu %", 6, 5, [](const MetricSample& r) { return orNull(r.cpuUsage); }},
    {"threads", "threads", 5, 7, [](const MetricSample& r) { return orNull(r.threads); }},
    {"appRunTime", "run time", 7, 11, [](const MetricSample& r) { return elapsed(r.ran); }},
    {"systemUpTime", "system up", 11, 11, [](const MetricSample& r) { return elapsed(r.up); }},
    {"status", "status", 12, 8, [](const MetricSample& r) { return Json(harmlessLine(r.status)); }},
};

std::string plainText(const Json& value) {
  return value.is_null() ? std::string{} : value.is_string() ? value.get<std::string>() : value.dump();
}

// A spreadsheet must not take the text of a log for a formula.
std::string csvField(const Json& value) {
  std::string text = plainText(value);
  if (value.is_string() && !text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos) {
    text.insert(0, 1, '\'');
  }
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  for (std::size_t at = 0; (at = text.find('"', at)) != std::string::npos; at += 2) {
    text.insert(at, 1, '"');
  }
  return '"' + text + '"';
}

std::vector<const Column*> columnsWithin(std::size_t width) {
  std::vector<const Column*> wanted;
  for (const Column& column : columns) {
    wanted.push_back(&column);
  }
  std::sort(wanted.begin(), wanted.end(), [](const Column* a, const Column* b) { return a->place < b->place; });
  std::size_t taken = 0;
  const auto tooMany = std::find_if(wanted.begin(), wanted.end(), [&](const Column* column) {
    taken += column->width + (taken == 0 ? 0 : 1);
    return width != 0 && taken > width;
  });
  wanted.erase(tooMany, wanted.end());
  return wanted;
}

std::string textCell(const Column& column, const MetricSample& record) {
  if (column.place == 0) {
    return showTime(record.time.instant, record.time.offset).substr(0, column.width);
  }
  const Json value = column.value(record);
  return value.is_null() ? "-" : plainText(value);
}

// In columns, the first one from the left, figures from the right.
std::string textRow(const std::vector<const Column*>& wanted, const auto& cellOf) {
  std::string row;
  for (const Column* const column : wanted) {
    const std::string cell = cellOf(*column);
    row += row.empty() ? padded(cell, column->width) : ' ' + padded(column->width, cell);
  }
  return row + '\n';
}

std::string csvRow(const auto& cellOf) {
  std::string row;
  for (const Column& column : columns) {
    row.append(row.empty() ? "" : ",").append(cellOf(column));
  }
  return row + '\n';  // Which readers of RFC 4180 take on every system.
}

std::string jsonRow(const MetricSample& record) {
  Json object;
  for (const Column& column : columns) {
    object[column.name] = column.value(record);
  }
  return dumped(object) + '\n';
}

void visitRecords(const LogSet& logs, const auto& visit) {
  for (const Session& session : logs.sessions) {
    for (const LogEntry& entry : session.entries) {
      if (entry.metric) {
        visit(session.recordOf(entry));
      }
    }
  }
}

void writeText(const LogSet& logs, std::size_t width, std::ostream& out) {
  const std::vector<const Column*> wanted = columnsWithin(width);
  out << textRow(wanted, [](const Column& column) { return std::string(column.label); });
  visitRecords(logs, [&](const MetricSample& record) {
    out << textRow(wanted, [&](const Column& column) { return textCell(column, record); });
  });
  if (wanted.size() < std::size(columns)) {
    out << std::size(columns) - wanted.size() << " columns do not fit; a wider terminal, --csv and --json show them\n";
  }
}

}  // namespace

void writeMetrics(const LogSet& logs, TableForm form, std::size_t width, std::ostream& out) {
  switch (form) {
    case TableForm::Text:
      writeText(logs, width, out);
      break;
    case TableForm::Csv:
      out << csvRow([](const Column& column) { return std::string(column.name); });
      visitRecords(logs, [&](const MetricSample& record) {
        out << csvRow([&](const Column& column) { return csvField(column.value(record)); });
      });
      break;
    case TableForm::Json:
      visitRecords(logs, [&](const MetricSample& record) { out << jsonRow(record); });
      break;
  }
}

}  // namespace sentiq
