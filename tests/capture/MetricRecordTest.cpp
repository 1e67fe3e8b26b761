#include <set>
#include <string_view>

#include <nlohmann/json.hpp>

#include "capture/MetricRecord.h"
#include "tests/support/Test.h"

namespace sentiq {
namespace {

using nlohmann::json;

std::string recordOf(const SystemMetrics& system, const MetricSelection& selection = {MetricCode::All}) {
  ProcessMetrics process;
  process.processId = 4'000'000'000;
  process.processName = "Canvix.exe";
  process.memoryUsage = (5 << 20) - 1;
  process.status = "Running";
  process.appStartTime = "0 00:00:59";
  process.fileDescriptors = -1;
  process.threadCount = 9;
  std::string text;
  buildMetricRecord(system, process, text, selection);
  return text;
}

TEST(MetricRecord, SelectionDecidesTheOptionalKeysOnly) {
  const struct {
    MetricSelection selection;
    std::set<std::string> added;
  } cases[] = {
      {{MetricCode::StartTimesAndIdentity}, {}},
      {defaultMetricSelection(), {}},
      {{MetricCode::MemoryUsage}, {"memoryUsage"}},
      {{MetricCode::CpuUsage}, {"cpuUsage"}},
      {{MetricCode::ThreadCount}, {"threadCount"}},
      {{MetricCode::FileDescriptors}, {"fileDescriptors"}},
      {{MetricCode::All}, {"cpuUsage", "memoryUsage", "fileDescriptors", "threadCount"}},
  };
  for (const auto& [selection, added] : cases) {
    std::set<std::string> keys = {"appStartTime",    "batteryPercentage", "fgProcessName",  "freeDiskSpace",
                                  "freeSwapMemory",  "processId",         "status",         "systemUpTime",
                                  "systemStartTime", "timestamp",         "totalDiskSpace", "totalSwapMemory",
                                  "usedDiskSpace",   "usedSwapMemory"};
    keys.insert(added.begin(), added.end());
    std::set<std::string> found;
    const json record = json::parse(recordOf({}, selection));
    for (const auto& item : record.items()) {
      found.insert(item.key());
    }
    EXPECT_EQ(found, keys);
  }
  EXPECT_EQ(defaultMetricSelection(), (MetricSelection{MetricCode{0}, MetricCode{1}, MetricCode{2}, MetricCode{5},
                                                       MetricCode{6}, MetricCode{10}}));
}

TEST(MetricRecord, IsCompactSortedAndInWholeMebibytes) {
  SystemMetrics system;
  system.totalDiskSpace = 1'048'576;
  system.usedDiskSpace = 1'048'575;
  system.totalSwapMemory = UINT64_MAX;
  system.systemStartTime = "Nov 16 02:13:25";
  system.systemUpTime = "2 03:04:05";
  system.gpuInfo.resize(2);
  system.gpuInfo[0].name = "Adapter \U0001F600";
  system.gpuInfo[0].dedicatedVideoMemory = 3 << 20;
  std::string text = recordOf(system);
  const std::size_t time = text.find("\"timestamp\":\"") + 13;
  ASSERT_EQ(text.substr(time + 28, 2), "\",");
  EXPECT_EQ(text.erase(time, 28),
            "{\"appStartTime\":\"0 00:00:59\",\"batteryPercentage\":\"Unknown\",\"cpuUsage\":0.0,"
            "\"fgProcessName\":\"\",\"fileDescriptors\":-1,\"freeDiskSpace\":0,\"freeSwapMemory\":0,"
            "\"gpuInfo\":[{\"gpuMemoryUsage\":3,\"gpuName\":\"Adapter \U0001F600\"},"
            "{\"gpuMemoryUsage\":0,\"gpuName\":\"\"}],\"memoryUsage\":4,\"processId\":4000000000,"
            "\"status\":\"Running\",\"systemStartTime\":\"Nov 16 02:13:25\",\"systemUpTime\":\"2 03:04:05\","
            "\"threadCount\":9,\"timestamp\":\"\",\"totalDiskSpace\":1,\"totalSwapMemory\":17592186044415,"
            "\"usedDiskSpace\":0,\"usedSwapMemory\":0}");
}

TEST(MetricRecord, BatteryIsATextOrANumber) {
  for (const auto& [percentage, value] : {std::pair<int, json>{-2, "No battery"}, {-1, "Unknown"}, {57, 57}}) {
    SystemMetrics system;
    system.batteryPercentage = percentage;
    EXPECT_EQ(json::parse(recordOf(system)).at("batteryPercentage"), value);
  }
}

TEST(MetricRecord, InvalidUtf8LeavesTheTextAsItWas) {
  SystemMetrics system;
  system.gpuInfo.resize(1);
  system.gpuInfo[0].name = "\xC3(";
  EXPECT_EQ(recordOf(system), "");
}

TEST(ElapsedTimeText, CountsDaysAndPadsTheRest) {
  const struct {
    std::int64_t seconds;
    std::string_view text;
  } cases[] = {{0, "0 00:00:00"},      {59, "0 00:00:59"},      {3'600, "0 01:00:00"},          {86'399, "0 23:59:59"},
               {86'400, "1 00:00:00"}, {183'845, "2 03:04:05"}, {864'000'000, "10000 00:00:00"}};
  const std::chrono::sys_seconds start{std::chrono::seconds{1'700'000'000}};
  for (const auto& [seconds, text] : cases) {
    EXPECT_EQ(elapsedTimeText(start, start + std::chrono::seconds{seconds}), text);
  }
}

}  // namespace
}  // namespace sentiq
