// With the machine's answers replaced: whatever a machine may say, or fail to say.
#include <windows.h>

#include <dxgi.h>

#include <ctime>

#include "capture/SystemInfoWindows.h"
#include "tests/support/Test.h"

// A COM object is a pointer to a table of its functions. One table, with those that are called, serves factory and
// adapters.
struct Table;
struct ComObject {
  const Table* table;
  HRESULT handedOut, described;
  std::wstring name;
};
static std::vector<ComObject> adapters;
static int references = 0;

static HRESULT handOut(ComObject& object, void** to) {
  *to = SUCCEEDED(object.handedOut) ? &object : nullptr;
  references += SUCCEEDED(object.handedOut);
  return object.handedOut;
}
static ULONG STDMETHODCALLTYPE release(void*) {
  return static_cast<ULONG>(--references);
}
static HRESULT STDMETHODCALLTYPE enumAdapters(void*, UINT index, void** adapter) {
  return index == adapters.size() ? DXGI_ERROR_NOT_FOUND : handOut(adapters.at(index), adapter);
}
static HRESULT STDMETHODCALLTYPE getDesc(ComObject* adapter, DXGI_ADAPTER_DESC* description) {
  *description = {{}, 1, 0x2206, 1, 1, 8u << 20, 1, 1, {}};
  adapter->name.copy(description->Description, 128);
  return adapter->described;
}
struct Table {
  const void* inherited[2] = {};
  const void* released = reinterpret_cast<void*>(release);
  const void* ofObjects[4] = {};
  const void* own[2] = {reinterpret_cast<void*>(enumAdapters), reinterpret_cast<void*>(getDesc)};
};
static const Table table;
static ComObject factory = {&table, S_OK, S_OK, L""};

static BOOL answers = TRUE;  // Whether disk, page file and power can be asked.
static SYSTEM_POWER_STATUS battery;

extern "C" {
constinit decltype(&GetDiskFreeSpaceExW) __imp_GetDiskFreeSpaceExW = [](auto root, auto toCaller, auto total,
                                                                        auto free) {
  toCaller->QuadPart = 5;
  total->QuadPart = root == std::wstring(L"C:\\") ? 100 : 0;
  free->QuadPart = 30;
  return answers;
};
constinit decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = [](auto status) {
  *status = {status->dwLength, 1, 1, 1, status->dwLength == 64 ? 200u : 0u, 50, 1, 1, 1};
  return answers;
};
constinit decltype(&GetSystemPowerStatus) __imp_GetSystemPowerStatus = [](auto status) {
  *status = battery;
  return answers;
};
HRESULT WINAPI CreateDXGIFactory1(REFIID kind, void** created) {
  return IsEqualGUID(kind, IID_IDXGIFactory1) ? handOut(factory, created) : E_NOINTERFACE;
}
}

namespace sentiq {

TEST(SystemInfoWindows, DiskAndPageFileStayAsTheyWereWhenTheyCannotBeAsked) {
  for (const BOOL can : {TRUE, FALSE}) {
    answers = can;
    std::vector<std::uint64_t> figures = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(SystemInfoWindows().getDiskSpace(figures[0], figures[1], figures[2]), can != FALSE);
    EXPECT_EQ(SystemInfoWindows().getSwapMemory(figures[3], figures[4], figures[5]), can != FALSE);
    EXPECT_EQ(PrintToString(figures), can ? "{ 100, 70, 30, 200, 150, 50 }" : "{ 1, 2, 3, 4, 5, 6 }");
  }
}

TEST(SystemInfoWindows, BatteryIsAPercentageOrSaysWhyNot) {
  const int cases[][4] = {{TRUE, 8, 100, 100},  {TRUE, 128, 0, 0},  {TRUE, 128, 255, -2}, {TRUE, 255, 255, -1},
                          {TRUE, 136, 255, -1}, {TRUE, 0, 255, -1}, {FALSE, 128, 57, -1}};
  for (const auto& [can, flag, percent, figure] : cases) {
    answers = can;
    battery = {1, static_cast<BYTE>(flag), static_cast<BYTE>(percent), 0, 1, 1};
    EXPECT_EQ(SystemInfoWindows().getBatteryPercentage(), figure) << flag << ' ' << percent;
  }
}

TEST(SystemInfoWindows, EveryAdapterThatDescribesItselfIsListed) {
  adapters = {{&table, S_OK, S_OK, L"A \u00FC\U0001F600"},
              {&table, S_OK, E_FAIL, L"mute"},
              {&table, E_FAIL, S_OK, L"not handed out"},
              {&table, S_OK, S_OK, std::wstring(L"B\0hidden", 8)},
              {&table, S_OK, S_OK, std::wstring(128, L'x')},  // Fills the field: no terminating zero.
              {&table, S_OK, S_OK, L"\xD800"}};
  std::vector<GpuInfo> found(1);  // Appended to what is there.
  SystemInfoWindows().getGpuInfo(found);
  adapters.clear();
  SystemInfoWindows().getGpuInfo(found);
  factory.handedOut = E_FAIL;  // Makes one blank entry.
  SystemInfoWindows().getGpuInfo(found);
  Lines texts;
  for (const GpuInfo& gpu : found) {
    texts.push_back(gpu.name + " " + std::to_string(gpu.deviceId) + " " + std::to_string(gpu.dedicatedVideoMemory));
  }
  EXPECT_THAT(texts, ElementsAre(" 0 0", "A \u00FC\U0001F600 8710 8388608", "B 8710 8388608",
                                 std::string(128, 'x') + " 8710 8388608", " 8710 8388608", " 0 0"));
  EXPECT_EQ(references, 0);
}

TEST(SystemInfoWindows, SystemStartIsNowLessTheUpTime) {
  const auto expected = std::time(nullptr) - static_cast<std::time_t>(GetTickCount64() / 1000);
  EXPECT_LE(std::abs(SystemInfoWindows().getSystemStartTime() - expected), 1);
}

}  // namespace sentiq
