#include "reader/events/EventRecord.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include <pugixml.hpp>

#include "reader/events/CodeWords.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

constexpr std::size_t longestValue = 8192;

// The names of fields that older systems, and classic providers on all systems, leave without.
struct Layout {
  int id;
  std::string_view provider;
  std::string_view names;
};
constexpr Layout layouts[] = {
    Layout{1000, "Application Error",
           "AppName AppVersion AppTimeStamp ModuleName ModuleVersion ModuleTimeStamp ExceptionCode FaultingOffset "
           "ProcessId ProcessCreationTime AppPath ModulePath IntegratorReportId PackageFullName PackageRelativeAppId"},
    Layout{1002, "Application Hang",
           "AppName AppVersion ProcessId StartTime TerminationTime ExeFileName ReportId PackageFullName "
           "PackageRelativeAppId HangType"},
    Layout{1001, errorReporting,
           "Bucket BucketType EventName Response CabId P1 P2 P3 P4 P5 P6 P7 P8 P9 P10 AttachedFiles StorePath "
           "AnalysisSymbol Rechecking ReportId ReportStatus HashedBucket CabGuid"},
    Layout{1001, "BugCheck", "param1 param2 param3"},
    Layout{1074, "User32", "param1 param2 param3 param4 param5 param6 param7"},
    Layout{6008, "EventLog", "Time Date"},
    Layout{4101, "Display", "Driver"},
};

// Which parameters of an error report are the fields of a crash, by the beginning of the report's kind; the first row
// that fits counts.
constexpr std::string_view crashFields[] = {"AppName",       "AppVersion",    "ModuleName",
                                            "ModuleVersion", "ExceptionCode", "FaultingOffset"};
struct ReportLayout {
  std::string_view kind;
  std::string_view parameters[std::size(crashFields)];
};
constexpr ReportLayout reportLayouts[] = {
    ReportLayout{"BEX", {"P1", "P2", "P4", "P5", "P8", "P7"}},
    ReportLayout{"CLR20r3", {"P1", "P2", "P4", "P5", "P9"}},
    ReportLayout{"InPageError", {"P1", "P2", "", "", "P4"}},
    ReportLayout{"MoBEX", {"P1", "P3", "P5", "P6", "P9", "P8"}},
    ReportLayout{"Mo", {"P1", "P3", "P5", "P6", "P8", "P9"}},  // Packaged applications.
    ReportLayout{"", {"P1", "P2", "P4", "P5", "P7", "P8"}},
};

void nameFields(EventRecord& record) {
  const auto* const layout = std::find_if(std::begin(layouts), std::end(layouts), [&](const Layout& candidate) {
    return candidate.id == record.id && equalIgnoringCase(candidate.provider, record.provider);
  });
  std::string_view names = layout != std::end(layouts) ? layout->names : std::string_view{};
  for (auto& [name, value] : record.data) {
    const std::size_t end = std::min(names.find(' '), names.size());
    if (name.empty()) {
      name = names.substr(0, end);
    }
    names.remove_prefix(std::min(end + 1, names.size()));
  }
}

// Takes every value within the element; the names of the elements on the way stand before its own.
void readData(const pugi::xml_node& element, const std::string& names, int depth, EventRecord& record) {
  constexpr int deepest = 8;
  if (element.type() != pugi::node_element) {
    return;
  }
  const bool isField = element.name() == std::string_view("Data");
  const std::string name =
      names + shortText(isField ? element.attribute("Name").value() : element.name(), longestValue);
  if (depth == deepest || element.first_child().type() != pugi::node_element) {
    record.data.emplace_back(name, shortText(element.text().get(), longestValue));
    return;
  }
  for (const pugi::xml_node& child : element.children()) {
    readData(child, name + '.', depth + 1, record);
  }
}

// EventData holds the fields directly, UserData within one element of the provider's own; what else there is (what the
// system rendered or could not process, debug data) keeps its name.
void readAllData(const pugi::xml_node& event, EventRecord& record) {
  for (const pugi::xml_node& section : event.children()) {
    const std::string_view name = section.name();
    if (name == "EventData" || name == "UserData") {
      for (const pugi::xml_node& field : (name == "EventData" ? section : section.first_child()).children()) {
        readData(field, "", 0, record);
      }
    } else if (name != "System") {
      readData(section, "", 0, record);
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

const std::string& EventRecord::field(std::string_view name) const {
  static const std::string none;
  const auto found = std::find_if(data.begin(), data.end(), [&](const auto& named) { return named.first == name; });
  if (found != data.end()) {
    return found->second;
  }
  const auto* const crashField = std::find(std::begin(crashFields), std::end(crashFields), name);
  if (crashField == std::end(crashFields) || !isReport()) {
    return none;
  }
  const auto* const layout = std::find_if(std::begin(reportLayouts), std::end(reportLayouts), [&](const auto& row) {
    return beginsIgnoringCase(field("EventName"), row.kind);
  });
  return field(layout->parameters[crashField - std::begin(crashFields)]);
}

bool EventRecord::isReport() const {
  return equalIgnoringCase(provider, errorReporting);
}

bool EventRecord::isOfCanvix() const {
  // A report of a packaged application begins with the name of the package.
  return equalIgnoringCase(field("AppName"), "canvix.exe") ||
         (field("EventName").starts_with("Mo") && beginsIgnoringCase(field("AppName"), "canvix"));
}

std::string EventRecord::key() const {
  const auto ticks = time ? time->time_since_epoch().count() : 0;
  return channel + '\n' + provider + '\n' + std::to_string(recordId) + '\n' + std::to_string(ticks);
}

std::optional<EventRecord> parseEvent(std::string_view xml) {
  pugi::xml_document document;
  if (!document.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8)) {
    return std::nullopt;
  }
  const pugi::xml_node event = document.child("Event");
  const pugi::xml_node system = event.child("System");
  if (!system.child("EventID")) {
    return std::nullopt;
  }
  EventRecord record;
  if (const auto time = parseTime(system.child("TimeCreated").attribute("SystemTime").value())) {
    record.time = time->instant;
  }
  record.channel = shortText(system.child("Channel").text().get(), longestValue);
  record.provider = shortText(system.child("Provider").attribute("Name").value(), longestValue);
  record.id = system.child("EventID").text().as_int();
  record.level = system.child("Level").text().as_int();
  record.recordId = system.child("EventRecordID").text().as_ullong();
  readAllData(event, record);
  nameFields(record);
  if (equalIgnoringCase(record.provider, "Application Hang") && record.field("HangType").empty()) {
    const std::string kind = textOfBinary(record.field("Binary"));
    record.data.emplace_back("HangType", kind == "Unknown" ? "" : kind);
  }
  return record;
}

}  // namespace sentiq
