// The capture on providers that answer what the test says.
#include "capture/DataCapture.h"
#include "logging/TimeText.h"
#include "tests/support/Test.h"

namespace sentiq {

struct MockSystem : SentiqSystem {
  MOCK_METHOD(bool, getDiskSpace, (std::uint64_t&, std::uint64_t&, std::uint64_t&), (override));
  MOCK_METHOD(void, getGpuInfo, (std::vector<GpuInfo>&), (override));
  MOCK_METHOD(std::int32_t, getBatteryPercentage, (), (override));
  MOCK_METHOD(bool, getSwapMemory, (std::uint64_t&, std::uint64_t&, std::uint64_t&), (override));
  MOCK_METHOD(std::int64_t, getSystemStartTime, (), (override));
};

struct MockProcess : TargetProcess {
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

static const std::string stopped = "T Sentiq Data Capture and Reporting stopped";
static const std::string gone = "T Exit Status - Canvix is no longer alive";

class Capture {
 public:
  explicit Capture(std::chrono::milliseconds interval = 1ms)
      : capture(std::unique_ptr<MockSystem>(system), std::unique_ptr<MockProcess>(process), interval) {
    settings.analyticsIdentifier = "session-1";
    settings.processId = 4242;
    settings.sessionLogPath = file.wstring();
    ON_CALL(*process, getStatus()).WillByDefault([this] { return ++samples, samples.notify_all(), "Running"; });
  }

  void start(int untilSamples) {
    const int wanted = samples + untilSamples;
    capture.start(settings);
    for (int now = samples; now < wanted; now = samples) {
      samples.wait(now);
    }
  }

  // Without the records and the header, which stands in the file of the program's first capture.
  Lines otherLines() const {
    Lines lines = readLog(file);
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("T "); });
    return lines;
  }

  const TempFolder folder;
  const std::filesystem::path file = folder / "session.log";
  CaptureSettings settings;
  std::atomic<int> samples = 0;  // Counted at the last question of each.
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
  EXPECT_EQ(readLog(c.file).at(0) + readLog(c.file).at(1), "OrbelSessionID: session-1ProcessID: 4242");
  EXPECT_EQ(formOf(c.file).rfind('.'), 1u);
}

// A second start changes only the process id.
TEST(DataCapture, EachStopWritesOneLineHoweverSoonItComes) {
  Capture c;
  c.capture.stop(/*processGone=*/true);
  EXPECT_CALL(*c.process, setProcessId(4242)).Times(50);
  EXPECT_CALL(*c.process, setProcessId(7)).Times(50);
  Lines expected;
  for (int run = 0; run < 50; ++run) {
    c.start(run % 10 == 0 ? 1 : 0);
    CaptureSettings other = c.settings;
    other.processId = 7;
    other.sessionLogPath += L".other";
    c.capture.start(other);
    c.capture.stop(/*processGone=*/run % 2 == 0);
    c.capture.stop(/*processGone=*/false);
    expected.push_back(run % 2 == 0 ? gone : stopped);
  }
  EXPECT_EQ(c.otherLines(), expected);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(c.folder / ""), {}), 1);
}

TEST(DataCapture, FileThatCannotBeOpenedIsTriedThreeTimesAndEndsTheCapture) {
  auto shortest = std::chrono::steady_clock::duration::max();
  for (int run = 0; run < 3; ++run) {  // On a busy machine one may take long.
    Capture c;
    EXPECT_CALL(*c.process, getStatus()).Times(0);
    c.settings.sessionLogPath = (c.folder / "missing" / "session.log").wstring();
    const auto begin = std::chrono::steady_clock::now();
    c.start(0);
    c.capture.stop(/*processGone=*/true);
    shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
    std::filesystem::create_directory(c.folder / "missing");
    c.start(0);  // It still counts as running.
  }
  EXPECT_THAT(shortest, AllOf(Ge(300ms), Lt(600ms)));
}

