// The capture loop and the watchdog log at a thousand times their rate: a sample every 10 milliseconds, and from two
// threads, to both watchdog logs, two lines in that time. Afterwards every line must be there, whole and in order, and
// the process must hold no more than it did after its first quarter.
//   Soak [SECONDS]    two minutes without one; prints one row of the table; exit code 1 when anything is wrong
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "bench/FakeProviders.h"
#include "capture/CaptureSettings.h"
#include "capture/MetricCode.h"
#include "logging/WatchdogLog.h"
#include "tests/support/Logs.h"
#include "tests/support/TestFiles.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using sentiq::LogTarget;

constexpr auto interval = 10ms;

// What the heap's own play may come to; in two minutes eight bytes lost with each line would be more.
// ThreadSanitizer's own records grow with what it watches.
#ifdef __SANITIZE_THREAD__
constexpr long allowedKibibytes = std::numeric_limits<long>::max();
#else
constexpr long allowedKibibytes = 256;
#endif

void require(bool holds, const std::string& what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

struct Holdings {
  std::ptrdiff_t files = 0;
  std::ptrdiff_t threads = 0;
  long privateKibibytes = 0;
};

Holdings holdings() {
  const auto entries = [](const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
  };
  Holdings now{entries("/proc/self/fd"), entries("/proc/self/task"), 0};
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == "RssAnon:") {
      status >> now.privateKibibytes;
    }
  }
  return now;
}

std::string messageOf(int number) {
  return "line " + std::to_string(number) + ' ' + std::string(static_cast<std::size_t>(number % 500), 'm');
}

// Takes up the numbers where they stand.
void writeWatchdogLines(LogTarget target, Clock::time_point end, int& lines) {
  for (auto next = Clock::now(); next < end; next += interval) {
    std::this_thread::sleep_until(next);
    sentiq::writeLogLine(messageOf(lines++), /*isSystem=*/true, sentiq::LogLevel::Info, target);
  }
}

void checkWatchdogLog(const std::filesystem::path& file, int written) {
  const std::vector<std::string> lines = sentiq::test::readLog(file);
  require(lines.size() == static_cast<std::size_t>(written), "a watchdog log lost lines");
  for (int i = 0; i < written; ++i) {
    const std::string& line = lines[static_cast<std::size_t>(i)];
    require(line == "[SYSTEM] " + messageOf(i), "a watchdog log has a torn line: " + line);
  }
}

// Two header lines, the records, and a closing line for each of the two captures.
void checkSessionLog(const std::filesystem::path& file, int samples) {
  const std::vector<std::string> lines = sentiq::test::readLog(file);
  require(lines.size() == static_cast<std::size_t>(samples) + 4, "the session log lost lines");
  int records = 0;
  for (std::size_t i = 2; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    const nlohmann::json record = nlohmann::json::parse(line, nullptr, /*allow_exceptions=*/false);
    require(record.is_object() || line == "T Exit Status - Canvix is no longer alive",
            "the session log has a torn line: " + line);
    records += record.is_object() ? 1 : 0;
  }
  require(records == samples, "the session log lost records");
}

void soak(std::chrono::seconds duration) {
  const sentiq::test::TempFolder folder;
  sentiq::test::FakeFigures figures;
  figures.adapters.resize(2);
  sentiq::CaptureSettings settings;
  settings.processId = 4242;
  settings.sessionLogPath = (folder / "session.log").wstring();
  settings.encodeLogs = true;
  settings.metrics = sentiq::defaultMetricSelection();
  sentiq::configureWatchdogLog(4242, (folder / "watchdog.log").wstring(), (folder / "initial.log").wstring(), true);
  const auto capture = sentiq::test::fakeCapture(figures, interval);
  int watchdogLines = 0;
  int initialLines = 0;
  const auto runFor = [&](std::chrono::seconds time) {
    const auto end = Clock::now() + time;
    capture->start(settings);
    std::thread other([&] { writeWatchdogLines(LogTarget::WatchdogInitialLog, end, initialLines); });
    writeWatchdogLines(LogTarget::WatchdogLog, end, watchdogLines);
    other.join();
    capture->stop(/*processGone=*/true);
    return holdings();
  };
  const Holdings before = runFor(duration / 4);
  const Holdings after = runFor(duration - duration / 4);

  checkSessionLog(folder / "session.log", figures.samples);
  checkWatchdogLog(folder / "watchdog.log", watchdogLines);
  checkWatchdogLog(folder / "initial.log", initialLines);
  const auto files = after.files - before.files;
  const auto threads = after.threads - before.threads;
  const auto kibibytes = after.privateKibibytes - before.privateKibibytes;
  std::printf(
      "soak of capture loop and watchdog log, %lld s at 1,000 times the rate|-|"
      "%d records and %d lines, none lost or torn; %+td files, %+td threads, %+ld KiB private|none|\n",
      static_cast<long long>(duration.count()), figures.samples.load(), watchdogLines + initialLines, files, threads,
      kibibytes);
  require(files == 0 && threads == 0 && kibibytes <= allowedKibibytes,
          "the process holds more than after its first quarter");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    soak(std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 120));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
