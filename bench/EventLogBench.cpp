// Dumps of the event log beside the least that writing the same lines can cost: for each event one conversion of its
// text to UTF-8, and a bare open, write and close.
#include <windows.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/BareFile.h"
#include "bench/Median.h"
#include "bench/MemoryEventLog.h"
#include "logging/WatchdogLog.h"
#include "tests/support/TestFiles.h"
#include "watchdog/EventLogReader.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t eventsOfAChannel = 500;

double millisecondsOf(const auto& work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void convertBare(const std::wstring& text, std::string& utf8) {
  utf8.resize(text.size() * 3);
  WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(),
                      static_cast<int>(utf8.size()), nullptr, nullptr);
}

void measure(const char* what, bool encode, std::size_t events, const auto& dump) {
  const sentiq::test::TempFolder folder;
  const std::wstring log = (folder / "dump.log").wstring();
  const std::wstring bareLog = (folder / "bare.log").wstring();
  sentiq::configureWatchdogLog(1, log, L"", encode);
  std::vector<double> ratios, dumps, floors;
  for (int round = 0; round < 31; ++round) {
    std::filesystem::remove(log);
    std::filesystem::remove(bareLog);
    dumps.push_back(millisecondsOf(dump));
    std::vector<std::string> lines = sentiq::test::linesOf(sentiq::test::readFile(log));
    for (std::string& line : lines) {
      line += "\r\n";
    }
    floors.push_back(millisecondsOf([&] {
      std::string utf8;
      for (std::size_t i = 0; i < events; ++i) {
        convertBare(sentiq::bench::eventLog()[i % eventsOfAChannel], utf8);
      }
      for (const std::string& line : lines) {
        sentiq::bench::appendBare(bareLog, line);
      }
    }));
    ratios.push_back(dumps.back() / floors.back());
    if (lines.size() < events || sentiq::test::readFile(log) != sentiq::test::readFile(bareLog)) {
      throw std::runtime_error(std::string(what) + ": the two logs differ");
    }
  }
  using sentiq::bench::median;
  std::printf(
      "%s, encoding %s|the same bare opens, writes, closes and one conversion pass|%.2f times|"
      "at most 1.3 times|%.0f ms beside %.0f ms\n",
      what, encode ? "on" : "off", median(ratios), median(dumps), median(floors));
}

}  // namespace

int main() {
  try {
    sentiq::bench::fillEventLog(eventsOfAChannel);
    for (const bool encode : {false, true}) {
      measure("a dump of 500 events of 3 KB", encode, eventsOfAChannel, [] { sentiq::dumpChannel(L"Application"); });
      measure("dumps of 1,000 events of 3 KB", encode, 2 * eventsOfAChannel, [] { sentiq::dumpEventLogs(); });
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
