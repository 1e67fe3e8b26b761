// The readers, unchanged, on the stand-in for the system's event log.
#include <nlohmann/json.hpp>

#include "logging/WatchdogLog.h"
#include "tests/support/Test.h"
#include "tests/support/TestFiles.h"
#include "watchdog/EventLogReader.h"

namespace sentiq {
namespace {

using test::linesOf;
using test::masked;
using test::processHead;
using test::readFile;
using testing::ElementsAre;

std::string event(int number, int id, const std::string& data) {
  return "<Event xmlns='x'><System><EventID Qualifiers='0'>" + std::to_string(id) + "</EventID><EventRecordID>" +
         std::to_string(number) + "</EventRecordID></System><EventData><Data>1</Data><Data>" + data +
         "</Data></EventData></Event>";
}

class EventLogReader : public testing::Test {
 protected:
  EventLogReader() {
    configureWatchdogLog(1, log_.wstring(), initial_.wstring(), false);
    SetEnvironmentVariableW(L"SENTIQ_EVENTS", (folder_ / "").c_str());
  }
  ~EventLogReader() override { SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", nullptr); }

  void fill(const std::string& channel, const std::vector<std::string>& events) {
    std::ofstream file(folder_ / (channel + ".xml"), std::ios::binary);
    for (const std::string& text : events) {
      file << text << '\n';
    }
  }

  // count events numbered from 1 on.
  void fill(const std::string& channel, int count, int id, const std::string& data) {
    std::vector<std::string> events;
    for (int number = 1; number <= count; ++number) {
      events.push_back(event(number, id, data));
    }
    fill(channel, events);
  }

  // What stands behind the head of each line since the last call: an event's record number, or the text itself.
  std::vector<std::string> take(const std::filesystem::path& log) {
    std::vector<std::string> texts;
    for (const std::string& line : linesOf(readFile(log))) {
      std::string text = masked(line);
      EXPECT_EQ(text.substr(0, processHead.size()), processHead);
      text.erase(0, processHead.size());
      if (!text.empty() && text[0] == '{') {
        const std::string xml = nlohmann::json::parse(text).at("xmlData");
        const auto at = xml.find("<EventRecordID>") + 15;
        text = xml.substr(at, xml.find('<', at) - at);
      }
      texts.push_back(text);
    }
    std::filesystem::remove(log);
    return texts;
  }

  static int openHandles() {
    const auto count = reinterpret_cast<int (*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"wevtapi.dll"), "openEventHandles")));
    return count == nullptr ? -1 : count();
  }

  test::TempFolder folder_;
  std::filesystem::path log_ = folder_ / "watchdog.log";
  std::filesystem::path initial_ = folder_ / "initial.log";
};

TEST_F(EventLogReader, QueriesFindWhatTheyAreMeantFor) {
  fill("Application", {event(1, 1000, "Canvix.exe"), event(2, 1001, "Canvix.exe"), event(3, 1000, "Other.exe"),
                       event(4, 1002, "Canvix.exe"), event(5, 10001, "Canvix.exe"), event(6, 1000, "Canvix.exe ")});
  fill("System", {event(1, 1074, ""), event(2, 6006, ""), event(3, 6008, ""), event(4, 109, ""), event(5, 41, ""),
                  event(6, 42, ""), event(7, 6005, ""), event(8, 1000, "")});
  readAppTerminationEvents(L"Application", LogTarget::WatchdogInitialLog);
  EXPECT_THAT(take(initial_), ElementsAre("2", "1"));
  readShutdownEvents(L"System", LogTarget::WatchdogLog);
  EXPECT_THAT(take(log_), ElementsAre("5", "4", "3", "2", "1"));
  readAppTerminationEvents(L"System", LogTarget::WatchdogInitialLog);
  EXPECT_FALSE(std::filesystem::exists(initial_));
  dumpEventLogs();
  EXPECT_THAT(take(log_), ElementsAre("App dumping Application log:", "6", "5", "4", "3", "2", "1",
                                      "App dumping System log:", "8", "7", "6", "5", "4", "3", "2", "1"));
  EXPECT_EQ(openHandles(), 0);
}

