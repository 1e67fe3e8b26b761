#include "bench/MemoryEventLog.h"

#include <windows.h>

#include <winevt.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "logging/TextConversion.h"

namespace {

constexpr std::size_t eventSize = 3 * 1024;

std::vector<std::wstring> channel;
std::size_t nextEvent = 0;

}  // namespace

namespace sentiq::bench {

void fillEventLog(std::size_t events) {
  for (std::size_t number = 0; number < events; ++number) {
    std::string xml =
        "<Event xmlns='http://schemas.microsoft.com/win/2004/08/events/event'><System><Provider Name=\"Application "
        "Error\"/><EventID>1000</EventID><EventRecordID>" +
        std::to_string(number) + "</EventRecordID><Computer>WORKSTATION</Computer></System><EventData>";
    const std::string end = "</EventData></Event>";
    while (xml.size() + end.size() < eventSize) {
      xml += "<Data Name=\"Path\">C:\\Program Files\\Canvix\\Canvix.exe, gr\u00F6\u00DFer</Data>\r\n";
    }
    channel.push_back(toWide(xml + end));
  }
}

const std::vector<std::wstring>& eventLog() {
  return channel;
}

}  // namespace sentiq::bench

extern "C" {

EVT_HANDLE WINAPI EvtQuery(EVT_HANDLE, LPCWSTR, LPCWSTR, DWORD) {
  nextEvent = 0;
  return &nextEvent;
}

BOOL WINAPI EvtNext(EVT_HANDLE, DWORD size, EVT_HANDLE* events, DWORD, DWORD, DWORD* returned) {
  for (*returned = 0; *returned < size && nextEvent < channel.size(); ++nextEvent) {
    events[(*returned)++] = &channel[nextEvent];
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
