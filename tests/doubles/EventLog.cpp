// Stands in for the system's wevtapi.dll: answers queries over event XML files as the system does over its channels.
//   SENTIQ_EVENTS=folder           <channel>.xml in it holds the channel's events, oldest first
//   SENTIQ_EVENTS_FAULT=call:n:e   the n-th EvtNext or EvtRender of a query, or every EvtQuery (n is 0), fails with
//   error e,
//                                  or throws when e is no number; EvtRendered: it succeeds, and e is the last error
// In an event, {LONE} becomes a lone surrogate, which no file of UTF-8 can hold.
#include <windows.h>

#include <winevt.h>

#include <atomic>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <pugixml.hpp>

#include "logging/TextConversion.h"

static std::atomic<int> openHandles = 0;

struct Handle {
  std::deque<std::string> events;  // Those that a query still has to give; of an event, itself.
  Handle* query;
  int nexts = 0, renders = 0;

  explicit Handle(std::deque<std::string> given = {}, Handle* from = nullptr) : events(given), query(from) {
    ++openHandles;
  }
  ~Handle() { --openHandles; }
};

static std::wstring environment(const wchar_t* name) {
  wchar_t value[1024] = {};
  GetEnvironmentVariableW(name, value, 1024);
  return value;
}

// The error that this call is to end with; the other one when it is to go well.
static DWORD faultOf(const std::wstring& call, int number, DWORD other = 0) {
  const std::wstring fault = environment(L"SENTIQ_EVENTS_FAULT"), wanted = call + L":" + std::to_wstring(number) + L":";
  return fault.starts_with(wanted) ? std::stoul(fault.substr(wanted.size())) : other;
}

extern "C" {

__declspec(dllexport) int openEventHandles() {
  return openHandles;
}

EVT_HANDLE WINAPI EvtQuery(EVT_HANDLE, LPCWSTR channel, LPCWSTR query, DWORD flags) {
  std::ifstream file(std::filesystem::path(environment(L"SENTIQ_EVENTS")) / channel += L".xml", std::ios::binary);
  const bool found = (flags & EvtQueryChannelPath) != 0 && file;
  if (const DWORD error = faultOf(L"EvtQuery", 0, found ? 0 : ERROR_EVT_CHANNEL_NOT_FOUND)) {
    SetLastError(error);
    return nullptr;
  }
  const std::string text{std::istreambuf_iterator<char>(file), {}}, end = "</Event>";
  const pugi::xpath_query wanted(sentiq::toUtf8(query).c_str());  // Throws when it is none.
  auto* const handle = new Handle;
  for (auto at = text.find("<Event "); at != std::string::npos; at = text.find("<Event ", at + 1)) {
    const std::string event = text.substr(at, text.find(end, at) + end.size() - at);
    pugi::xml_document document;
    document.load_string(event.c_str());
    if (wanted.evaluate_boolean(document)) {
      handle->events.insert((flags & EvtQueryReverseDirection) != 0 ? handle->events.begin() : handle->events.end(),
                            event);
    }
  }
  return handle;
}

BOOL WINAPI EvtNext(EVT_HANDLE query, DWORD size, EVT_HANDLE* events, DWORD, DWORD, DWORD* returned) {
  auto& opened = *static_cast<Handle*>(query);
  const DWORD error = faultOf(L"EvtNext", ++opened.nexts);
  for (*returned = 0; error == 0 && *returned < size && !opened.events.empty(); ++*returned) {
    events[*returned] = new Handle({opened.events.front()}, &opened);
    opened.events.pop_front();
  }
  SetLastError(error != 0 ? error : ERROR_NO_MORE_ITEMS);
  return *returned > 0;
}

BOOL WINAPI EvtRender(EVT_HANDLE, EVT_HANDLE event, DWORD flags, DWORD size, void* buffer, DWORD* used, DWORD*) {
  const auto& opened = *static_cast<Handle*>(event);
  std::wstring text = sentiq::toWide(opened.events.front());
  if (const auto at = text.find(L"{LONE}"); at != std::wstring::npos) {
    text.replace(at, 6, L"\xD800");
  }
  *used = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  const int number = ++opened.query->renders;
  const DWORD usual = flags != EvtRenderEventXml ? ERROR_INVALID_PARAMETER
                      : size < *used             ? ERROR_INSUFFICIENT_BUFFER
                                                 : 0;
  const DWORD error = faultOf(L"EvtRender", number, usual);
  if (error == 0) {
    text.copy(static_cast<wchar_t*>(buffer), text.size());
    static_cast<wchar_t*>(buffer)[text.size()] = 0;
  }
  SetLastError(error != 0 ? error : faultOf(L"EvtRendered", number));
  return error == 0;
}

BOOL WINAPI EvtClose(EVT_HANDLE handle) {
  delete static_cast<Handle*>(handle);
  return TRUE;
}

}  // extern "C"
