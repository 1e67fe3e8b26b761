// The whole record stands in the test of the capture; here are the cases.
#include <map>

#include <nlohmann/json.hpp>

#include "capture/MetricRecord.h"
#include "tests/support/Test.h"

namespace sentiq {

using nlohmann::json;

static std::string recordOf(const SystemMetrics& system, const MetricSelection& selection = {MetricCode::All}) {
  ProcessMetrics process;
  process.processId = 4'000'000'000;
  process.memoryUsage = (5 << 20) - 1;
  std::string text;
  buildMetricRecord(system, process, text, selection);
  return text;
}

TEST(MetricRecord, SelectionDecidesTheOptionalKeysOnly) {
  EXPECT_EQ(defaultMetricSelection(), (MetricSelection{MetricCode{0}, MetricCode{1}, MetricCode{2}, MetricCode{5},
                                                       MetricCode{6}, MetricCode{10}}));
  const std::map<int, std::string> cases = {{0, ""},
                                            {3, "memoryUsage"},
                                            {4, "cpuUsage"},
                                            {7, "threadCount"},
                                            {8, "fileDescriptors"},
                                            {9, ""},
                                            {11, "memoryUsage cpuUsage threadCount fileDescriptors"}};
  for (const auto& [code, added] : cases) {
    const json record = json::parse(recordOf({}, {MetricCode{code}}));
    std::size_t keys = 14;
    for (const char* key : {"memoryUsage", "cpuUsage", "threadCount", "fileDescriptors"}) {
      EXPECT_EQ(record.contains(key), added.find(key) != std::string::npos) << key;
      keys += record.contains(key);
    }
    EXPECT_EQ(record.size(), keys);
  }
}

TEST(MetricRecord, WholeMebibytesAndTexts) {
  SystemMetrics system;
  system.totalDiskSpace = 1'048'576;
  system.usedDiskSpace = 1'048'575;
  system.totalSwapMemory = UINT64_MAX;
  system.systemStartTime = "Nov 16 02:13:25";
  system.fgProcessName = "front";
  system.gpuInfo.resize(1);
  system.gpuInfo[0].name = "Adapter \U0001F600";
  system.gpuInfo[0].dedicatedVideoMemory = 3 << 20;
  for (const char* part : {R"("cpuUsage":0.0,"fgProcessName":"front",)", R"("memoryUsage":4,"processId":4000000000,)",
                           "\"gpuInfo\":[{\"gpuMemoryUsage\":3,\"gpuName\":\"Adapter \U0001F600\"}],",
                           R"("systemStartTime":"Nov 16 02:13:25",)",
                           R"("totalDiskSpace":1,"totalSwapMemory":17592186044415,"usedDiskSpace":0,)"}) {
    EXPECT_THAT(recordOf(system), HasSubstr(part));
  }
  for (const auto& [percentage, value] : {std::pair<int, json>{-2, "No battery"}, {-1, "Unknown"}, {0, 0}}) {
    system.batteryPercentage = percentage;
    EXPECT_EQ(json::parse(recordOf(system)).at("batteryPercentage"), value);
  }
  system.gpuInfo[0].name = "\xC3(";  // No UTF-8: the text stays as it was.
  EXPECT_EQ(recordOf(system), "");
}

TEST(ElapsedTimeText, CountsDaysAndPadsTheRest) {
  const std::pair<int, const char*> cases[] = {
      {59, "0 00:00:59"}, {3'600, "0 01:00:00"}, {86'399, "0 23:59:59"}, {183'845, "2 03:04:05"}};
  for (const auto& [seconds, text] : cases) {
    EXPECT_EQ(elapsedTimeText(std::chrono::sys_seconds{}, std::chrono::sys_seconds{seconds * 1s}), text);
  }
}

}  // namespace sentiq
