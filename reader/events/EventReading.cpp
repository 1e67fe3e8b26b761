#include <algorithm>
#include <iterator>
#include <string>

#include <pugixml.hpp>

#include "reader/events/CodeWords.h"
#include "reader/events/EventJson.h"
#include "reader/events/EventPattern.h"
#include "reader/events/EventRecord.h"
#include "reader/events/EventTable.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// The names of fields that older systems, and classic providers on all systems, leave without.
struct Layout {
  int id;
  std::string_view provider;
  std::string_view names;  // With bars between.
};
constexpr Layout layouts[] = {
    {1000, "Application Error",
     "AppName|AppVersion|AppTimeStamp|ModuleName|ModuleVersion|ModuleTimeStamp|ExceptionCode|FaultingOffset|ProcessId|"
     "ProcessCreationTime|AppPath|ModulePath|IntegratorReportId|PackageFullName|PackageRelativeAppId"},
    {1002, "Application Hang",
     "AppName|AppVersion|ProcessId|StartTime|TerminationTime|ExeFileName|ReportId|PackageFullName|"
     "PackageRelativeAppId|HangType"},
    {1001, "Windows Error Reporting",
     "Bucket|BucketType|EventName|Response|CabId|P1|P2|P3|P4|P5|P6|P7|P8|P9|P10|AttachedFiles|StorePath|"
     "AnalysisSymbol|Rechecking|ReportId|ReportStatus|HashedBucket|CabGuid"},
    {1023, ".NET Runtime", "Text"},
    {1026, ".NET Runtime", "Text"},
    {1001, "BugCheck", "param1|param2|param3"},
    {1074, "User32", "param1|param2|param3|param4|param5|param6|param7"},
    {6008, "EventLog", "Time|Date"},
    {6009, "EventLog", "WindowsVersion|BuildNumber|ServicePack|ProcessorKind"},
    {4101, "Display", "Driver"},
    {1033, "MsiInstaller", "ProductName|ProductVersion|ProductLanguage|Status|Manufacturer"},
    {1034, "MsiInstaller", "ProductName|ProductVersion|ProductLanguage|Status|Manufacturer"},
    {11707, "MsiInstaller", "Message"},
    {11724, "MsiInstaller", "Message"},
};

static_assert(std::none_of(std::begin(layouts), std::end(layouts),
                           [](const Layout& layout) {
                             return anyPart(layout.names, [](std::string_view name) { return !fieldNamed(name); });
                           }),
              "a layout names a field that there is not");

std::string_view layoutOf(std::string_view provider, int id) {
  const auto* const layout = std::find_if(std::begin(layouts), std::end(layouts), [&](const Layout& candidate) {
    return candidate.id == id && equalIgnoringCase(candidate.provider, provider);
  });
  return layout != std::end(layouts) ? layout->names : std::string_view{};
}

// Puts every value within the element into the text; the names of the elements on the way stand before its own.
// @param layout of the values that have not been read.
void readFields(const pugi::xml_node& element, std::string_view around, int depth, std::string_view& layout,
                EventText& text) {
  constexpr int deepest = 8;
  if (element.type() != pugi::node_element) {
    return;
  }
  const bool isField = element.name() == std::string_view("Data");
  std::string_view name = isField ? element.attribute("Name").value() : element.name();
  std::string nested;
  if (!around.empty()) {
    name = nested.append(around).append(1, '.').append(name);
  }
  if (depth == deepest || element.first_child().type() != pugi::node_element) {
    const std::string_view given = nextPart(layout);
    text.addField(name.empty() ? given : name, element.text().get());
    return;
  }
  for (const pugi::xml_node& child : element.children()) {
    readFields(child, name, depth + 1, layout, text);
  }
}

// EventData holds the fields directly, UserData within one element of the provider's own; what else there is (what the
// system rendered or could not process, debug data) keeps its name.
void readAllFields(const pugi::xml_node& event, std::string_view layout, EventText& text) {
  for (const pugi::xml_node& section : event.children()) {
    const std::string_view name = section.name();
    if (name == "EventData" || name == "UserData") {
      for (const pugi::xml_node& field : (name == "EventData" ? section : section.first_child()).children()) {
        readFields(field, "", 0, layout, text);
      }
    } else if (name != "System") {
      readFields(section, "", 0, layout, text);
    }
  }
}

// Older systems tell the kind of a hang only as the bytes of a text in UTF-16.
std::string textOfBinary(std::string_view digits) {
  std::string text;
  for (; digits.size() >= 4; digits.remove_prefix(4)) {
    const auto low = parseHex(digits.substr(0, 2));
    if (!low || *low < 0x20 || *low > 0x7E || digits.substr(2, 2) != "00") {
      break;
    }
    text += static_cast<char>(*low);
  }
  return text;
}

}  // namespace

std::optional<EventRecord> readEvent(std::string_view json) {
  std::optional<std::string> xml = xmlOfEvent(json);
  pugi::xml_document document;
  if (!xml || !document.load_buffer_inplace(xml->data(), xml->size(), pugi::parse_default, pugi::encoding_utf8)) {
    return std::nullopt;
  }
  const pugi::xml_node event = document.child("Event");
  const pugi::xml_node system = event.child("System");
  const pugi::xml_node id = system.child("EventID");
  if (!id) {
    return std::nullopt;
  }
  EventRecord record;
  if (const auto time = parseTime(system.child("TimeCreated").attribute("SystemTime").value())) {
    record.time = time->instant;
  }
  record.id = id.text().as_int();
  record.level = system.child("Level").text().as_int();
  record.recordId = system.child("EventRecordID").text().as_ullong();
  EventText text;
  text.addHeader(system.child("Channel").text().get());
  text.addHeader(system.child("Provider").attribute("Name").value());
  text.addHeader(system.child("Computer").text().get());
  text.addHeader(system.child("Security").attribute("UserID").value());
  record.text_ = std::move(text);
  readAllFields(event, layoutOf(record.provider(), record.id), record.text_);
  if (equalIgnoringCase(record.provider(), "Application Hang") && record.text_.field(Field::HangType).empty()) {
    const std::string kind = textOfBinary(record.text_.field(Field::Binary));
    record.text_.addField(fieldName(Field::HangType), kind == "Unknown" ? "" : kind);
  }
  record.text_.shrink();
  record.row_ =
      findRow(record.provider(), record.id, record.level, [&](Field field) { return record.text_.field(field); });
  record.meaning = record.row_ != nullptr ? record.row_->meaning : Meaning::Other;
  record.severity = record.row_ != nullptr ? record.row_->severity : severityOfLevel(record.level);
  // Other programs fail, too: that is worth a line but is not what the logs are about.
  if (record.row_ != nullptr && record.row_->isOfProgram() && !record.isOfCanvix()) {
    record.meaning = Meaning::Other;
    record.severity = std::min(record.severity, Severity::Warning);
  }
  return record;
}

}  // namespace sentiq
