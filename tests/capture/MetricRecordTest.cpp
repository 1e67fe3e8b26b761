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
  EXPECT_EQ(defaultMetricSelection(), (MetricSelection{MetricCode{0}, MetricCode{1}, MetricCode{2}, MetricCode{5},
                                                       MetricCode{6}, MetricCode{10}}));
  const std::string optional[] = {"memoryUsage", "cpuUsage", "threadCount", "fileDescriptors"};
  const std::pair<MetricSelection, std::string> cases[] = {
      {{}, ""},
      {defaultMetricSelection(), ""},
      {{MetricCode{9}}, ""},
      {{MetricCode{3}}, "memoryUsage"},
      {{MetricCode{4}}, "cpuUsage"},
      {{MetricCode{7}}, "threadCount"},
      {{MetricCode{8}}, "fileDescriptors"},
      {{MetricCode{11}}, "all"},
  };
  const json whole = json::parse(recordOf({}));
  for (const auto& [selection, added] : cases) {
    json expected = whole;
    for (const std::string& key : optional) {
      if (added != key && added != "all") {
        expected.erase(key);
      }
    }
    json record = json::parse(recordOf({}, selection));
    record["timestamp"] = expected["timestamp"];
    EXPECT_EQ(record, expected);
  }
}

TEST(MetricRecord, IsCompactSortedAndInWholeMebibytes) {
  SystemMetrics system;
  system.totalDiskSpace = 1'048'576;
  system.usedDiskSpace = 1'048'575;
  system.freeDiskSpace = 7 << 20;
  system.totalSwapMemory = UINT64_MAX;
  system.usedSwapMemory = 8 << 20;
  system.freeSwapMemory = 9 << 20;
  system.systemStartTime = "Nov 16 02:13:25";
  system.systemUpTime = "2 03:04:05";
  system.fgProcessName = "front";
  system.gpuInfo.resize(2);
  system.gpuInfo[0].name = "Adapter \U0001F600";
  system.gpuInfo[0].dedicatedVideoMemory = 3 << 20;
  std::string text = recordOf(system);
  const std::size_t time = text.find("\"timestamp\":\"") + 13;
  ASSERT_EQ(text.substr(time + 28, 2), "\",");
  EXPECT_EQ(text.erase(time, 28),
            "{\"appStartTime\":\"0 00:00:59\",\"batteryPercentage\":\"Unknown\",\"cpuUsage\":0.0,"
            "\"fgProcessName\":\"front\",\"fileDescriptors\":-1,\"freeDiskSpace\":7,\"freeSwapMemory\":9,"
            "\"gpuInfo\":[{\"gpuMemoryUsage\":3,\"gpuName\":\"Adapter \U0001F600\"},"
            "{\"gpuMemoryUsage\":0,\"gpuName\":\"\"}],\"memoryUsage\":4,\"processId\":4000000000,"
            "\"status\":\"Running\",\"systemStartTime\":\"Nov 16 02:13:25\",\"systemUpTime\":\"2 03:04:05\","
            "\"threadCount\":9,\"timestamp\":\"\",\"totalDiskSpace\":1,\"totalSwapMemory\":17592186044415,"
            "\"usedDiskSpace\":0,\"usedSwapMemory\":8}");
  for (const auto& [percentage, value] : {std::pair<int, json>{-2, "No battery"}, {0, 0}, {57, 57}}) {
    system.batteryPercentage = percentage;
    EXPECT_EQ(json::parse(recordOf(system)).at("batteryPercentage"), value);
  }
  system.gpuInfo[1].name = "\xC3(";  // No UTF-8: the text stays as it was.
  EXPECT_EQ(recordOf(system), "");
}

TEST(ElapsedTimeText, CountsDaysAndPadsTheRest) {
  const std::pair<std::int64_t, const char*> cases[] = {
      {59, "0 00:00:59"}, {3'600, "0 01:00:00"}, {86'399, "0 23:59:59"}, {183'845, "2 03:04:05"}};
  for (const auto& [seconds, text] : cases) {
    EXPECT_EQ(elapsedTimeText(std::chrono::sys_seconds{}, std::chrono::sys_seconds{std::chrono::seconds{seconds}}),
              text);
  }
}

}  // namespace
}  // namespace sentiq
