#include <nlohmann/json.hpp>

#include "capture/CaptureSettings.h"
#include "capture/DataCapture.h"
#include "capture/MetricCode.h"
#include "tests/capture/FakeProviders.h"
#include "tests/support/Decode.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"

namespace sentiq {
namespace {

using namespace std::chrono_literals;
using test::fakeCapture;
using test::FakeFigures;
using testing::AnyOf;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

const std::string stopped = test::stamp + " Sentiq Data Capture and Reporting stopped";
const std::string processGone = test::stamp + " Exit Status - Canvix is no longer alive";

CaptureSettings settingsFor(const std::filesystem::path& file, bool encodeLogs = false) {
  CaptureSettings settings;
  settings.analyticsIdentifier = "session-1";
  settings.processId = 4242;
  settings.sessionLogPath = file.wstring();
  settings.encodeLogs = encodeLogs;
  return settings;
}

class DataCaptureTest : public testing::Test {
 protected:
  // The header comes with the program's first capture only: an encoded one, and a plain one after it.
  static void SetUpTestSuite() {
    const test::TempFolder folder;
    FakeFigures figures;
    const auto capture = fakeCapture(figures, 1ms);
    capture->start(settingsFor(folder / "encoded.log", /*encodeLogs=*/true));
    figures.waitForSamples(2);
    capture->stop(/*processGone=*/true);
    capture->start(settingsFor(folder / "plain.log"));
    capture->stop(/*processGone=*/false);
    encoded_ = test::linesOf(test::readFile(folder / "encoded.log"));
    plain_ = test::readFile(folder / "plain.log");
  }

  // The lines but the header and the records; those must be records.
  std::vector<std::string> otherLines() const {
    std::vector<std::string> lines;
    for (const std::string& line : test::linesOf(test::readFile(file_))) {
      if (line.front() == '{') {
        EXPECT_EQ(nlohmann::json::parse(line).at("status"), "Running");
      } else {
        lines.push_back(test::masked(line));
      }
    }
    return lines;
  }

  inline static std::vector<std::string> encoded_;
  inline static std::string plain_;
  const test::TempFolder folder_;
  const std::filesystem::path file_ = folder_ / "session.log";
  FakeFigures figures_;
};

TEST_F(DataCaptureTest, HeaderStandsPlainAndOncePerProgramRun) {
  ASSERT_GE(encoded_.size(), 5u);
  EXPECT_EQ(encoded_[0], "OrbelSessionID: session-1");
  EXPECT_EQ(encoded_[1], "ProcessID: 4242");
  int closing = 0;
  for (auto line = encoded_.begin() + 2; line != encoded_.end(); ++line) {
    const std::string text = test::decodeLine(*line);
    closing += test::masked(text) == processGone;
    EXPECT_THAT(text, AnyOf(StartsWith("{\"appStartTime\""), HasSubstr(" Exit Status ")));
  }
  EXPECT_EQ(closing, 1);
  EXPECT_EQ(plain_.find("OrbelSessionID"), std::string::npos);
  EXPECT_NE(plain_.find("Sentiq Data Capture and Reporting stopped"), std::string::npos);
}

TEST_F(DataCaptureTest, SecondStartPassesOnlyTheProcessIdOn) {
  const auto capture = fakeCapture(figures_, 1ms);
  capture->start(settingsFor(file_));
  figures_.waitForSamples(1);
  CaptureSettings other = settingsFor(folder_ / "other.log");
  other.processId = 7;
  capture->start(other);
  figures_.waitForSamples(3);
  capture->stop(/*processGone=*/false);
  EXPECT_EQ(figures_.pid, 7u);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "other.log"));
  EXPECT_EQ(otherLines(), std::vector{stopped});
}

TEST_F(DataCaptureTest, StopWritesOneLineAndCaptureCanStartAgain) {
  const auto capture = fakeCapture(figures_, 50ms);
  capture->stop(/*processGone=*/true);
  EXPECT_FALSE(std::filesystem::exists(file_));
  for (const bool gone : {false, true}) {
    const int before = figures_.samples;
    capture->start(settingsFor(file_));
    figures_.waitForSamples(before + 1);
    capture->stop(gone);
    capture->stop(gone);
  }
  EXPECT_EQ(otherLines(), (std::vector{stopped, processGone}));
}

