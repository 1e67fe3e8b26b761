// One watchdog line beside the bare open, write and close of the same bytes. The two take turns within one
// loop, so that what the machine does meanwhile falls on both.
#include <windows.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/BareFile.h"
#include "bench/Median.h"
#include "logging/WatchdogLog.h"

namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

int main() {
  using sentiq::bench::median;
  const auto folder = std::filesystem::temp_directory_path() / "sentiq-line-bench";
  std::filesystem::create_directories(folder);
  const auto lineLog = (folder / "line.log").wstring();
  const auto bareLog = (folder / "bare.log").wstring();
  const std::string message(200, 'm');
  for (const bool encode : {false, true}) {
    std::filesystem::remove(lineLog);
    sentiq::configureWatchdogLog(1, lineLog, L"", encode);
    sentiq::writeLogLine(message, true, sentiq::LogLevel::Info, sentiq::LogTarget::WatchdogLog);
    const std::string bytes(std::filesystem::file_size(lineLog), 'x');
    std::vector<double> ratios, lineTimes;
    for (int round = 0; round < 40; ++round) {
      double times[2] = {};
      for (int i = 0; i < 200; ++i) {
        const auto start = Clock::now();
        sentiq::bench::appendBare(bareLog, bytes);
        const auto middle = Clock::now();
        sentiq::writeLogLine(message, true, sentiq::LogLevel::Info, sentiq::LogTarget::WatchdogLog);
        times[0] += std::chrono::duration<double, std::micro>(middle - start).count();
        times[1] += std::chrono::duration<double, std::micro>(Clock::now() - middle).count();
      }
      ratios.push_back(times[1] / times[0]);
      lineTimes.push_back(times[1] / 200);
    }
    std::printf("one watchdog line, encoding %s|bare open, write, close|%.2f times|at most %s times|%.0f us\n",
                encode ? "on" : "off", median(ratios), encode ? "1.25" : "1.15", median(lineTimes));
  }
  std::filesystem::remove_all(folder);
}
