// The capture on providers that answer what the test says.
#include <nlohmann/json.hpp>

#include "capture/CaptureSettings.h"
#include "capture/DataCapture.h"
#include "capture/MetricCode.h"
#include "logging/TimeText.h"
#include "tests/support/Logs.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq {
namespace {

using namespace std::chrono_literals;
using testing::DoAll;
using testing::NiceMock;
using testing::Return;
using testing::SetArgReferee;
using Lines = std::vector<std::string>;

class MockSystem : public SentiqSystem {
 public:
  MOCK_METHOD(bool, getDiskSpace, (std::uint64_t&, std::uint64_t&, std::uint64_t&), (override));
  MOCK_METHOD(void, getGpuInfo, (std::vector<GpuInfo>&), (override));
  MOCK_METHOD(std::int32_t, getBatteryPercentage, (), (override));
  MOCK_METHOD(bool, getSwapMemory, (std::uint64_t&, std::uint64_t&, std::uint64_t&), (override));
  MOCK_METHOD(std::int64_t, getSystemStartTime, (), (override));
};

class MockProcess : public TargetProcess {
 public:
  MOCK_METHOD(void, setProcessId, (std::uint32_t), (override));
  MOCK_METHOD(std::string, getProcessName, (), (override));
  MOCK_METHOD(std::uint32_t, getProcessId, (), (override));
  MOCK_METHOD(std::uint64_t, getMemoryUsage, (), (override));
  MOCK_METHOD(double, getCpuUsage, (), (override));
  MOCK_METHOD(std::string, getStatus, (), (override));
  MOCK_METHOD(std::int64_t, getStartTime, (), (override));
  MOCK_METHOD(std::int32_t, getFileDescriptorCount, (), (override));
  MOCK_METHOD(std::uint32_t, getThreadCount, (), (override));
};

const Lines stopped = {"T Sentiq Data Capture and Reporting stopped"};
const Lines gone = {"T Exit Status - Canvix is no longer alive"};

struct Capture {
  explicit Capture(std::chrono::milliseconds interval = 1ms) : capture(ownSystem(), ownProcess(), interval) {
    settings.analyticsIdentifier = "session-1";
    settings.processId = 4242;
    settings.sessionLogPath = file.wstring();
    // The last question of each sample.
    ON_CALL(*process, getStatus()).WillByDefault([this] {
      ++samples;
      samples.notify_all();
      return "Running";
    });
  }
  std::unique_ptr<SentiqSystem> ownSystem() { return std::unique_ptr<SentiqSystem>(system); }
  std::unique_ptr<TargetProcess> ownProcess() { return std::unique_ptr<TargetProcess>(process); }

  void start(int untilSamples) {
    const int wanted = samples + untilSamples;
    capture.start(settings);
    for (int now = samples; now < wanted; now = samples) {
      samples.wait(now);
    }
  }

  // Without the records and the header, which stands in the file of the program's first capture.
  Lines otherLines() const {
    Lines lines = test::readLog(file);
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("T "); });
    return lines;
  }

  const test::TempFolder folder;
  const std::filesystem::path file = folder / "session.log";
  CaptureSettings settings;
  std::atomic<int> samples = 0;
  NiceMock<MockSystem>* const system = new NiceMock<MockSystem>;
  NiceMock<MockProcess>* const process = new NiceMock<MockProcess>;
  DataCapture capture;
};

// The first test, because the header comes with a program's first capture only.
TEST(DataCapture, HeaderStandsPlainAndOncePerProgramRun) {
  Capture c;
  c.settings.encodeLogs = true;
  for (int run = 0; run < 2; ++run) {
    c.start(2);
    c.capture.stop(/*processGone=*/true);
  }
  Lines lines = test::readLog(c.file);
  lines.resize(2);
  EXPECT_EQ(lines, (Lines{"OrbelSessionID: session-1", "ProcessID: 4242"}));
  EXPECT_EQ(c.otherLines(), (Lines{gone[0], gone[0]}));
  EXPECT_EQ(test::formOf(c.file).rfind('.'), 1u);
}

TEST(DataCapture, EachStopWritesOneLineHoweverSoonItComes) {
  Capture c;
  c.capture.stop(/*processGone=*/true);
  EXPECT_FALSE(std::filesystem::exists(c.file));
  Lines expected;
  for (int run = 0; run < 50; ++run) {
    c.start(run % 10 == 0 ? 1 : 0);
    c.capture.stop(/*processGone=*/run % 2 == 0);
    c.capture.stop(/*processGone=*/false);
    expected.push_back(run % 2 == 0 ? gone[0] : stopped[0]);
  }
  EXPECT_EQ(c.otherLines(), expected);
}

TEST(DataCapture, SecondStartPassesOnlyTheProcessIdOn) {
  Capture c;
  EXPECT_CALL(*c.process, setProcessId(4242));
  EXPECT_CALL(*c.process, setProcessId(7));
  c.start(1);
  CaptureSettings other = c.settings;
  other.processId = 7;
  other.sessionLogPath = (c.folder / "other.log").wstring();
  c.capture.start(other);
  c.capture.stop(/*processGone=*/false);
  EXPECT_FALSE(std::filesystem::exists(c.folder / "other.log"));
  EXPECT_EQ(c.otherLines(), stopped);
}

