// The capture on a machine and a process that answer what the test says.
#include "capture/DataCapture.h"
#include "logging/TimeText.h"
#include "tests/support/Test.h"

namespace sentiq {

// What a capture is answered, and what it asked.
struct Answers {
  std::string asked;
  std::vector<std::uint32_t> processIds;
  std::int64_t systemStart = -1, processStart = 0;
  std::uint64_t figures = 0;
  int failures = 0;              // Samples that are still to fail.
  std::atomic<int> samples = 0;  // Counted at the last question of each.
};
static Answers* answers;

static auto answer(const char* question, auto value) {
  answers->asked += std::string(question) + ' ';
  return value;
}

static bool figures(const char* question, std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) {
  for (std::uint64_t* const figure : {&total, &used, &free}) {
    *figure = ++answers->figures << 20;
  }
  return answer(question, true);
}

struct Fake : SentiqSystem, TargetProcess {
  bool getDiskSpace(std::uint64_t& a, std::uint64_t& b, std::uint64_t& c) override { return figures("disk", a, b, c); }
  void getGpuInfo(std::vector<GpuInfo>& adapters) override { adapters.resize(answer("gpu", 1)); }
  std::int32_t getBatteryPercentage() override {
    return answers->failures-- > 0 ? throw std::runtime_error("no figures") : answer("battery", 57);
  }
  bool getSwapMemory(std::uint64_t& a, std::uint64_t& b, std::uint64_t& c) override { return figures("swap", a, b, c); }
  std::int64_t getSystemStartTime() override { return answer("boot", answers->systemStart); }

  void setProcessId(std::uint32_t pid) override { answers->processIds.push_back(pid); }
  std::string getProcessName() override { return answer("name", "Canvix.exe"); }
  std::uint32_t getProcessId() override { return answer("id", 4242u); }
  std::uint64_t getMemoryUsage() override { return answer("memory", 8u << 20); }
  double getCpuUsage() override { return answer("cpu", 0.5); }
  std::string getStatus() override {
    ++answers->samples;
    return answer("status", "Running");
  }
  std::int64_t getStartTime() override { return answer("start", answers->processStart); }
  std::int32_t getFileDescriptorCount() override { return answer("descriptors", -1); }
  std::uint32_t getThreadCount() override { return answer("threads", 9u); }
};

static const std::string stopped = "T Sentiq Data Capture and Reporting stopped";
static const std::string gone = "T Exit Status - Canvix is no longer alive";

class Capture : public Answers {
 public:
  explicit Capture(std::chrono::milliseconds interval = 1ms)
      : capture(std::make_unique<Fake>(), std::make_unique<Fake>(), interval) {
    answers = this;
    settings.analyticsIdentifier = "session-1";
    settings.processId = 4242;
    settings.sessionLogPath = file.wstring();
  }

  void start(int untilSamples) {
    const int wanted = samples + untilSamples;
    capture.start(settings);
    while (samples < wanted) {
      std::this_thread::sleep_for(1ms);
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
  DataCapture capture;
};

// The header comes with a program's first capture only: whichever test runs first, this one, started twice, came
// before.
static const auto firstCapture = [] {
  Capture c;
  c.settings.encodeLogs = true;
  for (int run = 0; run < 2; ++run) {
    c.start(2);
    c.capture.stop(/*processGone=*/true);
  }
  return std::pair(readLog(c.file), formOf(c.file));
}();

TEST(DataCapture, HeaderStandsPlainAndOncePerProgramRun) {
  const auto& [lines, form] = firstCapture;
  EXPECT_EQ(lines.at(0) + lines.at(1), "OrbelSessionID: session-1ProcessID: 4242");
  EXPECT_EQ(form.rfind('.'), 1u);
}

// A second start changes only the process id.
TEST(DataCapture, EachStopWritesOneLineHoweverSoonItComes) {
  Capture c;
  c.capture.stop(/*processGone=*/true);
  CaptureSettings other = c.settings;
  other.processId = 7;
  other.sessionLogPath += L".other";
  Lines expected;
  for (int run = 0; run < 50; ++run) {
    c.start(run % 10 == 0 ? 1 : 0);
    c.capture.start(other);
    EXPECT_EQ(std::exchange(c.processIds, {}), (std::vector{4242u, 7u}));
    c.capture.stop(/*processGone=*/run % 2 == 0);
    c.capture.stop(/*processGone=*/false);
    expected.push_back(run % 2 == 0 ? gone : stopped);
  }
  EXPECT_EQ(c.otherLines(), expected);
  EXPECT_FALSE(std::filesystem::exists(other.sessionLogPath));
}

TEST(DataCapture, FileThatCannotBeOpenedIsTriedThreeTimesAndEndsTheCapture) {
  auto shortest = std::chrono::steady_clock::duration::max();
  for (int run = 0; run < 3; ++run) {  // On a busy machine one may take long.
    Capture c;
    c.settings.sessionLogPath = (c.folder / "missing" / "session.log").wstring();
    const auto begin = std::chrono::steady_clock::now();
    c.start(0);
    c.capture.stop(/*processGone=*/true);
    shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
    std::filesystem::create_directory(c.folder / "missing");
    c.start(0);  // It still counts as running.
    EXPECT_EQ(c.asked, "");
  }
  EXPECT_THAT(shortest, AllOf(Ge(300ms), Lt(600ms)));
}

TEST(DataCapture, FailedSamplesAreReportedAndRepeatedWithoutAPause) {
  Capture c(500ms);
  c.settings.encodeLogs = true;
  c.failures = 50;
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
  for (const MetricSelection& selection : {MetricSelection{MetricCode::All}, defaultMetricSelection()}) {
    c.settings.metrics = selection;
    c.start(1);
    c.capture.stop(/*processGone=*/false);
  }
  EXPECT_EQ(c.asked,
            "boot name id start memory cpu gpu disk battery swap threads descriptors status "
            "gpu disk battery swap status ");
  EXPECT_THAT(
      readFile(c.file),
      AllOf(HasSubstr(R"({"appStartTime":"","batteryPercentage":57,"cpuUsage":0.5,"fgProcessName":"",)"
                      R"("fileDescriptors":-1,"freeDiskSpace":3,"freeSwapMemory":6,)"
                      R"("gpuInfo":[{"gpuMemoryUsage":0,"gpuName":""}],"memoryUsage":8,"processId":4242,)"
                      R"("status":"Running","systemStartTime":"","systemUpTime":"","threadCount":9,"timestamp":"20)"),
            HasSubstr(R"(00","totalDiskSpace":1,"totalSwapMemory":4,"usedDiskSpace":2,"usedSwapMemory":5})")));
}

TEST(DataCapture, StartTimesBecomeTexts) {
  Capture c;
  const std::int64_t now = std::time(nullptr);
  c.systemStart = 1'599'307'200;  // Of a day with one digit.
  c.processStart = now - 90'061;
  c.start(2);  // The first record is whole; the capture ends with its object.
  for (const std::string& part :
       Lines{"appStartTime\":\"1 01:01:0", "\"" + formatLocalTime(c.systemStart, "%b %d %H:%M:%S") + "\"",
             "systemUpTime\":\"" + std::to_string((now - c.systemStart) / 86'400) + " "}) {
    EXPECT_THAT(readFile(c.file), HasSubstr(part));
  }
}

}  // namespace sentiq
