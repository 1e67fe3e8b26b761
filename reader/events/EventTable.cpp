#include "reader/events/EventTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <sstream>
#include <system_error>

#include "reader/events/CodeWords.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// Several providers use the same ids, so each row names its own, or several with bars between; an asterisk stands for
// any end of the name, the id 0 for every id of a warning or an error. The first row that fits counts.
struct EventRow {
  int id;
  Meaning meaning;
  Severity severity;
  std::string_view provider;
  // {Name} is a field; {, |Name} one that may be missing, with what stands before it; {Name:form} its value in one of
  // the forms below; {*} all fields.
  std::string_view words;
  // "Field=A|B": the field begins with A or B, in any case; "A|B": one of these fields is set. Always when empty.
  std::string_view when = {};
};

constexpr std::string_view kernelPower = "Microsoft-Windows-Kernel-Power";
constexpr std::string_view kernelGeneral = "Microsoft-Windows-Kernel-General";

using enum Meaning;
using enum Severity;
constexpr EventRow eventRows[] = {
    EventRow{1000, Crash, Error, "Application Error",
             "{AppName} {AppVersion} crashed in {ModuleName} {ModuleVersion}: exception {ExceptionCode:exception} at "
             "offset {FaultingOffset:hex}"},
    EventRow{1002, Hang, Error, "Application Hang",
             "{AppName} {AppVersion} stopped responding and was closed{: |HangType}"},
    EventRow{1001, Other, Notice, errorReporting, "Error report {EventName}, sent again: {AppName} {AppVersion}",
             "Rechecking"},
    EventRow{1001, Crash, Error, errorReporting,
             "Error report {EventName}: {AppName} {AppVersion} crashed{ in |ModuleName}{ |ModuleVersion}"
             "{: exception |ExceptionCode:exception}{ at offset |FaultingOffset:hex}",
             "EventName=APPCRASH|BEX|CLR20r3|InPageError|MoAppCrash|MoBEX"},
    EventRow{1001, Recovered, Notice, errorReporting,
             "Error report {EventName}: {AppName} {AppVersion} did not respond for a while and recovered",
             "EventName=AppHangTransient|MoAppHangTransient"},
    EventRow{1001, Hang, Error, errorReporting, "Error report {EventName}: {AppName} {AppVersion} stopped responding",
             "EventName=AppHang|MoAppHang"},
    EventRow{1001, Leak, Notice, errorReporting,
             "Error report {EventName}: {AppName} {AppVersion} uses more and more memory", "EventName=RADAR_PRE_LEAK"},
    EventRow{1001, SystemCrash, Error, errorReporting,
             "The machine crashed with the blue screen {P1:stop}, says its error report", "EventName=BlueScreen"},
    EventRow{1001, Hardware, Warning, errorReporting, "Error report {EventName}: the kernel met {P1:stop} and went on",
             "EventName=LiveKernelEvent"},
    EventRow{1001, Other, Notice, errorReporting, "Error report {EventName}: {P1} {P2}{, |P4}{, |P7}{ |P8}"},
    EventRow{1001, SystemCrash, Error, "Microsoft-Windows-WER-SystemErrorReporting|BugCheck",
             "The machine crashed with the blue screen {param1:stop}{, dump |param2}"},
    EventRow{41, SystemCrash, Error, kernelPower,
             "The machine crashed with the blue screen {BugcheckCode:decimal stop}", "BugcheckCode"},
    EventRow{41, PowerLoss, Error, kernelPower, "The machine lost power during sleep",
             "SleepInProgress|ConnectedStandbyInProgress"},
    EventRow{41, PowerLoss, Error, kernelPower, "The power button was held until the machine went off",
             "PowerButtonTimestamp|LongPowerButtonPressDetected"},
    EventRow{41, PowerLoss, Error, kernelPower,
             "The machine lost power or froze, and restarted without shutting down first"},
    EventRow{6008, PowerLoss, Error, "EventLog", "The shutdown at {Time} on {Date} was unexpected"},
    EventRow{1074, ShutdownBegun, Warning, "User32", "{param1} began a {param5} for {param7}: {param3}{, |param6}"},
    EventRow{109, ShutdownDone, Notice, kernelPower,
             "The kernel began to {ShutdownActionType:action}{: |ShutdownReason:reason}"},
    EventRow{6006, ShutdownDone, Notice, "EventLog", "The event log stopped: a clean shutdown"},
    EventRow{13, ShutdownDone, Notice, kernelGeneral, "Windows shut down at {StopTime}"},
    EventRow{6005, Boot, Notice, "EventLog", "The event log started: Windows came up"},
    EventRow{12, Boot, Notice, kernelGeneral, "Windows started at {StartTime}"},
    EventRow{1, Clock, Info, kernelGeneral, "The clock was set from {OldTime} to {NewTime}"},
    EventRow{42, Sleep, Notice, kernelPower, "The machine hibernates{: |Reason:reason}", "EffectiveState=5"},
    EventRow{42, Sleep, Notice, kernelPower, "The machine goes to sleep{: |Reason:reason}"},
    EventRow{107, Resume, Notice, kernelPower, "The machine has resumed from sleep"},
    EventRow{1, Resume, Notice, "Microsoft-Windows-Power-Troubleshooter",
             "The machine slept from {SleepTime} to {WakeTime}{, woken by |WakeSourceText}"},
    EventRow{506, Standby, Notice, kernelPower, "Modern standby began{: |Reason:standby}"},
    EventRow{507, Standby, Notice, kernelPower, "Modern standby ended{: |Reason:standby}"},
    EventRow{105, Battery, Notice, kernelPower, "The machine ran on its battery", "AcOnline=false"},
    EventRow{105, Other, Notice, kernelPower, "The machine runs on mains", "AcOnline=true"},
    EventRow{4101, Display, Warning, "Display", "The display driver {Driver} stopped responding and was restarted"},
    EventRow{0, Display, Warning, "nvlddmkm|amdkmdag|amdwddmg|amduw23*|atikmdag|igfx*|igdkmd*|dxgkrnl",
             "The graphics driver reported: {*}"},
    EventRow{2004, Memory, Warning, "Microsoft-Windows-Resource-Exhaustion-Detector",
             "The machine ran low on virtual memory{; used most by |ProcessInfo.Process_1.Name}"
             "{ |ProcessInfo.Process_1.CommitCharge:size}{, |ProcessInfo.Process_2.Name}"
             "{ |ProcessInfo.Process_2.CommitCharge:size}{, |ProcessInfo.Process_3.Name}"
             "{ |ProcessInfo.Process_3.CommitCharge:size}"},
    EventRow{7, Disk, Warning, "disk", "A disk has a bad block: {*}"},
    EventRow{11, Disk, Warning, "disk", "A disk's controller reported an error: {*}"},
    EventRow{51, Disk, Warning, "disk", "An error came up while paging to a disk: {*}"},
    EventRow{153, Disk, Warning, "disk", "A disk operation was tried again: {*}"},
    EventRow{129, Disk, Warning, "stornvme|storahci|iaStor*|stor*", "A disk did not answer and was reset: {*}"},
    EventRow{0, Disk, Warning, "disk|stornvme|storahci|iaStor*|Ntfs|Microsoft-Windows-Ntfs|volmgr",
             "A disk or its file system reported: {*}"},
    EventRow{0, Hardware, Warning, "Microsoft-Windows-WHEA-Logger", "The hardware reported an error: {*}"},
};

