// Small inputs that once took time that grows with their square:  HostileInput SHAPE FOLDER COUNT
//   initials  initial logs of one process id, in one file
//   reports   error reports of Canvix, in one watchdog log
//   headers   headers of one session, in one file
//   folders   folders whose initial logs all name one session
//   tiny      logs of a few lines in one folder, each of a session of its own
//   sleeps    sleeps and standbys of one session
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "bench/TimeText.h"

namespace {

using sentiq::bench::stamp;
using sentiq::bench::timeText;

constexpr std::int64_t begin = 1'769'000'000;

std::string line(std::size_t seconds, const std::string& text) {
  return stamp(begin + static_cast<std::int64_t>(seconds)) + " [SYSTEM] [INFO]: " + text + "\n";
}

std::string header(std::size_t seconds, const std::string& id, const std::string& process) {
  return line(seconds, "OrbelSessionID: " + id) + line(seconds, "ProcessID: " + process);
}

std::string event(std::size_t seconds, std::size_t record, const char* provider, int id, const std::string& data) {
  return line(seconds, R"({"xmlData":"<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System>)"
                       "<Provider Name='" +
                           std::string(provider) + "'/><EventID>" + std::to_string(id) +
                           "</EventID><Level>4</Level><TimeCreated SystemTime='" +
                           timeText(begin + static_cast<std::int64_t>(seconds), "%Y-%m-%dT%H:%M:%S.1Z") +
                           "'/><EventRecordID>" + std::to_string(record) +
                           "</EventRecordID><Channel>Application</Channel><Computer>A</Computer></System><EventData>" +
                           data + R"(</EventData></Event>"})");
}

std::string initial(std::size_t i) {
  return header(i * 60, "session-1", "4242") + line(i * 60, "Starting initial metric collection.") +
         event(i * 60, i, "Microsoft-Windows-Kernel-Power", 41, "<Data Name='BugcheckCode'>0</Data>");
}

std::string report(std::size_t i) {
  return event(i, i, "Windows Error Reporting", 1001,
               "<Data Name='EventName'>APPCRASH</Data><Data Name='P1'>Canvix.exe</Data><Data Name='ReportId'>" +
                   std::to_string(i) + "</Data>");
}

std::string sleep(std::size_t i) {
  return line(i * 600, "System Will enter/exit Standby") +
         event(i * 600, i * 2, "Microsoft-Windows-Kernel-Power", i % 2 == 0 ? 42 : 506,
               "<Data Name='Reason'>7</Data>") +
         event(i * 600 + 300, i * 2 + 1, "Microsoft-Windows-Kernel-Power", i % 2 == 0 ? 107 : 507, "");
}

}  // namespace

int main(int /*argc*/, char** argv) {
  const std::string_view shape = argv[1];
  const std::filesystem::path folder = argv[2];
  const std::size_t count = std::strtoul(argv[3], nullptr, 10);
  std::filesystem::create_directories(folder);
  std::ofstream all(folder / "a.log", std::ios::binary);
  all << (shape == "initials" || shape == "folders" ? "" : header(0, "session-1", "4242"));
  for (std::size_t i = 0; i < count; ++i) {
    if (shape == "initials") {
      all << initial(i);
    } else if (shape == "reports") {
      all << report(i);
    } else if (shape == "headers") {
      all << header(i, "session-1", "4242") << line(i, "Watchdog stopped cleanly.");
    } else if (shape == "sleeps") {
      all << sleep(i);
    } else if (shape == "folders") {
      const std::filesystem::path place = folder / std::to_string(i);
      std::filesystem::create_directories(place);
      std::ofstream(place / "a.log", std::ios::binary) << initial(i);
    } else {
      const std::string id = "session-" + std::to_string(i + 2);
      std::ofstream(folder / (id + ".log"), std::ios::binary) << header(i, id, std::to_string(i));
    }
  }
  return all.good() ? 0 : 1;
}