// However soon the monitored process ends, the closing line is there.
TEST_F(DataCaptureTest, StopRightAfterStartLosesNoLine) {
  const auto capture = fakeCapture(figures_, 0ms);
  for (int i = 0; i < 50; ++i) {
    capture->start(settingsFor(file_));
    capture->stop(/*processGone=*/true);
  }
  EXPECT_EQ(otherLines(), std::vector(50, processGone));
}

TEST_F(DataCaptureTest, FileThatCannotBeOpenedIsTriedThreeTimesAndEndsTheCapture) {
  const auto begin = std::chrono::steady_clock::now();
  const auto capture = fakeCapture(figures_, 1ms);
  capture->start(settingsFor(folder_ / "missing" / "session.log"));
  capture->stop(/*processGone=*/true);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 300ms);
  capture->start(settingsFor(file_));
  EXPECT_EQ(figures_.samples, 0);
  EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(DataCaptureTest, FailedSamplesAreReportedAndRepeatedWithoutAPause) {
  figures_.failures = 50;
  const auto begin = std::chrono::steady_clock::now();
  const auto capture = fakeCapture(figures_, 500ms);
  capture->start(settingsFor(file_));
  figures_.waitForSamples(51);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
  capture->stop(/*processGone=*/false);
  std::vector expected(50, test::stamp + " Error in CaptureData api: no figures");
  expected.push_back(stopped);
  EXPECT_EQ(otherLines(), expected);
}

TEST_F(DataCaptureTest, DestructorEndsTheCaptureWithoutALine) {
  auto capture = fakeCapture(figures_, 1ms);
  capture->start(settingsFor(file_));
  figures_.waitForSamples(1);
  capture.reset();
  EXPECT_EQ(otherLines(), std::vector<std::string>{});
}

TEST_F(DataCaptureTest, CollectsWhatIsSelectedInAFixedOrderAndAsksStartTimesOnce) {
  figures_.keepCalls = true;
  const auto capture = fakeCapture(figures_, 1ms);
  std::vector<std::string> calls;
  for (const MetricSelection& selection : {MetricSelection{MetricCode::All}, defaultMetricSelection()}) {
    figures_.calls.clear();
    CaptureSettings settings = settingsFor(file_);
    settings.metrics = selection;
    const int before = figures_.samples;
    capture->start(settings);
    figures_.waitForSamples(before + 2);
    capture->stop(/*processGone=*/false);
    calls.insert(calls.end(), figures_.calls.begin(),
                 std::find(figures_.calls.begin(), figures_.calls.end(), "status"));
  }
  EXPECT_THAT(calls, ElementsAreArray({"system start", "name", "id", "start", "memory", "cpu", "gpu", "disk", "battery",
                                       "swap", "threads", "descriptors", "gpu", "disk", "battery", "swap"}));
}

TEST_F(DataCaptureTest, FiguresReachTheRecordUnlessAStartTimeIsUnknown) {
  for (const std::int64_t start : {1'600'000'000, 0, -1}) {
    FakeFigures figures;
    figures.startSeconds = start;
    const test::TempFolder folder;
    auto capture = fakeCapture(figures, 1ms);
    capture->start(settingsFor(folder / "session.log"));
    figures.waitForSamples(1);
    capture.reset();
    const auto record = nlohmann::json::parse(test::linesOf(test::readFile(folder / "session.log")).front());
    EXPECT_EQ(record["totalDiskSpace"], 3);
    EXPECT_EQ(record["batteryPercentage"], 57);
    EXPECT_EQ(record["processId"], 4242);
    const std::string elapsed = start > 0 ? ".+ ..:..:.." : "";
    EXPECT_THAT(std::string(record["systemUpTime"]), MatchesRegex(elapsed));
    EXPECT_THAT(std::string(record["appStartTime"]), MatchesRegex(elapsed));
    EXPECT_THAT(std::string(record["systemStartTime"]), MatchesRegex(start > 0 ? "Sep 1. ..:..:40" : ""));
  }
}

}  // namespace
}  // namespace sentiq