// Calls until one says yes for the parts between bars.
template <typename Check>
bool anyPart(std::string_view parts, const Check& check) {
  for (std::size_t bar = 0; (bar = parts.find('|')) != std::string_view::npos; parts.remove_prefix(bar + 1)) {
    if (check(parts.substr(0, bar))) {
      return true;
    }
  }
  return check(parts);
}

bool mayFit(const EventRow& row, const EventHead& event) {
  if (row.id != event.id && (row.id != 0 || event.level == 0 || event.level > 3)) {
    return false;
  }
  return anyPart(row.provider, [&](std::string_view name) {
    return name.ends_with('*') ? beginsIgnoringCase(event.provider, name.substr(0, name.size() - 1))
                               : equalIgnoringCase(event.provider, name);
  });
}

bool fits(const EventRow& row, const EventRecord& event) {
  if (!mayFit(row, {event.provider, event.channel, event.id, event.level})) {
    return false;
  }
  if (row.when.empty()) {
    return true;
  }
  const std::size_t equals = row.when.find('=');
  return equals == std::string_view::npos
             ? anyPart(row.when, [&](std::string_view field) { return isSet(event, field); })
             : anyPart(row.when.substr(equals + 1), [&](std::string_view begin) {
                 return beginsIgnoringCase(event.field(row.when.substr(0, equals)), begin);
               });
}

// A value in one of the forms that the rows name; as it is when it is no number.
std::string inForm(std::string_view form, const std::string& value) {
  const auto withWords = [](CodeKind kind, std::uint64_t code) {
    const std::string words(codeWords(kind, code));
    return showHex(code) + (words.empty() ? "" : kind == CodeKind::Stop ? ' ' + words : " (" + words + ')');
  };
  if (form == "hex") {
    return inHex(value);
  }
  if (form == "exception" || form == "stop") {
    const auto code = parseHex(value);
    return code ? withWords(form == "stop" ? CodeKind::Stop : CodeKind::Exception, *code) : value;
  }
  std::uint64_t number = 0;
  if (std::from_chars(value.data(), value.data() + value.size(), number).ec != std::errc{}) {
    return value;
  }
  if (form == "size") {
    return '(' + std::to_string(number >> 20U) + " MiB)";
  }
  if (form == "decimal stop") {
    return withWords(CodeKind::Stop, number);
  }
  const std::string_view words = codeWords(form == "standby"  ? CodeKind::StandbyReason
                                           : form == "action" ? CodeKind::PowerAction
                                                              : CodeKind::SleepReason,
                                           number);
  return words.empty() ? "code " + value : std::string(words);
}

