// Events as the program copies them, for the tests of what they mean.
#pragma once

#include <nlohmann/json.hpp>

#include "reader/events/EventRecord.h"
#include "tests/support/Test.h"

namespace sentiq {

inline const std::string kernelPower = "Microsoft-Windows-Kernel-Power";

inline std::string eventJson(const std::string& xml) {
  return R"({"xmlData":)" + nlohmann::json(xml).dump() + '}';
}

struct SampleEvent {
  std::string provider;
  int id = 0;
  Lines fields;  // "Name=value", or the value alone when the event leaves the field unnamed.
  std::string time = "2025-01-31T12:30:00.5Z";
  int level = 2;
  std::string userData = {};  // XML instead of the fields.

  std::string xml() const {
    std::string data;
    for (const std::string& field : fields) {
      const std::size_t equals = field.find('=');
      const bool named = equals != std::string::npos;
      data += (named ? "<Data Name='" + field.substr(0, equals) + "'>" : "<Data>") +
              field.substr(named ? equals + 1 : 0) + "</Data>";
    }
    data = userData.empty() ? "<EventData>" + data + "</EventData>" : "<UserData>" + userData + "</UserData>";
    return "<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System><Provider Name='" + provider +
           "'/><EventID Qualifiers='0'>" + std::to_string(id) + "</EventID><Level>" + std::to_string(level) +
           "</Level><TimeCreated SystemTime='" + time +
           "'/><EventRecordID>7</EventRecordID><Channel>System</Channel><Computer>PC</Computer>"
           "<Security UserID='S-1-5-18'/></System>" +
           data + "</Event>";
  }
  std::string json() const { return eventJson(xml()); }
  EventRecord read() const { return readEvent(json()).value(); }
};

/// An error report of a kind, with its parameters P1, P2 and so on.
inline SampleEvent report(const std::string& kind, const Lines& parameters) {
  SampleEvent event{"Windows Error Reporting",
                    1001,
                    {"Bucket=1", "EventName=" + kind, "StorePath=C:\\Report",
                     "AttachedFiles=\n\\\\?\\C:\\a.tmp.mdmp&#13;\nC:\\b.xml\nC:\\c.dmp", "ReportId=r-1"}};
  for (const std::string& parameter : parameters) {
    event.fields.push_back("P" + std::to_string(event.fields.size() - 4) + '=' + parameter);
  }
  return event;
}

inline Instant at(const std::string& time) {
  return parseTime(time).value().instant;
}

}  // namespace sentiq
