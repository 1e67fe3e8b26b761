// The readers, unchanged, on the stand-in for the system's event log. What the queries find is shown by the whole
// program.
#include <nlohmann/json.hpp>

#include "tests/support/Test.h"
#include "watchdog/EventLogReader.h"

namespace sentiq {

// One that both filtered readers look for.
static std::string event(int number, const std::string& data) {
  return "<Event xmlns='x'><System><EventID Qualifiers='0'>1000</EventID><EventID>41</EventID><EventRecordID>" +
         std::to_string(number) + "</EventRecordID></System><EventData><Data>1</Data><Data>Canvix.exe</Data>" + data +
         "</EventData></Event>";
}

class EventLogReader : public Test {
 protected:
  EventLogReader() {
    configureWatchdogLog(1, log_.wstring(), initial_.wstring(), false);
    SetEnvironmentVariableW(L"SENTIQ_EVENTS", (folder_ / "").c_str());
  }
  ~EventLogReader() override { SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", nullptr); }

  // Events numbered from 1 on.
  void fill(int count, const std::vector<std::string>& data = {""}) {
    std::ofstream file(folder_ / "System.xml", std::ios::binary);
    for (int number = 1; number <= count; ++number) {
      file << event(number, data[static_cast<std::size_t>(number) % data.size()]);
    }
  }

  // What stands behind the tag of each line since the last call: an event's record number, or the text itself.
  Lines take(const std::filesystem::path& log) {
    Lines lines = readLog(log);
    for (std::string& line : lines) {
      EXPECT_TRUE(line.starts_with("[PROCESS] ")) << line;
      line.erase(0, 10);
    }
    std::filesystem::remove(log);
    return lines;
  }

  static int openHandles() {
    return reinterpret_cast<int (*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"wevtapi.dll"), "openEventHandles")))();
  }

  TempFolder folder_;
  std::filesystem::path log_ = folder_ / "watchdog.log";
  std::filesystem::path initial_ = folder_ / "initial.log";
};

TEST_F(EventLogReader, AChannelThatCannotBeOpened) {
  readShutdownEvents(L"System", LogTarget::WatchdogInitialLog);
  EXPECT_THAT(take(initial_), ElementsAre("EvtQuery failed"));
  internal::CaptureStdout();
  dumpChannel(L"System");
  EXPECT_EQ(internal::GetCapturedStdout(), "EvtQuery failed for System with error: 15007\n");
  EXPECT_FALSE(std::filesystem::exists(log_));
}

// Whatever error the last call left decides about a line behind the events.
TEST_F(EventLogReader, NeverReadsMoreThanTheLimit) {
  fill(1000);
  readAppTerminationEvents(L"System", LogTarget::WatchdogInitialLog);
  readShutdownEvents(L"System", LogTarget::WatchdogInitialLog);
  dumpChannel(L"System");
  for (const auto& [log, times, oldest] : {std::tuple(initial_, 2, 901), {log_, 1, 501}}) {
    Lines lines = take(log);
    std::erase(lines, "Issue in reading logs");
    EXPECT_THAT(lines, SizeIs(times * (1001 - oldest)));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), std::to_string(oldest)), times);
  }
}

TEST_F(EventLogReader, ReadingThatFailsKeepsWhatItHas) {
  fill(12);
  const Lines batchLost = {"12", "", "7", "6", "5", "4", "3", "2", "1"};
  // Last, how many events of an abandoned batch stay open.
  const std::tuple<const wchar_t*, Lines, int> cases[] = {
      {L"EvtNext:1:1734", {"Issue in reading logs"}, 0},
      {L"EvtNext:2:15011", {"12", "11", "10", "9", "8", "Issue in reading logs"}, 0},
      // Two render calls for each event: the size of the second event, its text, and the text of the last one.
      {L"EvtRender:3:15011", batchLost, 3},
      {L"EvtRender:4:122", batchLost, 3},
      {L"EvtRendered:4:5", {"12", "11", "7", "6", "5", "4", "3", "2", "1"}, 3},
      {L"EvtRender:24:5", {"12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "2", ""}, 0},
      {L"", {"12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "2", "1"}, 0},
  };
  for (const auto& [fault, lines, leftOpen] : cases) {
    SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", fault);
    const int before = openHandles();
    readAppTerminationEvents(L"System", LogTarget::WatchdogInitialLog);
    readShutdownEvents(L"System", LogTarget::WatchdogLog);
    EXPECT_EQ(take(initial_), lines) << std::filesystem::path(fault);
    EXPECT_EQ(take(log_), lines) << std::filesystem::path(fault);
    EXPECT_EQ(openHandles() - before, 2 * leftOpen) << std::filesystem::path(fault);
  }
  SetEnvironmentVariableW(L"SENTIQ_EVENTS_FAULT", L"EvtNext:2:1734");
  dumpChannel(L"System");  // Asks for ten at a time.
  EXPECT_THAT(take(log_), ElementsAre("12", "11", "10", "9", "8", "7", "6", "5", "4", "3", "Issue in reading logs"));
}

TEST_F(EventLogReader, EveryTextThatCanBeWrittenIs) {
  const std::string hard = "\"q\" \\b\\ \r\n\t \u00FC \u65E5\u672C \U0001F600 &lt;";
  std::string controls(31, ' ');
  std::iota(controls.begin(), controls.end(), char{1});
  const std::string texts[] = {hard, controls, std::string(1'000'000, 'm')};
  fill(5, {texts[0], "", "{LONE}", texts[2], texts[1]});
  dumpChannel(L"System");
  const Lines lines = linesOf(readFile(log_));
  EXPECT_THAT(take(log_),
              ElementsAre("5", "4", "3", "", "1"));  // A lone surrogate is no text, and costs only its own event.
  for (std::size_t i = 0; i < 3; ++i) {
    const std::string json = lines[i].substr(lines[i].find("{\"xmlData\":\"<Event"));
    EXPECT_EQ(nlohmann::json::parse(json).at("xmlData"), event(static_cast<int>(5 - i), texts[i]));
  }
  EXPECT_THAT(lines[0], HasSubstr("\u65E5"));
}

}  // namespace sentiq
