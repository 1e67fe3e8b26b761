// The fields of events that somebody asks for by name, in one list with their names.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace sentiq {

// Named as events name them. The last ones are of no event, but what the event table calls so.
#define SENTIQ_FIELDS                                                                                                 \
  AppName, AppVersion, AppTimeStamp, ModuleName, ModuleVersion, ModuleTimeStamp, ExceptionCode, FaultingOffset,       \
      ProcessId, ProcessCreationTime, AppPath, ModulePath, IntegratorReportId, PackageFullName, PackageRelativeAppId, \
      StartTime, TerminationTime, ExeFileName, ReportId, HangType, Binary, Bucket, BucketType, EventName, Response,   \
      CabId, P1, P2, P3, P4, P5, P6, P7, P8, P9, P10, AttachedFiles, StorePath, AnalysisSymbol, Rechecking,           \
      ReportStatus, HashedBucket, CabGuid, Text, Caption, Message, param1, param2, param3, param4, param5, param6,    \
      param7, BugcheckCode, SleepInProgress, ConnectedStandbyInProgress, PowerButtonTimestamp,                        \
      LongPowerButtonPressDetected, Time, Date, ShutdownActionType, ShutdownReason, StopTime, MajorVersion,           \
      MinorVersion, BuildVersion, QfeVersion, WindowsVersion, BuildNumber, ServicePack, ProcessorKind, OldTime,       \
      NewTime, EffectiveState, TargetState, Reason, DurationInUs, SleepTime, WakeTime, WakeSourceText, AcOnline,      \
      Driver, Process1Name, Process1Size, Process2Name, Process2Size, Process3Name, Process3Size, RenderedMessage,    \
      updateTitle, errorCode, DriverDescription, DriverVersion, InstallStatus, ServiceName, ImagePath, ProductName,   \
      ProductVersion, ProductLanguage, Status, Manufacturer, StopCode, ExceptionName, ChangedName, ChangedVersion
#define SENTIQ_TEXT_OF(...) #__VA_ARGS__
#define SENTIQ_TEXT_OF_ALL(...) SENTIQ_TEXT_OF(__VA_ARGS__)

enum class Field : std::uint8_t { SENTIQ_FIELDS };

struct FieldName {
  Field field;
  std::string_view name;
};

/// Of nested fields: with the names of the elements around them.
constexpr FieldName nestedNames[] = {
    FieldName{Field::Process1Name, "ProcessInfo.Process_1.Name"},
    FieldName{Field::Process1Size, "ProcessInfo.Process_1.CommitCharge"},
    FieldName{Field::Process2Name, "ProcessInfo.Process_2.Name"},
    FieldName{Field::Process2Size, "ProcessInfo.Process_2.CommitCharge"},
    FieldName{Field::Process3Name, "ProcessInfo.Process_3.Name"},
    FieldName{Field::Process3Size, "ProcessInfo.Process_3.CommitCharge"},
    FieldName{Field::RenderedMessage, "RenderingInfo.Message"},
};

/// In the order of the fields.
constexpr auto fieldNames = [] {
  std::string_view list = SENTIQ_TEXT_OF_ALL(SENTIQ_FIELDS);
  std::array<FieldName, static_cast<std::size_t>(Field::ChangedVersion) + 1> names{};
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t end = std::min(list.find(','), list.size());
    names[i] = {static_cast<Field>(i), list.substr(0, end)};
    list.remove_prefix(std::min(end + 2, list.size()));
  }
  for (const FieldName& nested : nestedNames) {
    names[static_cast<std::size_t>(nested.field)] = nested;
  }
  return names;
}();

#undef SENTIQ_FIELDS
#undef SENTIQ_TEXT_OF
#undef SENTIQ_TEXT_OF_ALL

constexpr auto sortedFieldNames = [] {
  auto names = fieldNames;
  std::sort(names.begin(), names.end(), [](const FieldName& a, const FieldName& b) { return a.name < b.name; });
  return names;
}();

constexpr std::string_view fieldName(Field field) {
  return fieldNames[static_cast<std::size_t>(field)].name;
}

/// Nothing when nobody asks for a field of that name.
constexpr std::optional<Field> fieldNamed(std::string_view name) {
  const auto index = static_cast<std::size_t>(
      std::lower_bound(sortedFieldNames.begin(), sortedFieldNames.end(), name,
                       [](const FieldName& row, std::string_view wanted) { return row.name < wanted; }) -
      sortedFieldNames.begin());
  return index < sortedFieldNames.size() && sortedFieldNames[index].name == name
             ? std::optional(sortedFieldNames[index].field)
             : std::nullopt;
}

/// Whether the field, by itself or nested, is bytes, of which some are texts in disguise.
constexpr bool isBinaryField(std::string_view name) {
  const std::string_view own = name.substr(name.rfind('.') + 1);
  return own == "Binary" || own == "BinaryEventData" || own == "EventPayload";
}

}  // namespace sentiq
