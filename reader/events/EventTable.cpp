#include "reader/events/EventTable.h"

#include <algorithm>
#include <iterator>

#include "reader/events/CodeWords.h"
#include "reader/events/EventRowChecks.h"

namespace sentiq {
namespace {
namespace table {  // Not without a name: the names of three enumerations hold in it.

using enum Field;
using enum Meaning;
using enum Severity;

constexpr std::string_view errorReporting = "Windows Error Reporting";
constexpr std::string_view kernelPower = "Microsoft-Windows-Kernel-Power";
constexpr std::string_view kernelGeneral = "Microsoft-Windows-Kernel-General";
constexpr std::string_view troubleshooter = "Microsoft-Windows-Power-Troubleshooter";
constexpr std::string_view updateClient = "Microsoft-Windows-WindowsUpdateClient";
constexpr std::string_view installer = "MsiInstaller";

constexpr FieldPart errorParts[]{{ReportId, IntegratorReportId}};
constexpr FieldPart hangParts[]{{ProcessCreationTime, StartTime}};

// Of an error report P1 to P10 say what failed, in an order that depends on its kind.
constexpr FieldPart crashReport[]{{AppName, P1},       {AppVersion, P2},    {ModuleName, P4},
                                  {ModuleVersion, P5}, {ExceptionCode, P7}, {FaultingOffset, P8}};
constexpr FieldPart bufferReport[]{{AppName, P1},       {AppVersion, P2},    {ModuleName, P4},
                                   {ModuleVersion, P5}, {ExceptionCode, P8}, {FaultingOffset, P7}};
constexpr FieldPart programReport[]{{AppName, P1}, {AppVersion, P2}};
constexpr FieldPart managedReport[]{
    {AppName, P1}, {AppVersion, P2}, {ModuleName, P4}, {ModuleVersion, P5}, {ExceptionName, P9}};
constexpr FieldPart pageReport[]{{AppName, P1}, {AppVersion, P2}, {ExceptionCode, P4}};
// Of packaged applications: the package, the application in it ("praid:App"), and then as above. No real MoBEX was at
// hand.
constexpr FieldPart packagedCrashReport[]{{PackageFullName, P1}, {AppVersion, P3},    {ModuleName, P5},
                                          {ModuleVersion, P6},   {ExceptionCode, P8}, {FaultingOffset, P9}};
constexpr FieldPart packagedBufferReport[]{{PackageFullName, P1}, {AppVersion, P3},    {ModuleName, P5},
                                           {ModuleVersion, P6},   {ExceptionCode, P9}, {FaultingOffset, P8}};
constexpr FieldPart packagedReport[]{{PackageFullName, P1}, {AppVersion, P3}};

// "Application: Canvix.exe" in the first line, in the system's language.
constexpr FieldPart runtimeParts[]{
    {AppName, Text, ": "}, {ExceptionName, Text, "Exception Info: ", ":"}, {ExceptionCode, Text, "exit code ", "."}};
// "Canvix.exe - Application Error".
constexpr FieldPart popupParts[]{{AppName, Caption, "", " - "}, {ExceptionCode, Message, "(0x", ")"}};

constexpr FieldPart stopParts[]{{StopCode, param1}, {ReportId, param3}};
constexpr FieldPart stopReport[]{{StopCode, P1}};

constexpr FieldPart updateParts[]{{ChangedName, updateTitle}};
constexpr FieldPart driverParts[]{{ChangedName, DriverDescription}, {ChangedVersion, DriverVersion}};
constexpr FieldPart serviceParts[]{{ChangedName, ServiceName}};
constexpr FieldPart productParts[]{{ChangedName, ProductName}, {ChangedVersion, ProductVersion}};
// "Product: Some Program -- Installation completed successfully.", in the system's language.
constexpr FieldPart messageParts[]{{ChangedName, Message, ": ", " -- "}};
// 1641 and 3010: done, once Windows has restarted.
constexpr std::string_view installed = "Status=0|1641|3010";

constexpr std::string_view crashReported =
    "Error report {EventName}: {AppName} {AppVersion} crashed{ in |ModuleName}{ |ModuleVersion}"
    "{: exception |ExceptionCode:exception}{ at offset |FaultingOffset:hex}";
constexpr std::string_view packagedCrashReported =
    "Error report {EventName}: {PackageFullName} crashed{ in |ModuleName}{ |ModuleVersion}"
    "{: exception |ExceptionCode:exception}{ at offset |FaultingOffset:hex}";

// Where the meaning leaves nothing open.
constexpr std::monostate none{};

constexpr EventRow allRows[] = {
    {1000, Crash, Error, "Application Error",
     "{AppName} {AppVersion} crashed in {ModuleName} {ModuleVersion}: exception {ExceptionCode:exception} at "
     "offset {FaultingOffset:hex}",
     "", Teller::Event, errorParts},
    {1002, Hang, Error, "Application Hang", "{AppName} {AppVersion} stopped responding and was closed{: |HangType}", "",
     Teller::Event, hangParts},
    {1026, Crash, Error, ".NET Runtime", "{AppName} crashed: unhandled .NET exception{ |ExceptionName}", "",
     Teller::Runtime, runtimeParts},
    {1023, Crash, Error, ".NET Runtime", "{AppName} crashed within the .NET runtime{: |ExceptionCode:exception}", "",
     Teller::Runtime, runtimeParts},
    // One that tells of two addresses, or of an exception and its address; others tell of files that are missing.
    {26, Crash, Error, "Application Popup", "{AppName} crashed, says a box of the system: {Message}", "Message=*0x*0x*",
     Teller::Popup, popupParts},
    {26, Other, Notice, "Application Popup", "The system showed a box: {Caption}{: |Message}"},
    {1001, Other, Notice, errorReporting, "Error report {EventName}, sent again: {P1} {P2}", "Rechecking"},
    {1001, Crash, Error, errorReporting, crashReported, "EventName=APPCRASH*", Teller::Report, crashReport},
    {1001, Crash, Error, errorReporting, crashReported, "EventName=BEX*", Teller::Report, bufferReport},
    {1001, Crash, Error, errorReporting,
     "Error report {EventName}: {AppName} {AppVersion} crashed{ in |ModuleName}{ |ModuleVersion}"
     "{: exception |ExceptionName}",
     "EventName=CLR20r3*", Teller::Report, managedReport},
    // No real one was at hand.
    {1001, Crash, Error, errorReporting, crashReported, "EventName=InPageError*", Teller::Report, pageReport},
    {1001, Crash, Error, errorReporting, packagedCrashReported, "EventName=MoAppCrash*", Teller::Report,
     packagedCrashReport},
    {1001, Crash, Error, errorReporting, packagedCrashReported, "EventName=MoBEX*", Teller::Report,
     packagedBufferReport},
    {1001, Recovered, Notice, errorReporting,
     "Error report {EventName}: {AppName} {AppVersion} did not respond for a while and recovered",
     "EventName=AppHangTransient*", Teller::Report, programReport},
    {1001, Recovered, Notice, errorReporting,
     "Error report {EventName}: {PackageFullName} did not respond for a while and recovered",
     "EventName=MoAppHangTransient*", Teller::Report, packagedReport},
    {1001, Hang, Error, errorReporting, "Error report {EventName}: {AppName} {AppVersion} stopped responding",
     "EventName=AppHang*", Teller::Report, programReport},
    {1001, Hang, Error, errorReporting, "Error report {EventName}: {PackageFullName} stopped responding",
     "EventName=MoAppHang*", Teller::Report, packagedReport},
    {1001, Leak, Notice, errorReporting, "Error report {EventName}: {AppName} {AppVersion} uses more and more memory",
     "EventName=RADAR_PRE_LEAK*", Teller::Report, programReport},
    {1001, BlueScreen, Error, errorReporting,
     "The machine crashed with the blue screen {StopCode:stop}, says its error report", "EventName=BlueScreen*", none,
     stopReport},
    {1001, Hardware, Warning, errorReporting, "Error report {EventName}: the kernel met {P1:stop} and went on",
     "EventName=LiveKernelEvent*"},
    {1001, Other, Notice, errorReporting, "Error report {EventName}: {P1} {P2}{, |P4}{, |P7}{ |P8}"},
    {1001, BlueScreen, Error, "Microsoft-Windows-WER-SystemErrorReporting|BugCheck",
     "The machine crashed with the blue screen {StopCode:stop}{, dump |param2}", "", none, stopParts},
    {41, BlueScreen, Error, kernelPower, "The machine crashed with the blue screen {BugcheckCode:decimal stop}",
     "BugcheckCode"},
    {41, PowerLoss, Error, kernelPower, "The machine lost power during sleep",
     "SleepInProgress|ConnectedStandbyInProgress"},
    {41, PowerLoss, Error, kernelPower, "The power button was held until the machine went off",
     "PowerButtonTimestamp|LongPowerButtonPressDetected"},
    {41, PowerLoss, Error, kernelPower, "The machine lost power or froze, and restarted without shutting down first"},
    {6008, PowerLoss, Error, "EventLog", "The shutdown at {Time} on {Date} was unexpected"},
    {1074, ShutdownBegun, Warning, "User32", "{param1} began a {param5} for {param7}: {param3}{, |param6}"},
    {109, ShutdownDone, Notice, kernelPower,
     "The kernel began to {ShutdownActionType:action}{: |ShutdownReason:reason}"},
    {6006, ShutdownDone, Notice, "EventLog", "The event log stopped: a clean shutdown"},
    {13, ShutdownDone, Notice, kernelGeneral, "Windows shut down at {StopTime}"},
    {6005, Boot, Notice, "EventLog", "The event log started: Windows came up"},
    {6009, Boot, Notice, "EventLog", "Windows {WindowsVersion}{BuildNumber}{ |ServicePack} came up"},
    {12, Boot, Notice, kernelGeneral, "Windows started at {StartTime}"},
    {1, Clock, Info, kernelGeneral, "The clock was set from {OldTime} to {NewTime}"},
    {42, Sleep, Notice, kernelPower, "The machine hibernates{: |Reason:reason}", "EffectiveState|TargetState=5",
     SleepKind::Hibernation},
    {42, Sleep, Notice, kernelPower, "The machine goes to sleep{: |Reason:reason}", "", SleepKind::Sleep},
    {107, Resume, Notice, kernelPower, "The machine has resumed from hibernation", "EffectiveState|TargetState=5",
     SleepKind::Hibernation},
    {107, Resume, Notice, kernelPower, "The machine has resumed from sleep", "", SleepKind::Sleep},
    {1, Resume, Notice, troubleshooter,
     "The machine hibernated from {SleepTime} to {WakeTime}{, woken by |WakeSourceText}",
     "EffectiveState|TargetState=5", SleepKind::Hibernation},
    {1, Resume, Notice, troubleshooter, "The machine slept from {SleepTime} to {WakeTime}{, woken by |WakeSourceText}",
     "", SleepKind::Sleep},
    {506, StandbyBegun, Notice, kernelPower, "Modern standby began{: |Reason:standby}", "", SleepKind::Standby},
    {507, StandbyEnded, Notice, kernelPower, "Modern standby ended{: |Reason:standby}", "", SleepKind::Standby},
    {105, Battery, Notice, kernelPower, "The machine ran on its battery", "AcOnline=false"},
    {105, Other, Notice, kernelPower, "The machine runs on mains", "AcOnline=true"},
    {4101, Display, Warning, "Display", "The display driver {Driver} stopped responding and was restarted"},
    {0, Display, Warning, "nvlddmkm|amdkmdag|amdwddmg|amduw23*|atikmdag|igfx*|igdkmd*|dxgkrnl",
     "The graphics driver reported: {*}"},
    {2004, Memory, Warning, "Microsoft-Windows-Resource-Exhaustion-Detector",
     "The machine ran low on virtual memory{; used most by |ProcessInfo.Process_1.Name}"
     "{ |ProcessInfo.Process_1.CommitCharge:size}{, |ProcessInfo.Process_2.Name}"
     "{ |ProcessInfo.Process_2.CommitCharge:size}{, |ProcessInfo.Process_3.Name}"
     "{ |ProcessInfo.Process_3.CommitCharge:size}"},
    {7, Disk, Warning, "disk", "A disk has a bad block: {*}"},
    {11, Disk, Warning, "disk", "A disk's controller reported an error: {*}"},
    {51, Disk, Warning, "disk", "An error came up while paging to a disk: {*}"},
    {153, Disk, Warning, "disk", "A disk operation was tried again: {*}"},
    {129, Disk, Warning, "stornvme|storahci|iaStor*|stor*", "A disk did not answer and was reset: {*}"},
    {0, Disk, Warning, "disk|stornvme|storahci|iaStor*|Ntfs|Microsoft-Windows-Ntfs|volmgr",
     "A disk or its file system reported: {*}"},
    {0, Hardware, Warning, "Microsoft-Windows-WHEA-Logger", "The hardware reported an error: {*}"},
    {19, Change, Notice, updateClient, "An update was installed: {ChangedName}", "", ChangeKind::Update, updateParts},
    {20, Change, Warning, updateClient, "An update could not be installed: {ChangedName}{, code |errorCode}", "",
     ChangeKind::Update, updateParts},
    {20001, Change, Notice, "Microsoft-Windows-UserPnp", "A driver was installed: {ChangedName}{ |ChangedVersion}",
     "InstallStatus=0x00000000|0x0|0", ChangeKind::Driver, driverParts},
    {20001, Change, Warning, "Microsoft-Windows-UserPnp",
     "A driver could not be installed: {ChangedName}{ |ChangedVersion}{, code |InstallStatus}", "InstallStatus",
     ChangeKind::Driver, driverParts},
    // The type of a service is told in the system's language, the file's name is not.
    {7045, Change, Notice, "Service Control Manager", "A driver was installed: {ChangedName}{, |ImagePath}",
     "ImagePath=*.sys", ChangeKind::Driver, serviceParts},
    {1033, Change, Notice, installer, "A program was installed: {ChangedName}{ |ChangedVersion}", installed,
     ChangeKind::ProgramInstalled, productParts},
    {1033, Change, Warning, installer,
     "A program could not be installed: {ChangedName}{ |ChangedVersion}, code {Status}", "Status",
     ChangeKind::ProgramInstalled, productParts},
    // No real one of the next four was at hand: the first two are documented to be as 1033, the others were published.
    {1034, Change, Notice, installer, "A program was removed: {ChangedName}{ |ChangedVersion}", installed,
     ChangeKind::ProgramRemoved, productParts},
    {1034, Change, Warning, installer, "A program could not be removed: {ChangedName}{ |ChangedVersion}, code {Status}",
     "Status", ChangeKind::ProgramRemoved, productParts},
    {11707, Change, Notice, installer, "A program was installed: {ChangedName}", "", ChangeKind::ProgramInstalled,
     messageParts},
    {11724, Change, Notice, installer, "A program was removed: {ChangedName}", "", ChangeKind::ProgramRemoved,
     messageParts},
};

consteval bool everyMeaning() {
  for (int meaning = 0; meaning <= static_cast<int>(Change); ++meaning) {
    const auto wanted = static_cast<Meaning>(meaning);
    // Those two only the program's own lines have.
    if (wanted != Exit && wanted != DisplayChange &&
        std::none_of(std::begin(allRows), std::end(allRows),
                     [&](const EventRow& row) { return row.meaning == wanted; })) {
      return false;
    }
  }
  return true;
}

static_assert(std::all_of(std::begin(allRows), std::end(allRows), patternsAreGood),
              "a row names a field or a form that there is not");
static_assert(std::all_of(std::begin(allRows), std::end(allRows), fitsItsMeaning),
              "a row lacks what the facts of its meaning are made of");
static_assert(everyMeaning(), "a meaning that no event has");

bool holds(const EventRow& row, const OwnField& field) {
  std::string_view wanted = row.when;
  const std::string_view fields = nextPart(wanted, '=');
  return fields.empty() || anyPart(fields, [&](std::string_view name) {
           const std::string_view value = field(*fieldNamed(name));
           const auto isIt = [&](std::string_view pattern) { return matches(value, pattern); };
           return wanted.empty() ? isSet(value) : anyPart(wanted, isIt);
         });
}

}  // namespace table
}  // namespace

bool isFrom(const EventRow& row, std::string_view provider) {
  return anyPart(row.provider, [&](std::string_view name) { return matches(provider, name); });
}

std::span<const EventRow> eventRows() {
  return table::allRows;
}

const EventRow* findRow(std::string_view provider, int id, int level, const OwnField& field) {
  const auto* const row =
      std::find_if(std::begin(table::allRows), std::end(table::allRows), [&](const EventRow& candidate) {
        return mayFit(candidate, provider, id, level) && table::holds(candidate, field);
      });
  return row != std::end(table::allRows) ? row : nullptr;
}

}  // namespace sentiq
