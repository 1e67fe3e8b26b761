#include "watchdog/EventLogReader.h"

#include <windows.h>

#include <winevt.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <memory>
#include <new>

#include <nlohmann/json.hpp>

#include "logging/LogGrammar.h"
#include "logging/TextConversion.h"
#include "logging/UniqueHandle.h"

namespace sentiq {
namespace {

struct EventHandleKind {
  using Type = EVT_HANDLE;
  static Type none() { return nullptr; }
  static void close(Type handle) { EvtClose(handle); }
};
using EventHandle = UniqueHandle<EventHandleKind>;

constexpr DWORD largestBatch = 10;

struct Query {
  const wchar_t* text;
  DWORD limit;  // Events read at most.
  DWORD batch;  // Events asked for at once, largestBatch at most.
};

// 1000 and 1001: a program crashed, and the report about it.
constexpr Query appTerminationQuery = {L"*[System[EventID=1000 or EventID=1001]] and *[EventData[Data='Canvix.exe']]",
                                       100, 5};
// 1074: somebody asked for a restart; 6006: clean shutdown; 6008: unexpected one; 109: the kernel shuts down;
// 41: power was lost.
constexpr Query shutdownQuery = {
    L"*[System[(EventID=1074 or EventID=6006 or EventID=6008 or EventID=109 or EventID=41)]]", 100, 5};
constexpr Query everyEvent = {L"*", 500, 10};

EventHandle openQuery(const std::wstring& channel, const Query& query) {
  return EventHandle(
      EvtQuery(/*Session=*/nullptr, channel.c_str(), query.text, EvtQueryChannelPath | EvtQueryReverseDirection));
}

// Throws when the text is not well-formed.
std::wstring asJson(const wchar_t* xml) {
  const nlohmann::json event = {{grammar::eventXml, toUtf8(xml)}};
  return toWide(event.dump());
}

// Copies the events of an open query; returns the last error as reading left it.
DWORD copyEvents(EVT_HANDLE opened, const Query& query, LogTarget target) {
  DWORD count = 0;
  while (count < query.limit) {
    std::array<EVT_HANDLE, largestBatch> events{};
    DWORD returned = 0;
    if (EvtNext(opened, std::min(query.limit - count, query.batch), events.data(), INFINITE, /*Flags=*/0, &returned) ==
            FALSE ||
        returned == 0) {
      break;
    }
    for (DWORD i = 0; i < returned; ++i) {
      const EventHandle event(events[i]);
      std::wstring text;
      const std::uint32_t error = renderEventAsJson(event.get(), text);
      writeProcessLine(toUtf8(text), target);
      if (error != ERROR_SUCCESS) {
        break;  // The rest of the batch stays as it is, neither written nor closed.
      }
    }
    count += returned;
  }
  return GetLastError();
}

void copyAll(const EventHandle& opened, const Query& query, LogTarget target) {
  if (copyEvents(opened.get(), query, target) != ERROR_NO_MORE_ITEMS) {
    writeProcessLine(grammar::readingEnded, target);
  }
}

void readFiltered(const std::wstring& channel, const Query& query, LogTarget target) {
  if (const EventHandle opened = openQuery(channel, query)) {
    copyAll(opened, query, target);
  } else {
    writeProcessLine(grammar::queryFailed, target);
  }
}

}  // namespace

std::uint32_t renderEventAsJson(void* event, std::wstring& text) {
  DWORD bytes = 0;
  DWORD properties = 0;
  const auto render = [&](DWORD size, wchar_t* buffer) {
    return EvtRender(/*Context=*/nullptr, event, EvtRenderEventXml, size, buffer, &bytes, &properties) != FALSE;
  };
  render(0, nullptr);  // Only asks for the size, so it always fails.
  if (const DWORD error = GetLastError(); error != ERROR_INSUFFICIENT_BUFFER) {
    return error;
  }
  // A character for each byte: twice the room, so a zero always follows the text.
  const std::unique_ptr<wchar_t[]> buffer(new (std::nothrow) wchar_t[bytes]());
  if (!buffer) {
    return ERROR_OUTOFMEMORY;
  }
  const bool rendered = render(bytes, buffer.get());
  const DWORD error = GetLastError();
  if (rendered) {
    try {
      text = asJson(buffer.get());
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): what is no text is an empty line, and no error.
    }
  }
  return error;
}

void readAppTerminationEvents(const std::wstring& channel, LogTarget target) {
  readFiltered(channel, appTerminationQuery, target);
}

void readShutdownEvents(const std::wstring& channel, LogTarget target) {
  readFiltered(channel, shutdownQuery, target);
}

void dumpChannel(const std::wstring& channel) {
  if (const EventHandle opened = openQuery(channel, everyEvent)) {
    copyAll(opened, everyEvent, LogTarget::WatchdogLog);
  } else {
    const DWORD error = GetLastError();
    std::wcout << L"EvtQuery failed for " << channel << L" with error: " << error << std::endl;
  }
}

void dumpEventLogs() {
  writeProcessLine(grammar::applicationCopy);
  dumpChannel(L"Application");
  writeProcessLine(grammar::systemCopy);
  dumpChannel(L"System");
}

}  // namespace sentiq
