#include "reader/views/MetricsTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iomanip>
#include <ostream>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

using Json = nlohmann::ordered_json;

struct Column {
  const char* name;  // With the unit.
  int width;
  Json (*value)(const MetricSample&);
};

Json orNull(const auto& number) {
  return number ? Json(*number) : Json();
}

constexpr std::array columns{
    Column{"time", 30, [](const MetricSample& r) { return Json(isoTime(r.time.instant, r.time.offset)); }},
    Column{"diskFreeMiB", 12, [](const MetricSample& r) { return Json(r.freeDisk); }},
    Column{"diskTotalMiB", 13, [](const MetricSample& r) { return Json(r.totalDisk); }},
    Column{"pageFileFreeMiB", 16, [](const MetricSample& r) { return Json(r.freeSwap); }},
    Column{"pageFileTotalMiB", 17, [](const MetricSample& r) { return Json(r.totalSwap); }},
    Column{"batteryPercent", 15, [](const MetricSample& r) { return orNull(r.battery); }},
    Column{"processId", 10, [](const MetricSample& r) { return Json(r.processId); }},
    Column{"memoryMiB", 10, [](const MetricSample& r) { return orNull(r.memory); }},
    Column{"cpuPercent", 11, [](const MetricSample& r) { return orNull(r.cpuUsage); }},
    Column{"threads", 8, [](const MetricSample& r) { return orNull(r.threads); }},
    Column{"appRunTime", 14, [](const MetricSample& r) { return Json(cleanText(r.appRunTime)); }},
    Column{"systemUpTime", 14, [](const MetricSample& r) { return Json(cleanText(r.systemUpTime)); }},
    Column{"status", 8, [](const MetricSample& r) { return Json(cleanText(r.status)); }},
};

std::string plainText(const Json& value) {
  return value.is_null() ? std::string{} : value.is_string() ? value.get<std::string>() : value.dump();
}

std::string csvField(const Json& value) {
  std::string text = plainText(value);
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  for (std::size_t at = 0; (at = text.find('"', at)) != std::string::npos; at += 2) {
    text.insert(at, 1, '"');
  }
  return '"' + text + '"';
}

// Text stands in columns; CSV has the line ends of RFC 4180's readers and writers on every system, which take LF.
void writeRow(const Json& row, TableForm form, std::ostream& out) {
  if (form == TableForm::Json) {
    out << row.dump() << '\n';
    return;
  }
  for (const Column& column : columns) {
    const Json& value = row[column.name];
    const bool first = &column == &columns.front();
    if (form == TableForm::Csv) {
      out << (first ? "" : ",") << csvField(value);
    } else {
      out << (first ? std::left : std::right) << std::setw(column.width) << (value.is_null() ? "-" : plainText(value))
          << ' ';
    }
  }
  out << '\n';
}

}  // namespace

void writeMetrics(const LogSet& logs, TableForm form, std::ostream& out) {
  Json row;
  if (form != TableForm::Json) {
    for (const Column& column : columns) {
      row[column.name] = column.name;
    }
    writeRow(row, form, out);
  }
  for (const Session& session : logs.sessions) {
    for (const LogEntry& entry : session.entries) {
      if (entry.metric) {
        for (const Column& column : columns) {
          row[column.name] = column.value(session.metrics[*entry.metric]);
        }
        writeRow(row, form, out);
      }
    }
  }
}

}  // namespace sentiq
