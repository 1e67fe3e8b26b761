// The texts that the program writes into its logs and that their readers look for. docs/formats.md says the rest.
#pragma once

#include <string>
#include <string_view>

namespace sentiq::grammar {

// A header: each key with keyEnd and the value.
constexpr std::string_view sessionId = "OrbelSessionID";
constexpr std::string_view processId = "ProcessID";
constexpr std::string_view timeZone = "Time zone offset";
constexpr std::string_view timeZoneName = " Time Zone Name: ";  // Within the value of timeZone.
constexpr std::string_view bootTime = "LastBootTime";
constexpr std::string_view keyEnd = ": ";
inline std::string headerLine(std::string_view key, std::string_view value) {
  return std::string(key).append(keyEnd).append(value);
}

// A line of the watchdog: time stamp, blank, category, blank, level, tagsEnd, message.
constexpr std::string_view noTimeStamp = "[TIMESTAMP_ERROR]";
constexpr std::string_view categories[] = {"[SYSTEM]", "[PROCESS]"};
constexpr std::string_view levels[] = {"[INFO]", "[ALERT]", "[ERROR]", "[UNKNOWN]"};
constexpr std::string_view tagsEnd = ": ";
constexpr std::string_view separator = "=======================================";

// An event: {"xmlData":"<Event …"}.
constexpr std::string_view eventXml = "xmlData";

// Messages, whole or their beginning.
constexpr std::string_view initialBegun = "Starting initial metric collection.";
constexpr std::string_view exitSeen = "App has exited";
constexpr std::string_view exitStatus = "Exit Status - Canvix is no longer alive";
constexpr std::string_view captureStopped = "Sentiq Data Capture and Reporting stopped";
constexpr std::string_view captureError = "Error in CaptureData api: ";
constexpr std::string_view willSleep = "System Will Sleep";
constexpr std::string_view resumed = "System Resume";
constexpr std::string_view displayChanged = "System Will enter/exit Standby";
constexpr std::string_view applicationCopy = "App dumping Application log:";
constexpr std::string_view systemCopy = "App dumping System log:";
constexpr std::string_view queryFailed = "EvtQuery failed";
constexpr std::string_view readingEnded = "Issue in reading logs";
constexpr std::string_view powerThreadTrouble = "inside power thread, ";
constexpr std::string_view stopBegun = "Attempting to stop Watchdog.";
constexpr std::string_view exitDone = "Leaving App monitor app exit";
constexpr std::string_view stopDone = "Watchdog stopped cleanly.";

namespace record {
constexpr std::string_view timestamp = "timestamp";
constexpr std::string_view processId = "processId";
constexpr std::string_view status = "status";
constexpr std::string_view appRunTime = "appStartTime";  // So it is called there.
constexpr std::string_view systemStartTime = "systemStartTime";
constexpr std::string_view systemUpTime = "systemUpTime";
constexpr std::string_view foreground = "fgProcessName";
constexpr std::string_view totalDisk = "totalDiskSpace";
constexpr std::string_view usedDisk = "usedDiskSpace";
constexpr std::string_view freeDisk = "freeDiskSpace";
constexpr std::string_view totalSwap = "totalSwapMemory";
constexpr std::string_view usedSwap = "usedSwapMemory";
constexpr std::string_view freeSwap = "freeSwapMemory";
constexpr std::string_view battery = "batteryPercentage";
constexpr std::string_view adapters = "gpuInfo";
constexpr std::string_view adapterName = "gpuName";
constexpr std::string_view adapterMemory = "gpuMemoryUsage";
constexpr std::string_view cpuUsage = "cpuUsage";
constexpr std::string_view memoryUsage = "memoryUsage";
constexpr std::string_view fileDescriptors = "fileDescriptors";
constexpr std::string_view threads = "threadCount";
}  // namespace record

}  // namespace sentiq::grammar