TEST_F(EventLogReader, AChannelThatCannotBeOpened) {
  readShutdownEvents(L"System", LogTarget::WatchdogInitialLog);
  EXPECT_THAT(take(initial_), ElementsAre("EvtQuery failed"));
  testing::internal::CaptureStdout();
  dumpChannel(L"System");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "EvtQuery failed for System with error: 15007\n");
  EXPECT_FALSE(std::filesystem::exists(log_));
}

TEST_F(EventLogReader, NeverReadsMoreThanTheLimit) {
  fill("Application", 10'000, 1000, "Canvix.exe");
  readAppTerminationEvents(L"Application", LogTarget::WatchdogInitialLog);
  auto lines = take(initial_);
  ASSERT_GE(lines.size(), 100u);
  EXPECT_EQ(lines[0] + " " + lines[99], "10000 9901");
  // Whatever error the last call before the check left decides about this line.
  EXPECT_LE(lines.size(), 101u);
  dumpChannel(L"Application");
  lines = take(log_);
  ASSERT_GE(lines.size(), 500u);
  EXPECT_LE(lines.size(), 501u);
  EXPECT_EQ(lines[499], "9501");
  EXPECT_EQ(openHandles(), 0);
}

TEST_F(EventLogReader, ReadingThatFailsKeepsWhatItHas) {
  fill("System", 12, 41, "x");
  const struct {
    const wchar_t* fault;
    std::vector<std::string> lines;
    int leftOpen;  // Events of an abandoned batch.
  } cases[] = {
      {L"EvtNext:1:1734", {"Issue in reading logs"}, 0},
      {L"EvtNext:2:15011", {"12", "11", "10", "9", "8", "Issue in reading logs"}, 0},
      // Two render calls for each event: the size of the second event, its text, and the text of the last one.
      {L"EvtRender:3:15011", {"12", "", "7", "6", "5", "4", "3", "2", "1"}, 3},
      {L"EvtRender:4:122", {"12", "", "7", "6", "5", "4", "3", "2", "1"}, 3},
      {L"EvtRender:24:5", {"12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "2", ""}, 0},
      {L"", {"12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "2", "1"}, 0},
  };
  for (const auto& [fault, lines, leftOpen] : cases) {
    SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", fault);
    const int before = openHandles();
    readShutdownEvents(L"System", LogTarget::WatchdogInitialLog);
    EXPECT_EQ(take(initial_), lines) << std::filesystem::path(fault);
    EXPECT_EQ(openHandles() - before, leftOpen) << std::filesystem::path(fault);
  }  // The dump asks for ten at a time, the filtered readers for five.
  SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", L"EvtNext:2:1734");
  dumpChannel(L"System");
  EXPECT_THAT(take(log_), ElementsAre("12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "Issue in reading logs"));
}

TEST_F(EventLogReader, EveryTextThatCanBeWrittenIs) {
  const std::string hard = "\"q\" \\b\\ \r\n\t \u00FC \u65E5\u672C \U0001F600 &lt;";
  fill("System", {event(1, 41, "{LONE}"), event(2, 41, "{MEGABYTE}"), event(3, 41, "{CONTROL}"), event(4, 41, hard)});
  readShutdownEvents(L"System", LogTarget::WatchdogInitialLog);
  const auto lines = linesOf(readFile(initial_));
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0].substr(28, 31), " [PROCESS] [INFO]: {\"xmlData\":\"");
  EXPECT_EQ(nlohmann::json::parse(lines[0].substr(processHead.size())).at("xmlData"), event(4, 41, hard));
  EXPECT_NE(lines[0].find("\u65E5"), std::string::npos);
  std::string controls = nlohmann::json::parse(lines[1].substr(processHead.size())).at("xmlData");
  for (char c = 1; c < 32; ++c) {
    EXPECT_NE(controls.find(c), std::string::npos) << int{c};
  }
  EXPECT_GT(lines[2].size(), 1'000'000u);
  EXPECT_EQ(masked(lines[3]), processHead);  // A lone surrogate is no text.
}

}  // namespace
}  // namespace sentiq