// One line: times in local time, blanks for line ends.
std::string shownValue(const std::string& value, std::chrono::minutes offset) {
  constexpr std::size_t longestShown = 200;
  std::size_t used = 0;
  if (const auto time = parseTime(value, &used); time && used == value.size() && value.ends_with('Z')) {
    return showTime(time->instant, offset);
  }
  std::istringstream words(value);
  std::string line;
  for (std::string word; words >> word;) {
    line += (line.empty() ? "" : " ") + word;
  }
  return shortText(line, longestShown);
}

// Bytes say nothing to a reader.
bool isBinary(std::string_view value) {
  constexpr std::size_t shortest = 64;
  return value.size() >= shortest && value.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::string allFields(const EventRecord& event, std::chrono::minutes offset) {
  constexpr std::size_t longestWords = 400;
  std::string text;
  for (const auto& [name, value] : event.data) {
    if (value.empty() || name == "Binary" || name == "BinaryEventData" || name.starts_with("RenderingInfo.") ||
        isBinary(value)) {
      continue;
    }
    text += (text.empty() ? "" : ", ") + name + (name.empty() ? "" : " ") + shownValue(value, offset);
    if (text.size() > longestWords) {
      return shortText(text, longestWords);
    }
  }
  return text;
}

std::string fillIn(std::string_view words, const EventRecord& event, std::chrono::minutes offset) {
  std::string text;
  while (!words.empty()) {
    const std::size_t open = words.find('{');
    text += words.substr(0, open);
    if (open == std::string_view::npos) {
      break;
    }
    const std::size_t close = words.find('}', open);
    std::string_view name = words.substr(open + 1, close - open - 1);
    words.remove_prefix(close + 1);
    const std::size_t bar = name.find('|');
    const std::string_view before = bar != std::string_view::npos ? name.substr(0, bar) : std::string_view{};
    name.remove_prefix(bar != std::string_view::npos ? bar + 1 : 0);
    const std::size_t colon = name.find(':');
    const std::string value =
        name == "*" ? allFields(event, offset) : shownValue(event.field(name.substr(0, colon)), offset);
    if (!value.empty()) {
      text.append(before).append(colon != std::string_view::npos ? inForm(name.substr(colon + 1), value) : value);
    } else if (before.empty()) {
      text += "unknown";
    }
  }
  return text;
}

}  // namespace

EventWords describeEvent(const EventRecord& event, std::chrono::minutes offset) {
  const auto* const row = std::find_if(std::begin(eventRows), std::end(eventRows),
                                       [&](const EventRow& candidate) { return fits(candidate, event); });
  if (row == std::end(eventRows)) {
    return {
        Meaning::Other, severityOfLevel(event.level),
        event.provider + ' ' + std::to_string(event.id) + fillIn("{: |RenderingInfo.Message}{: |*}", event, offset)};
  }
  // Other programs fail, too: that is worth a line but is not what the logs are about.
  const bool ofProgram = isFailure(row->meaning) || row->meaning == Meaning::Recovered || row->meaning == Meaning::Leak;
  const bool ofAnother = ofProgram && !event.isOfCanvix();
  return {ofAnother ? Meaning::Other : row->meaning,
          ofAnother ? std::min(row->severity, Severity::Warning) : row->severity, fillIn(row->words, event, offset)};
}

bool mayMatter(const EventHead& event) {
  return std::any_of(std::begin(eventRows), std::end(eventRows),
                     [&](const EventRow& row) { return mayFit(row, event); });
}

Severity severityOfLevel(int level) {
  return level == 1 || level == 2 ? Severity::Error : level == 3 ? Severity::Warning : Severity::Info;
}

bool isFailure(Meaning meaning) {
  return meaning == Meaning::Crash || meaning == Meaning::Hang;
}

bool isSet(const EventRecord& event, std::string_view field) {
  const std::string& value = event.field(field);
  return !value.empty() && value != "false" && value.find_first_not_of("0x") != std::string::npos;
}

std::string_view severityName(Severity severity) {
  constexpr std::array<std::string_view, 4> names{"info", "notice", "warning", "error"};
  return names[static_cast<std::size_t>(severity)];
}

}  // namespace sentiq
