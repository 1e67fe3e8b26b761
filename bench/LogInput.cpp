// Logs to measure the reader with:
//   LogInput lines MEBIBYTES                   encoded lines, to standard output
//   LogInput events MEBIBYTES DISTINCT [plain] a watchdog log whose dumps repeat so many events, to standard output
//   LogInput sessions FOLDER COUNT             sessions of about 1 MB each in FOLDER/machine/session
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/TimeText.h"
#include "logging/LogEncoding.h"

namespace {

using sentiq::encodeText;
using sentiq::bench::stamp;
using sentiq::bench::timeText;

std::string event(const std::string& provider, const std::string& id, std::int64_t time, std::uint64_t recordId,
                  const std::string& channel, const std::string& data, int level = 4) {
  return R"({"xmlData":"<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System><Provider Name=')" +
         provider + "'/><EventID Qualifiers='0'>" + id + "</EventID><Version>0</Version><Level>" +
         std::to_string(level) + "</Level><Task>0</Task><Opcode>0</Opcode><Keywords>0x80000000000000</Keywords>" +
         "<TimeCreated SystemTime='" + timeText(time, "%Y-%m-%dT%H:%M:%S.0000000Z") + "'/><EventRecordID>" +
         std::to_string(recordId) + "</EventRecordID><Correlation/><Execution ProcessID='1012' ThreadID='2034'/>" +
         "<Channel>" + channel + "</Channel><Computer>STUDIO-07</Computer><Security/></System><EventData>" + data +
         R"(</EventData></Event>"})";
}

std::string fields(const std::vector<std::string>& values) {
  std::string data;
  for (const std::string& value : values) {
    data += "<Data>" + value + "</Data>";
  }
  return data;
}

// One of the many that mean nothing for Canvix.
std::string otherEvent(std::int64_t time, std::uint64_t recordId, std::size_t size) {
  return event(
      "Service Control Manager", "7036", time, recordId, recordId % 2 == 0 ? "System" : "Application",
      "<Data Name='param1'>" + std::string(size, 'e') + R"( \"quoted\"</Data><Data Name='param2'>running</Data>)");
}

std::string watchdogLine(std::int64_t time, const std::string& message) {
  return stamp(time) + (message.front() == '{' ? " [PROCESS] [INFO]: " : " [SYSTEM] [INFO]: ") + message;
}

void writeLines(std::size_t wanted) {
  std::size_t written = 0;
  for (std::size_t i = 0; written < wanted; ++i) {
    const std::string line = "2025-01-31T14:05:09.042+0100 [PROCESS] [INFO]: {\"xmlData\":\"<Event " +
                             std::string(100 + i % 29 * 40, 'e') + "\"}";
    const std::string encoded = encodeText(line) + "\n";
    written += std::fwrite(encoded.data(), 1, encoded.size(), stdout);
  }
}

void writeEvents(std::size_t wanted, std::size_t distinct, bool plain) {
  constexpr std::int64_t begin = 1'769'000'000;
  std::size_t written = 0;
  for (std::size_t i = 0; written < wanted; ++i) {
    const std::size_t which = i % distinct;
    const std::string line =
        watchdogLine(begin + static_cast<std::int64_t>(i / 500),
                     otherEvent(begin - static_cast<std::int64_t>(which), which, 700 + which % 7 * 30));
    const std::string text = (plain ? line : encodeText(line)) + "\n";
    written += std::fwrite(text.data(), 1, text.size(), stdout);
  }
}

enum class End { Normal, Crash, Hang, PowerLoss, BlueScreen, Unknown };

struct Case {
  End end;
  std::string module;
  std::string exception;
  std::string offset;
};

