#include "reader/session/EventTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "reader/session/EventRecord.h"

namespace sentiq {
namespace {

// {name} is a field by its name, {3} by its place; {, |3} is a field that may be missing, with what stands before it.
// Several providers use the same ids, so each row names its own. The first row that fits counts.
struct EventRow {
  int id;
  std::string_view provider;
  Meaning meaning;
  Severity severity;
  std::string_view words;
  std::string_view report = {};  // What the name of an error report begins with.
};

constexpr std::string_view kernelPower = "Microsoft-Windows-Kernel-Power";
constexpr std::string_view kernelGeneral = "Microsoft-Windows-Kernel-General";

constexpr EventRow eventRows[] = {
    EventRow{1000, "Application Error", Meaning::Crash, Severity::Error,
             "{0} {1} crashed in {3} {4}: exception {6} at offset {7}"},
    EventRow{1002, "Application Hang", Meaning::Hang, Severity::Error, "{0} {1} stopped responding and was closed"},
    EventRow{1001, "Windows Error Reporting", Meaning::HangReport, Severity::Error,
             "Error report {2}: {5} {6} stopped responding", "AppHang"},
    EventRow{1001, "Windows Error Reporting", Meaning::Other, Severity::Notice,
             "Error report {2}: {5} {6}{, |8}{, |11}{ |12}"},
    EventRow{1001, "Microsoft-Windows-WER-SystemErrorReporting", Meaning::SystemCrash, Severity::Error,
             "The machine restarted after a bugcheck: {0}, dump {1}"},
    EventRow{1001, "BugCheck", Meaning::SystemCrash, Severity::Error,
             "The machine restarted after a bugcheck: {0}, dump {1}"},
    EventRow{41, kernelPower, Meaning::PowerLoss, Severity::Error,
             "The machine restarted without shutting down first (bugcheck code {BugcheckCode}, asleep "
             "{SleepInProgress}, power button {PowerButtonTimestamp})"},
    EventRow{6008, "EventLog", Meaning::PowerLoss, Severity::Error, "The shutdown at {0} on {1} was unexpected"},
    EventRow{1074, "User32", Meaning::ShutdownBegun, Severity::Warning, "{0} began a {4} for {6}: {2}{, |5}"},
    EventRow{109, kernelPower, Meaning::ShutdownBegun, Severity::Notice,
             "The system began a shutdown or restart (action {0}, event {1}, reason {2})"},
    EventRow{6006, "EventLog", Meaning::ShutdownDone, Severity::Notice, "The event log stopped: a clean shutdown"},
    EventRow{13, kernelGeneral, Meaning::ShutdownDone, Severity::Notice, "Windows shut down at {StopTime}"},
    EventRow{6005, "EventLog", Meaning::Boot, Severity::Notice, "The event log started: Windows came up"},
    EventRow{12, kernelGeneral, Meaning::Boot, Severity::Notice, "Windows started at {StartTime}"},
    EventRow{42, kernelPower, Meaning::Sleep, Severity::Notice, "The machine goes to sleep (reason {Reason})"},
    EventRow{107, kernelPower, Meaning::Resume, Severity::Notice, "The machine has resumed from sleep"},
    EventRow{1, "Microsoft-Windows-Power-Troubleshooter", Meaning::Resume, Severity::Notice,
             "The machine slept from {SleepTime} to {WakeTime}"},
    EventRow{506, kernelPower, Meaning::Standby, Severity::Notice, "Modern standby began (reason {Reason})"},
    EventRow{507, kernelPower, Meaning::Standby, Severity::Notice, "Modern standby ended (reason {Reason})"},
    EventRow{4101, "Display", Meaning::Other, Severity::Warning,
             "The display driver {0} stopped responding and was restarted"},
    EventRow{2004, "Microsoft-Windows-Resource-Exhaustion-Detector", Meaning::Other, Severity::Warning,
             "The machine ran low on virtual memory"},
};

std::string fillIn(std::string_view words, const EventRecord& event) {
  std::string text;
  while (!words.empty()) {
    const std::size_t open = words.find('{');
    text += words.substr(0, open);
    if (open == std::string_view::npos) {
      break;
    }
    const std::size_t close = words.find('}', open);
    std::string_view name = words.substr(open + 1, close - open - 1);
    const std::size_t bar = name.find('|');
    std::string_view before;
    if (bar != std::string_view::npos) {
      before = name.substr(0, bar);
      name.remove_prefix(bar + 1);
    }
    const std::string value = event.field(name);
    if (!value.empty()) {
      text.append(before).append(value);
    } else if (before.empty()) {
      text += "unknown";
    }
    words.remove_prefix(close + 1);
  }
  return text;
}

std::string describeUnknown(const EventRecord& event) {
  constexpr std::size_t longestWords = 300;
  std::string text = event.provider + ' ' + std::to_string(event.id);
  const char* between = ": ";
  for (const auto& [name, value] : event.data) {
    if (!value.empty() && text.size() < longestWords) {
      text.append(between).append(name).append(name.empty() ? "" : " ").append(value);
      between = ", ";
    }
  }
  return text;
}

Severity severityOfLevel(int level) {
  return level == 1 || level == 2 ? Severity::Error : level == 3 ? Severity::Warning : Severity::Info;
}

}  // namespace

EventWords describeEvent(const EventRecord& event) {
  const auto* const row = std::find_if(std::begin(eventRows), std::end(eventRows), [&](const EventRow& candidate) {
    return candidate.id == event.id && candidate.provider == event.provider &&
           event.field("2").starts_with(candidate.report);
  });
  if (row == std::end(eventRows)) {
    return {Meaning::Other, severityOfLevel(event.level), describeUnknown(event)};
  }
  // Other programs crash, too: that is worth a line but is not what the logs are about.
  const bool ofAnother = isFailure(row->meaning) && !event.namesCanvix();
  return {ofAnother ? Meaning::Other : row->meaning, ofAnother ? Severity::Warning : row->severity,
          fillIn(row->words, event)};
}

bool isFailure(Meaning meaning) {
  return meaning == Meaning::Crash || meaning == Meaning::Hang || meaning == Meaning::HangReport;
}

std::string_view severityName(Severity severity) {
  constexpr std::array<std::string_view, 4> names{"info", "notice", "warning", "error"};
  return names[static_cast<std::size_t>(severity)];
}

}  // namespace sentiq
