#include "reader/events/EventFacts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <variant>

#include "reader/events/CodeWords.h"
#include "reader/events/EventPattern.h"
#include "reader/events/EventTable.h"

namespace sentiq {
namespace {

// Of the ticks since 1601 that the system counts; 0 is no time.
std::optional<Instant> systemTime(std::optional<std::uint64_t> ticks) {
  constexpr std::int64_t ticksTo1970 = 116'444'736'000'000'000;
  constexpr std::uint64_t most = 2'650'467'743'999'999'999;  // The end of the year 9999, the last of any log.
  return ticks && *ticks > 0 && *ticks <= most
             ? std::optional(Instant(Ticks(static_cast<std::int64_t>(*ticks) - ticksTo1970)))
             : std::nullopt;
}

std::optional<Instant> timeIn(std::string_view text) {
  const auto time = parseTime(text);
  return time ? std::optional(time->instant) : std::nullopt;
}

template <typename Kind>
Kind kindOf(const EventRecord& event, Kind otherwise) {
  const Kind* const kind = event.row() != nullptr ? std::get_if<Kind>(&event.row()->kind) : nullptr;
  return kind != nullptr ? *kind : otherwise;
}

// Of the files beside an error report, one a line.
std::vector<std::string> dumpsAmong(std::string_view files) {
  std::vector<std::string> dumps;
  while (!files.empty()) {
    std::string_view file = nextPart(files, '\n');
    file = file.substr(0, file.find_last_not_of("\r ") + 1);
    if (matches(file, "*.*dmp")) {
      dumps.emplace_back(file);
    }
  }
  return dumps;
}

}  // namespace

ProgramFailure programFailure(const EventRecord& event) {
  ProgramFailure failure;
  failure.teller = kindOf(event, Teller::Event);
  failure.version = event.field(Field::AppVersion);
  failure.module = event.field(Field::ModuleName);
  failure.moduleVersion = event.field(Field::ModuleVersion);
  failure.exception = parseHex(event.field(Field::ExceptionCode));
  failure.exceptionName = event.field(Field::ExceptionName);
  failure.offset = parseHex(event.field(Field::FaultingOffset));
  failure.reportId = event.field(Field::ReportId);
  if (failure.teller == Teller::Report) {
    const std::string_view hashed = event.field(Field::HashedBucket);
    failure.bucket = hashed.empty() ? event.field(Field::Bucket) : hashed;
    failure.reportPath = event.field(Field::StorePath);
    failure.dumps = dumpsAmong(event.field(Field::AttachedFiles));
    failure.hangKind = matches(event.field(Field::EventName), "*XProc*") ? "Cross-process" : "";
    return failure;
  }
  const std::string_view hangKind = event.field(Field::HangType);
  failure.hangKind = hangKind == "Unknown" ? "" : hangKind;
  const std::uint64_t process = parseHex(event.field(Field::ProcessId)).value_or(0);
  failure.processId = process <= std::numeric_limits<std::uint32_t>::max() ? static_cast<std::int64_t>(process) : 0;
  failure.created = systemTime(parseHex(event.field(Field::ProcessCreationTime)));
  return failure;
}

MachineFall machineFall(const EventRecord& event) {
  MachineFall fall;
  const std::uint64_t code = parseDecimal(event.field(Field::BugcheckCode)).value_or(0);
  fall.stopCode = code != 0 ? std::optional(code) : parseHex(event.field(Field::StopCode));
  const std::vector<std::string> dumps = dumpsAmong(event.field(Field::AttachedFiles));
  fall.dump = dumps.empty() ? std::string(event.field(Field::param2)) : dumps.front();
  fall.reportId = event.field(Field::ReportId);
  fall.isErrorReport = !event.field(Field::EventName).empty();
  fall.asleep = isSet(event.field(Field::SleepInProgress));
  fall.inStandby = isSet(event.field(Field::ConnectedStandbyInProgress));
  fall.buttonPressed = systemTime(parseDecimal(event.field(Field::PowerButtonTimestamp)));
  fall.powerButton = fall.buttonPressed || isSet(event.field(Field::LongPowerButtonPressDetected));
  fall.told = readToldTime(event.field(Field::Time), event.field(Field::Date));
  return fall;
}

std::optional<ClockSet> clockSet(const EventRecord& event) {
  const auto from = timeIn(event.field(Field::OldTime));
  const auto to = timeIn(event.field(Field::NewTime));
  return from && to ? std::optional(ClockSet{*from, *to, event.field(Field::Reason) == "2"}) : std::nullopt;
}

SleepTold sleepTold(const EventRecord& event) {
  constexpr std::uint64_t sleepBatteryLow = 2;
  constexpr std::uint64_t standbyBatteryLow = 0x35;
  SleepTold told;
  told.kind = kindOf(event, SleepKind::Sleep);
  const bool standby = told.kind == SleepKind::Standby;
  told.batteryEmpty = parseDecimal(event.field(Field::Reason)) == (standby ? standbyBatteryLow : sleepBatteryLow);
  const bool begins = event.meaning == Meaning::Sleep || event.meaning == Meaning::StandbyBegun;
  told.begin = begins ? event.time : timeIn(event.field(Field::SleepTime));
  if (!begins) {
    const auto end = timeIn(event.field(Field::WakeTime));
    told.end = end ? end : event.time;
  }
  constexpr std::uint64_t longest = std::chrono::microseconds(std::chrono::years(10)).count();
  const auto duration = parseDecimal(event.field(Field::DurationInUs));
  if (told.end && duration && *duration <= longest) {
    told.begin = *told.end - std::chrono::microseconds(*duration);
  }
  return told;
}

std::optional<Instant> bootTime(const EventRecord& event) {
  const auto told = timeIn(event.field(Field::StartTime));
  return told ? told : event.time;
}

std::string windowsBuild(const EventRecord& event) {
  // "10.00." and then the build.
  if (const std::string_view version = event.field(Field::WindowsVersion); !version.empty()) {
    const std::size_t dot = std::min(version.find('.'), version.size() - 1);
    const std::uint64_t minor = parseDecimal(version.substr(dot + 1)).value_or(0);
    return std::string(version.substr(0, dot + 1)) + std::to_string(minor) + '.' +
           std::string(event.field(Field::BuildNumber));
  }
  std::string build;
  for (const Field part : {Field::MajorVersion, Field::MinorVersion, Field::BuildVersion, Field::QfeVersion}) {
    build.append(build.empty() || event.field(part).empty() ? "" : ".").append(event.field(part));
  }
  return build;
}

MachineChange machineChange(const EventRecord& event) {
  MachineChange change;
  change.kind = kindOf(event, ChangeKind::Update);
  change.name = event.field(Field::ChangedName);
  change.version = event.field(Field::ChangedVersion);
  change.failed = event.severity >= Severity::Warning;
  return change;
}

std::string_view changeName(ChangeKind kind) {
  constexpr std::array<std::string_view, 7> names{
      "update", "driver", "program installed", "program removed", "Windows", "graphics adapter", "Canvix"};
  static_assert(names.size() == static_cast<std::size_t>(ChangeKind::Canvix) + 1);
  return names[static_cast<std::size_t>(kind)];
}

}  // namespace sentiq