const std::vector<Case> cases{
    {End::Normal, "", "", ""},
    {End::Normal, "", "", ""},
    {End::Crash, "PaintCore.dll", "c0000005", "00000000004d21f7"},
    {End::Normal, "", "", ""},
    {End::PowerLoss, "", "", ""},
    {End::Normal, "", "", ""},
    {End::Crash, "gfx64.dll", "c0000005", "000000000001a2b3"},
    {End::Normal, "", "", ""},
    {End::Hang, "", "", ""},
    {End::Normal, "", "", ""},
    {End::Crash, "PaintCore.dll", "c0000409", "00000000000b1200"},
    {End::Normal, "", "", ""},
    {End::BlueScreen, "", "", ""},
    {End::Normal, "", "", ""},
    {End::Unknown, "", "", ""},
    {End::Normal, "", "", ""},
    {End::Crash, "ntdll.dll", "c0000374", "00000000000ff3c9"},
};

const std::vector<std::string> adapters{"NVIDIA GeForce RTX 4070", "AMD Radeon RX 6700 XT",
                                        "Intel(R) UHD Graphics 770"};

// The logs of one session; a machine has ten of them, one after the other.
class SampleSession {
 public:
  explicit SampleSession(std::size_t number)
      : number_(number),
        begin_(1'735'700'000 + static_cast<std::int64_t>(number % 10 * 86'400 + number / 10 * 7'200)) {}

  std::string folder() const {
    return "machine-" + std::to_string(number_ / 10) + "/session-" + std::to_string(number_);
  }

  const Case& what() const {  // The second driver crashes on the second adapter only.
    const Case& usual = cases[number_ * 7 % cases.size()];
    return usual.module == "gfx64.dll" && adapter() != adapters[1] ? cases[0] : usual;
  }

  std::string records() const {
    std::string text = "OrbelSessionID: " + id() + "\nProcessID: " + pid() + "\n";
    for (int i = 0; i < count; ++i) {
      const std::string run = timeText(i * interval, "0 %H:%M:%S");
      text += encodeText(R"({"appStartTime":")" + run +
                         R"(","batteryPercentage":"No battery","fgProcessName":"","freeDiskSpace":)" +
                         std::to_string(71'112 - i % 50 - number_ % 70 * 1000) + R"(,"freeSwapMemory":)" +
                         std::to_string(21'191 - i % 90) + R"(,"gpuInfo":[{"gpuMemoryUsage":8192,"gpuName":")" +
                         adapter() + R"("}],"processId":)" + pid() +
                         R"(,"status":"Running","systemStartTime":"Nov 24 20:36:47","systemUpTime":")" + run +
                         R"(","timestamp":")" + stamp(begin_ + i * interval) +
                         R"(","totalDiskSpace":258019,"totalSwapMemory":24105,"usedDiskSpace":186907,)" +
                         R"("usedSwapMemory":2913})") +
              "\n";
    }
    return exits() ? text + encodeText(stamp(end()) + " Exit Status - Canvix is no longer alive") + "\n" : text;
  }

  std::string watchdog() const {
    std::string text = head(begin_, id());
    if (exits()) {
      text += encodeText(watchdogLine(end(), "App has exited")) + "\n" + dump(end()) + dump(end() + 120) +
              encodeText(watchdogLine(end() + 121, "Watchdog stopped cleanly.")) + "\n";
    } else {  // A dump at each resume.
      text += dump(begin_ + 600) + dump(begin_ + 900);
    }
    return text;
  }

  // Of the next session, about this one.
  std::string initial() const {
    const std::int64_t boot = end() + 300;
    std::string text = head(SampleSession(number_ + 1).begin_, id(), SampleSession(number_ + 1).pid());
    text += encodeText(watchdogLine(boot, "Starting initial metric collection.")) + "\n";
    if (what().end == End::PowerLoss || what().end == End::BlueScreen) {
      const std::string code = what().end == End::BlueScreen ? "278" : "0";
      text += encodeText(watchdogLine(boot + 10, event("Microsoft-Windows-Kernel-Power", "41", boot, 900'001, "System",
                                                       "<Data Name='BugcheckCode'>" + code +
                                                           "</Data><Data Name='SleepInProgress'>0</Data>"
                                                           "<Data Name='PowerButtonTimestamp'>0</Data>",
                                                       1))) +
              "\n";
    }
    return text + encodeText(watchdogLine(boot + 20, "Initial metric collection done.")) + "\n";
  }

  bool hasInitial() const { return what().end != End::Normal && number_ % 10 != 9; }

 private:
  static constexpr int count = 360;
  static constexpr int interval = 10;

  std::string id() const { return "session-" + std::to_string(number_); }
  std::string pid() const { return std::to_string(4000 + number_ % 1000 * 4); }
  std::string adapter() const { return adapters[number_ / 10 % adapters.size()]; }
  std::int64_t end() const { return begin_ + count * interval; }
  bool exits() const { return what().end == End::Normal || what().end == End::Crash || what().end == End::Hang; }

  std::string head(std::int64_t time, const std::string& about) const { return head(time, about, pid()); }
  static std::string head(std::int64_t time, const std::string& about, const std::string& process) {
    return watchdogLine(time, "OrbelSessionID: " + about) + "\n" + watchdogLine(time, "ProcessID: " + process) + "\n" +
           encodeText(watchdogLine(time, "Time zone offset: +0000 Time Zone Name: Greenwich Standard Time")) + "\n" +
           encodeText(watchdogLine(time, "LastBootTime: " + stamp(time - 3600))) + "\n";
  }

  std::string failure() const {
    const std::string version = "29.5.0." + std::to_string(130 + number_ % 4);
    const std::string hex = [this] {
      char digits[16];
      return std::string(digits, static_cast<std::size_t>(std::snprintf(digits, sizeof digits, "0x%x",
                                                                        static_cast<unsigned>(std::stoul(pid())))));
    }();
    if (what().end == End::Crash) {
      return event("Application Error", "1000", end() - 1, 800'000, "Application",
                   fields({"Canvix.exe", version, "67000000", what().module, "3.1.0.7", "66000000", what().exception,
                           what().offset, hex, "01db7a0000000000", "C:\\\\Canvix\\\\Canvix.exe",
                           "C:\\\\Canvix\\\\" + what().module, "00000000-0000-0000-0000-000000000000", "", ""}),
                   2);
    }
    return event("Application Hang", "1002", end() - 1, 800'000, "Application",
                 fields({"Canvix.exe", version, hex, "01db7a0000000000", "60000", "C:\\\\Canvix\\\\Canvix.exe",
                         "00000000-0000-0000-0000-000000000000", "", "", "Cross-thread"}),
                 2);
  }

  std::string dump(std::int64_t time) const {
    std::string text = encodeText(watchdogLine(time, "App dumping Application log:")) + "\n";
    if (what().end == End::Crash || what().end == End::Hang) {
      text += encodeText(watchdogLine(time, failure())) + "\n";
    }
    for (int i = 0; i < 250; ++i) {
      text += encodeText(
                  watchdogLine(time, otherEvent(begin_ - i * 60, number_ * 1000 + static_cast<std::size_t>(i), 500))) +
              "\n";
    }
    return text;
  }

  std::size_t number_;
  std::int64_t begin_;
};

void writeSessions(const std::filesystem::path& folder, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const SampleSession session(i);
    const std::filesystem::path place = folder / session.folder();
    std::filesystem::create_directories(place);
    std::ofstream(place / "CanvixSentiqSession.log", std::ios::binary) << session.records();
    std::ofstream(place / "CanvixWatchdogInfoSession.log", std::ios::binary) << session.watchdog();
    if (i % 10 != 0 && SampleSession(i - 1).hasInitial()) {
      std::ofstream(place / "CanvixWatchdogInfoInitialSession.log", std::ios::binary) << SampleSession(i - 1).initial();
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  const auto number = [&](std::size_t i) { return std::strtoul(words.at(i).c_str(), nullptr, 10); };
  if (words.at(0) == "lines") {
    writeLines(number(1) << 20);
  } else if (words.at(0) == "events") {
    writeEvents(number(1) << 20, number(2), words.size() > 3);
  } else {
    writeSessions(words.at(1), number(2));
  }
}