TEST(DataCapture, FailedSamplesAreReportedAndRepeatedWithoutAPause) {
  Capture c(500ms);
  c.settings.encodeLogs = true;
  ON_CALL(*c.system, getBatteryPercentage()).WillByDefault([calls = 0]() mutable {
    return ++calls <= 50 ? throw std::runtime_error("no figures") : 57;
  });
  const auto begin = std::chrono::steady_clock::now();
  c.start(1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
  c.capture.stop(/*processGone=*/false);
  Lines expected(50, "T Error in CaptureData api: no figures");
  expected.push_back(stopped);
  EXPECT_EQ(c.otherLines(), expected);
  EXPECT_THAT(formOf(c.file), EndsWith(std::string(51, '#')));
}

TEST(DataCapture, CollectsWhatIsSelectedInAFixedOrderAndStartTimesOnce) {
  Capture c(2s);  // One sample for each start, on a busy machine, too.
  const auto figures = [](std::uint64_t total, std::uint64_t used, std::uint64_t free) {
    return DoAll(SetArgReferee<0>(total << 20), SetArgReferee<1>(used << 20), SetArgReferee<2>(free << 20),
                 Return(true));
  };
  ON_CALL(*c.process, getThreadCount()).WillByDefault(Return(9));
  ON_CALL(*c.process, getFileDescriptorCount()).WillByDefault(Return(-1));
  const MetricSelection selections[] = {{MetricCode::All}, defaultMetricSelection()};
  {
    const InSequence fixed;
    EXPECT_CALL(*c.system, getSystemStartTime()).WillOnce(Return(-1));
    EXPECT_CALL(*c.process, getProcessName());
    EXPECT_CALL(*c.process, getProcessId()).WillOnce(Return(4242));
    EXPECT_CALL(*c.process, getStartTime());
    EXPECT_CALL(*c.process, getMemoryUsage()).WillOnce(Return(8 << 20));
    EXPECT_CALL(*c.process, getCpuUsage()).WillOnce(Return(0.5));
    for (const int all : {1, 0}) {
      EXPECT_CALL(*c.system, getGpuInfo).WillOnce(SetArgReferee<0>(std::vector<GpuInfo>(all)));
      EXPECT_CALL(*c.system, getDiskSpace).WillOnce(figures(3, 2, 1));
      EXPECT_CALL(*c.system, getBatteryPercentage()).WillOnce(Return(57));
      EXPECT_CALL(*c.system, getSwapMemory).WillOnce(figures(6, 5, 4));
      EXPECT_CALL(*c.process, getThreadCount()).Times(all);
      EXPECT_CALL(*c.process, getFileDescriptorCount()).Times(all);
      EXPECT_CALL(*c.process, getStatus());
    }
  }
  for (const MetricSelection& selection : selections) {
    c.settings.metrics = selection;
    c.start(1);
    c.capture.stop(/*processGone=*/false);
  }
  std::string record = readFile(c.file);
  record.erase(0, record.find('{'));
  record.erase(record.find_first_of("\r\n"));
  const std::size_t time = record.find("\"timestamp\":\"") + 13;
  EXPECT_EQ(masked(record.substr(time, 28) + " "), "T ");
  EXPECT_EQ(record.erase(time, 28),
            R"({"appStartTime":"","batteryPercentage":57,"cpuUsage":0.5,"fgProcessName":"","fileDescriptors":-1,)"
            R"("freeDiskSpace":1,"freeSwapMemory":4,"gpuInfo":[{"gpuMemoryUsage":0,"gpuName":""}],"memoryUsage":8,)"
            R"("processId":4242,"status":"Running","systemStartTime":"","systemUpTime":"","threadCount":9,)"
            R"("timestamp":"","totalDiskSpace":3,"totalSwapMemory":6,"usedDiskSpace":2,"usedSwapMemory":5})");
}

TEST(DataCapture, StartTimesBecomeTexts) {
  Capture c;
  const std::int64_t now = std::time(nullptr), start = 1'599'307'200;  // Of a day with one digit.
  ON_CALL(*c.system, getSystemStartTime()).WillByDefault(Return(start));
  ON_CALL(*c.process, getStartTime()).WillByDefault(Return(now - 90'061));
  c.start(2);  // The first record is whole; the capture ends with its object.
  for (const std::string& part :
       Lines{"appStartTime\":\"1 01:01:0", "systemStartTime\":\"" + formatLocalTime(start, "%b %d %H:%M:%S") + "\"",
             "systemUpTime\":\"" + std::to_string((now - start) / 86'400) + " "}) {
    EXPECT_THAT(readFile(c.file), HasSubstr(part));
  }
}

}  // namespace sentiq
