// Stands in for the system's wevtapi.dll: answers queries over event XML files as the system does over its channels.
//   SENTIQ_EVENTS=folder           <channel>.xml in it holds the channel's events, oldest first
//   SENTIQ_EVENTS_FAULT=call:n:e   the n-th EvtNext or EvtRender of a query, or every EvtQuery (n is 0), fails with
//   error e,
//                                  or throws when e is no number; EvtRendered: it succeeds, and e is the last error
// In an event, {CONTROL} becomes every control character, {LONE} a lone surrogate, {MEGABYTE} a million characters.
#include <windows.h>

#include <winevt.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "logging/TextConversion.h"

namespace {

std::atomic<int> openHandles = 0;

struct Handle {
  std::vector<std::string> events;  // Those that a query still has to give; of an event, itself.
  int nexts = 0, renders = 0;
  Handle* query = nullptr;

  Handle() { ++openHandles; }
  ~Handle() { --openHandles; }
};

std::string environment(const wchar_t* name) {
  wchar_t value[1024] = {};
  GetEnvironmentVariableW(name, value, 1024);
  return sentiq::toUtf8(value);
}

bool fail(DWORD error) {
  SetLastError(error);
  return false;
}

// The error that this call is to end with; 0 without one.
DWORD faultOf(const std::string& call, int number) {
  std::istringstream fault(environment(L"SENTIQ_EVENTS_FAULT"));
  std::string name, at, error;
  std::getline(std::getline(std::getline(fault, name, ':'), at, ':'), error);
  return name == call && std::stoi(at) == number ? std::stoul(error) : 0;
}

std::wstring rendered(const std::string& event) {
  std::wstring text = sentiq::toWide(event);
  if (event.find('{') != std::string::npos) {
    std::wstring controls(31, L' ');
    std::iota(controls.begin(), controls.end(), wchar_t{1});
    const std::pair<std::wstring, std::wstring> markers[] = {
        {L"{CONTROL}", controls}, {L"{LONE}", L"\xD800"}, {L"{MEGABYTE}", std::wstring(1'000'000, L'm')}};
    for (const auto& [marker, by] : markers) {
      if (const auto at = text.find(marker); at != std::wstring::npos) {
        text.replace(at, marker.size(), by);
      }
    }
  }
  return text;
}

std::vector<std::string> readEvents(const std::string& path) {
  std::ifstream file(sentiq::toPath(path), std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  std::vector<std::string> events;
  const std::string end = "</Event>";
  for (auto at = text.find("<Event "); at != std::string::npos; at = text.find("<Event ", at + 1)) {
    events.push_back(text.substr(at, text.find(end, at) + end.size() - at));
  }
  return events;
}

}  // namespace

extern "C" {

__declspec(dllexport) int openEventHandles() {
  return openHandles;
}

EVT_HANDLE WINAPI EvtQuery(EVT_HANDLE, LPCWSTR channel, LPCWSTR query, DWORD flags) {
  const std::string path = environment(L"SENTIQ_EVENTS") + "\\" + sentiq::toUtf8(channel) + ".xml";
  if (const DWORD error = faultOf("EvtQuery", 0)) {
    fail(error);
    return nullptr;
  }
  if ((flags & EvtQueryChannelPath) == 0 || !std::filesystem::exists(sentiq::toPath(path))) {
    fail(ERROR_EVT_CHANNEL_NOT_FOUND);
    return nullptr;
  }
  auto* const handle = new Handle;
  try {
    const pugi::xpath_query wanted(sentiq::toUtf8(query).c_str());
    for (const std::string& event : readEvents(path)) {
      pugi::xml_document document;
      document.load_string(event.c_str());
      if (wanted.evaluate_boolean(document)) {
        handle->events.push_back(event);
      }
    }
  } catch (const pugi::xpath_exception&) {
    delete handle;
    fail(ERROR_EVT_INVALID_QUERY);
    return nullptr;
  }
  if ((flags & EvtQueryReverseDirection) != 0) {
    std::reverse(handle->events.begin(), handle->events.end());
  }
  return handle;
}

BOOL WINAPI EvtNext(EVT_HANDLE query, DWORD size, EVT_HANDLE* events, DWORD, DWORD, DWORD* returned) {
  auto& opened = *static_cast<Handle*>(query);
  *returned = 0;
  if (const DWORD error = faultOf("EvtNext", ++opened.nexts)) {
    return fail(error);
  }
  for (; *returned < size && !opened.events.empty(); ++*returned) {
    auto* const event = new Handle;
    event->events = {opened.events.front()};
    event->query = &opened;
    opened.events.erase(opened.events.begin());
    events[*returned] = event;
  }
  return *returned > 0 || fail(ERROR_NO_MORE_ITEMS);
}

BOOL WINAPI EvtRender(EVT_HANDLE, EVT_HANDLE event, DWORD flags, DWORD size, void* buffer, DWORD* used, DWORD*) {
  const auto& opened = *static_cast<Handle*>(event);
  if (flags != EvtRenderEventXml) {
    return fail(ERROR_INVALID_PARAMETER);
  }
  const int number = ++opened.query->renders;
  if (const DWORD error = faultOf("EvtRender", number)) {
    return fail(error);
  }
  const std::wstring text = rendered(opened.events.front());
  *used = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  if (size < *used) {
    return fail(ERROR_INSUFFICIENT_BUFFER);
  }
  std::memcpy(buffer, text.c_str(), *used);
  SetLastError(faultOf("EvtRendered", number));
  return TRUE;
}

BOOL WINAPI EvtClose(EVT_HANDLE handle) {
  delete static_cast<Handle*>(handle);
  return TRUE;
}

}  // extern "C"
