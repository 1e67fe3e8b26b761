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
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "logging/TextConversion.h"

static std::atomic<int> openHandles = 0;

struct Handle {
  std::vector<std::string> events;  // Those that a query still has to give, the next one last; of an event, itself.
  Handle* query = nullptr;
  int nexts = 0, renders = 0;

  Handle() { ++openHandles; }
  ~Handle() { --openHandles; }
};

static std::wstring environment(const wchar_t* name) {
  wchar_t value[1024] = {};
  GetEnvironmentVariableW(name, value, 1024);
  return value;
}

static std::nullptr_t fail(DWORD error) {
  SetLastError(error);
  return nullptr;
}

// The error that this call is to end with; 0 without one.
static DWORD faultOf(const std::wstring& call, int number) {
  const std::wstring fault = environment(L"SENTIQ_EVENTS_FAULT"), wanted = call + L":" + std::to_wstring(number) + L":";
  return fault.starts_with(wanted) ? std::stoul(fault.substr(wanted.size())) : 0;
}

static std::wstring rendered(const std::string& event) {
  std::wstring text = sentiq::toWide(event), controls(31, L' ');
  std::iota(controls.begin(), controls.end(), wchar_t{1});
  const auto replace = [&](const std::wstring& marker, const auto& by) {
    if (const auto at = text.find(marker); at != std::wstring::npos) {
      text.replace(at, marker.size(), by());
    }
  };
  replace(L"{CONTROL}", [&] { return controls; });
  replace(L"{LONE}", [] { return L"\xD800"; });
  replace(L"{MEGABYTE}", [] { return std::wstring(1'000'000, L'm'); });
  return text;
}

extern "C" {

__declspec(dllexport) int openEventHandles() {
  return openHandles;
}

EVT_HANDLE WINAPI EvtQuery(EVT_HANDLE, LPCWSTR channel, LPCWSTR query, DWORD flags) {
  std::ifstream file(std::filesystem::path(environment(L"SENTIQ_EVENTS")) / channel += L".xml", std::ios::binary);
  if (const DWORD error = faultOf(L"EvtQuery", 0)) {
    return fail(error);
  }
  if ((flags & EvtQueryChannelPath) == 0 || !file) {
    return fail(ERROR_EVT_CHANNEL_NOT_FOUND);
  }
  std::string text{std::istreambuf_iterator<char>(file), {}};
  const std::string end = "</Event>";
  auto handle = std::make_unique<Handle>();
  try {
    const pugi::xpath_query wanted(sentiq::toUtf8(query).c_str());
    for (auto at = text.find("<Event "); at != std::string::npos; at = text.find("<Event ", at + 1)) {
      const std::string event = text.substr(at, text.find(end, at) + end.size() - at);
      pugi::xml_document document;
      document.load_string(event.c_str());
      if (wanted.evaluate_boolean(document)) {
        handle->events.push_back(event);
      }
    }
  } catch (const pugi::xpath_exception&) {
    return fail(ERROR_EVT_INVALID_QUERY);
  }
  if ((flags & EvtQueryReverseDirection) == 0) {
    std::reverse(handle->events.begin(), handle->events.end());
  }
  return handle.release();
}

BOOL WINAPI EvtNext(EVT_HANDLE query, DWORD size, EVT_HANDLE* events, DWORD, DWORD, DWORD* returned) {
  auto& opened = *static_cast<Handle*>(query);
  *returned = 0;
  const DWORD error = faultOf(L"EvtNext", ++opened.nexts);
  for (; error == 0 && *returned < size && !opened.events.empty(); ++*returned) {
    auto* const event = new Handle;
    event->events = {opened.events.back()};
    event->query = &opened;
    opened.events.pop_back();
    events[*returned] = event;
  }
  SetLastError(error != 0 ? error : ERROR_NO_MORE_ITEMS);
  return *returned > 0;
}

BOOL WINAPI EvtRender(EVT_HANDLE, EVT_HANDLE event, DWORD flags, DWORD size, void* buffer, DWORD* used, DWORD*) {
  const auto& opened = *static_cast<Handle*>(event);
  const int number = ++opened.query->renders;
  const std::wstring text = rendered(opened.events.front());
  *used = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  if (const DWORD error = faultOf(L"EvtRender", number); error != 0 || size < *used || flags != EvtRenderEventXml) {
    SetLastError(error != 0 ? error : flags == EvtRenderEventXml ? ERROR_INSUFFICIENT_BUFFER : ERROR_INVALID_PARAMETER);
    return FALSE;
  }
  std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t*>(buffer));
  SetLastError(faultOf(L"EvtRendered", number));
  return TRUE;
}

BOOL WINAPI EvtClose(EVT_HANDLE handle) {
  delete static_cast<Handle*>(handle);
  return TRUE;
}

}  // extern "C"