TEST(DataCapture, FileThatCannotBeOpenedIsTriedThreeTimesAndEndsTheCapture) {
  auto shortest = std::chrono::steady_clock::duration::max();
  for (int run = 0; run < 3; ++run) {  // On a busy machine one may take long.
    Capture c;
    EXPECT_CALL(*c.process, getStatus()).Times(0);
    c.settings.sessionLogPath = (c.folder / "missing" / "session.log").wstring();
    const auto begin = std::chrono::steady_clock::now();
    c.capture.start(c.settings);
    c.capture.stop(/*processGone=*/true);
    shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
    c.settings.sessionLogPath = c.file.wstring();
    c.capture.start(c.settings);  // It still counts as running.
    EXPECT_FALSE(std::filesystem::exists(c.file));
  }
  EXPECT_GE(shortest, 300ms);
  EXPECT_LT(shortest, 600ms);
}

TEST(DataCapture, FailedSamplesAreReportedAndRepeatedWithoutAPause) {
  Capture c(500ms);
  ON_CALL(*c.system, getBatteryPercentage()).WillByDefault([calls = 0]() mutable {
    return ++calls <= 50 ? throw std::runtime_error("no figures") : 57;
  });
  const auto begin = std::chrono::steady_clock::now();
  c.start(1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
  c.capture.stop(/*processGone=*/false);
  Lines expected(50, "T Error in CaptureData api: no figures");
  expected.push_back(stopped[0]);
  EXPECT_EQ(c.otherLines(), expected);
}

TEST(DataCapture, AsksForWhatIsSelectedInAFixedOrderAndForStartTimesOnce) {
  Capture c(300ms);  // One sample for each start.
  {
    const testing::InSequence fixed;
    EXPECT_CALL(*c.system, getSystemStartTime());
    EXPECT_CALL(*c.process, getProcessName());
    EXPECT_CALL(*c.process, getProcessId());
    EXPECT_CALL(*c.process, getStartTime());
    EXPECT_CALL(*c.process, getMemoryUsage());
    EXPECT_CALL(*c.process, getCpuUsage());
    for (const bool all : {true, false}) {
      EXPECT_CALL(*c.system, getGpuInfo);
      EXPECT_CALL(*c.system, getDiskSpace);
      EXPECT_CALL(*c.system, getBatteryPercentage());
      EXPECT_CALL(*c.system, getSwapMemory);
      EXPECT_CALL(*c.process, getThreadCount()).Times(all);
      EXPECT_CALL(*c.process, getFileDescriptorCount()).Times(all);
      EXPECT_CALL(*c.process, getStatus());
    }
  }
  for (const MetricSelection& selection : {MetricSelection{MetricCode::All}, defaultMetricSelection()}) {
    c.settings.metrics = selection;
    c.start(1);
    c.capture.stop(/*processGone=*/false);
  }
}

TEST(DataCapture, FiguresReachTheRecordUnlessAStartTimeIsUnknown) {
  const std::int64_t before = std::time(nullptr) - 90'061;
  for (const std::int64_t start : {before, std::int64_t{0}, std::int64_t{-1}}) {
    nlohmann::json record;
    {
      Capture c;
      const auto sizes = [](std::uint64_t total) {
        return DoAll(SetArgReferee<0>(total << 20), SetArgReferee<1>(2 << 20), SetArgReferee<2>(1 << 20), Return(true));
      };
      ON_CALL(*c.system, getDiskSpace).WillByDefault(sizes(3));
      ON_CALL(*c.system, getSwapMemory).WillByDefault(sizes(4));
      ON_CALL(*c.system, getBatteryPercentage()).WillByDefault(Return(57));
      ON_CALL(*c.system, getSystemStartTime()).WillByDefault(Return(start));
      ON_CALL(*c.process, getStartTime()).WillByDefault(Return(start));
      ON_CALL(*c.process, getProcessId()).WillByDefault(Return(4242));
      ON_CALL(*c.process, getMemoryUsage()).WillByDefault(Return(5 << 20));
      ON_CALL(*c.process, getCpuUsage()).WillByDefault(Return(0.5));
      ON_CALL(*c.process, getThreadCount()).WillByDefault(Return(9));
      ON_CALL(*c.process, getFileDescriptorCount()).WillByDefault(Return(-1));
      c.settings.metrics = {MetricCode::All};
      c.start(2);  // The first record is whole; the capture ends with its object.
      record = nlohmann::json::parse(test::readLog(c.file).at(0));
    }
    record.erase("timestamp");
    for (const char* key : {"systemUpTime", "appStartTime"}) {  // At most nine seconds later.
      record[key] = std::string(record[key]).substr(0, 9);
    }
    const std::string elapsed = start == before ? "1 01:01:0" : "";
    const std::string started = start == before ? formatLocalTime(start, "%b %d %H:%M:%S") : "";
    EXPECT_EQ(record.dump(), "{\"appStartTime\":\"" + elapsed +
                                 "\",\"batteryPercentage\":57,\"cpuUsage\":0.5,\"fgProcessName\":\"\"," +
                                 "\"fileDescriptors\":-1,\"freeDiskSpace\":1,\"freeSwapMemory\":1,\"memoryUsage\":5," +
                                 "\"processId\":4242,\"status\":\"Running\",\"systemStartTime\":\"" + started +
                                 "\",\"systemUpTime\":\"" + elapsed + "\",\"threadCount\":9,\"totalDiskSpace\":3," +
                                 "\"totalSwapMemory\":4,\"usedDiskSpace\":2,\"usedSwapMemory\":2}");
  }
}

}  // namespace
}  // namespace sentiq
