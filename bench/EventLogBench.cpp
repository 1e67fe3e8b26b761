// Dumps of the event log beside the least that writing the same lines can cost: for each event one conversion of its
// text to UTF-8, and a bare open, write and close. The event log stands ready in memory here, so that its calls cost
// next to nothing (a copy of the text) and what is measured is the reader and the log writer.
#include <windows.h>

#include <winevt.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/BareFile.h"
#include "bench/Median.h"
#include "logging/TextConversion.h"
#include "logging/WatchdogLog.h"
#include "tests/support/TestFiles.h"
#include "watchdog/EventLogReader.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t eventsOfAChannel = 500;
constexpr std::size_t eventSize = 3 * 1024;

std::vector<std::wstring> makeEvents() {
  std::vector<std::wstring> events;
  for (std::size_t number = 0; number < eventsOfAChannel; ++number) {
    std::string xml =
        "<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System><Provider Name=\"Application "
        "Error\"/><EventID>1000</EventID><EventRecordID>" +
        std::to_string(number) + "</EventRecordID><Computer>WORKSTATION</Computer></System><EventData>";
    const std::string end = "</EventData></Event>";
    while (xml.size() + end.size() < eventSize) {
      xml += "<Data Name=\"Path\">C:\\Program Files\\Canvix\\Canvix.exe, gr\u00F6\u00DFer</Data>\r\n";
    }
    events.push_back(sentiq::toWide(xml + end));
  }
  return events;
}

const std::vector<std::wstring> allEvents = makeEvents();
std::size_t nextEvent = 0;

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
        convertBare(allEvents[i % eventsOfAChannel], utf8);
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

// These take the place of the system's: they are linked before wevtapi.
extern "C" {

EVT_HANDLE WINAPI EvtQuery(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD) {
  nextEvent = 0;
  return &nextEvent;
}

BOOL WINAPI EvtNext(EVT_HANDLE, DWORD size, EVT_HANDLE* events, DWORD, DWORD, DWORD* returned) {
  for (*returned = 0; *returned < size && nextEvent < allEvents.size(); ++nextEvent) {
    events[(*returned)++] = const_cast<std::wstring*>(&allEvents[nextEvent]);
  }
  SetLastError(ERROR_NO_MORE_ITEMS);
  return *returned > 0;
}

BOOL WINAPI EvtRender(EVT_HANDLE, EVT_HANDLE event, DWORD, DWORD size, void* buffer, DWORD* used, DWORD*) {
  const auto& text = *static_cast<const std::wstring*>(event);
  *used = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  if (size < *used) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return FALSE;
  }
  std::memcpy(buffer, text.c_str(), *used);
  SetLastError(ERROR_SUCCESS);
  return TRUE;
}

BOOL WINAPI EvtClose(EVT_HANDLE) {
  return TRUE;
}

}  // extern "C"

int main() {
  try {
    for (const bool encode : {false, true}) {
      measure("a dump of 500 events of 3 KB", encode, eventsOfAChannel, [] { sentiq::dumpChannel(L"Application"); });
      measure("dumps of 1,000 events of 3 KB", encode, 2 * eventsOfAChannel, [] { sentiq::dumpEventLogs(); });
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
