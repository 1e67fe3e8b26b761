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
  const std::map<int, const char*> optional = {
      {3, "memoryUsage"}, {4, "cpuUsage"}, {7, "threadCount"}, {8, "fileDescriptors"}};
  for (int code = 0; code <= 11; ++code) {
    const json record = json::parse(recordOf({}, {MetricCode{code}}));
    EXPECT_EQ(record.size(), code == 11 ? 18u : 14u + optional.count(code)) << code;
    for (const auto& [of, key] : optional) {
      EXPECT_EQ(record.contains(key), code == of || code == 11) << key;
    }
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
