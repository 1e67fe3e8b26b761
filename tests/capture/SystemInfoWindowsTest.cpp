// With the machine's answers replaced: whatever a machine may say, or fail to say.
#include <windows.h>

#include <dxgi.h>

#include <cstdlib>
#include <ctime>

#include "capture/SystemInfoWindows.h"
#include "tests/support/Test.h"

namespace {

BOOL answers = TRUE;  // Whether disk, page file and power can be asked.
std::wstring askedRoot;
BYTE batteryFlag = 0, batteryPercent = 0;

// A COM object is a pointer to a table of its functions; one table, with those that are called, serves factory and
// adapters.
struct ComObject {
  const void* const* table;
  HRESULT handedOut, described;
  std::wstring name;
};
std::vector<ComObject> adapters;
int references = 0;

ULONG STDMETHODCALLTYPE release(void*) {
  return static_cast<ULONG>(--references);
}
HRESULT handOut(ComObject& object, void** to) {
  *to = SUCCEEDED(object.handedOut) ? &object : nullptr;
  references += SUCCEEDED(object.handedOut);
  return object.handedOut;
}
HRESULT STDMETHODCALLTYPE enumAdapters(void*, UINT index, void** adapter) {
  return index == adapters.size() ? DXGI_ERROR_NOT_FOUND : handOut(adapters.at(index), adapter);
}
HRESULT STDMETHODCALLTYPE getDesc(ComObject* adapter, DXGI_ADAPTER_DESC* description) {
  *description = {};
  adapter->name.copy(description->Description, 128);
  description->DeviceId = 0x2206;
  description->DedicatedVideoMemory = 8u << 20;
  description->DedicatedSystemMemory = description->SharedSystemMemory = 1;
  return adapter->described;
}
const void* const table[] = {nullptr,
                             nullptr,
                             reinterpret_cast<void*>(release),
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             reinterpret_cast<void*>(enumAdapters),
                             reinterpret_cast<void*>(getDesc)};
ComObject factory = {table, S_OK, S_OK, L""};

}  // namespace

extern "C" {
decltype(&GetDiskFreeSpaceExW) __imp_GetDiskFreeSpaceExW = [](LPCWSTR root, ULARGE_INTEGER* toCaller,
                                                              ULARGE_INTEGER* total, ULARGE_INTEGER* free) {
  askedRoot = root;
  toCaller->QuadPart = 5;
  total->QuadPart = 100;
  free->QuadPart = 30;
  return answers;
};
decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = [](MEMORYSTATUSEX* status) {
  EXPECT_EQ(status->dwLength, 64u);
  status->ullTotalPageFile = 200;
  status->ullAvailPageFile = 50;
  return answers;
};
decltype(&GetSystemPowerStatus) __imp_GetSystemPowerStatus = [](SYSTEM_POWER_STATUS* status) {
  status->BatteryFlag = batteryFlag;
  status->BatteryLifePercent = batteryPercent;
  return answers;
};
HRESULT WINAPI CreateDXGIFactory1(REFIID kind, void** created) {
  EXPECT_TRUE(IsEqualGUID(kind, IID_IDXGIFactory1));
  return handOut(factory, created);
}
}

namespace sentiq {
namespace {

TEST(SystemInfoWindows, DiskAndPageFileStayAsTheyWereWhenTheyCannotBeAsked) {
  using Figures = std::vector<std::uint64_t>;
  SystemInfoWindows system;
  for (const BOOL can : {TRUE, FALSE}) {
    answers = can;
    Figures disk = {1, 2, 3}, swap = disk;
    EXPECT_EQ(system.getDiskSpace(disk[0], disk[1], disk[2]), can != FALSE);
    EXPECT_EQ(system.getSwapMemory(swap[0], swap[1], swap[2]), can != FALSE);
    EXPECT_EQ(disk, (can ? Figures{100, 70, 30} : Figures{1, 2, 3}));
    EXPECT_EQ(swap, (can ? Figures{200, 150, 50} : Figures{1, 2, 3}));
    EXPECT_EQ(askedRoot, L"C:\\");
  }
}

TEST(SystemInfoWindows, BatteryIsAPercentageOrSaysWhyNot) {
  const struct {
    BOOL answers;
    BYTE flag, percent;
    std::int32_t figure;
  } cases[] = {{TRUE, 8, 100, 100},  {TRUE, 128, 0, 0},  {TRUE, 128, 255, -2}, {TRUE, 255, 255, -1},
               {TRUE, 136, 255, -1}, {TRUE, 0, 255, -1}, {FALSE, 128, 57, -1}};
  for (const auto& [can, flag, percent, figure] : cases) {
    answers = can;
    batteryFlag = flag;
    batteryPercent = percent;
    EXPECT_EQ(SystemInfoWindows().getBatteryPercentage(), figure) << int{flag} << ' ' << int{percent};
  }
}

TEST(SystemInfoWindows, EveryAdapterThatDescribesItselfIsListed) {
  const std::string full(128, 'x');  // Fills the field: no terminating zero.
  adapters = {{table, S_OK, S_OK, L"A \u00FC\U0001F600"},
              {table, S_OK, E_FAIL, L"mute"},
              {table, E_FAIL, S_OK, L"not handed out"},
              {table, S_OK, S_OK, std::wstring(L"B\0hidden", 8)},
              {table, S_OK, S_OK, std::wstring(full.begin(), full.end())},
              {table, S_OK, S_OK, L"\xD800"}};
  std::vector<GpuInfo> found(1);  // Appended to what is there.
  SystemInfoWindows().getGpuInfo(found);
  adapters.clear();
  SystemInfoWindows().getGpuInfo(found);
  factory.handedOut = E_FAIL;  // Makes one blank entry.
  SystemInfoWindows().getGpuInfo(found);
  std::vector<std::string> names;
  for (const GpuInfo& gpu : found) {
    names.push_back(gpu.name);
    EXPECT_EQ(gpu.dedicatedVideoMemory, gpu.deviceId == 0x2206 ? 8u << 20 : 0u);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"", "A \u00FC\U0001F600", "B", full, "", ""}));
  EXPECT_EQ(found[1].deviceId + found[5].deviceId, 0x2206u);
  EXPECT_EQ(references, 0);
}

TEST(SystemInfoWindows, SystemStartIsNowLessTheUpTime) {
  const auto expected = std::time(nullptr) - static_cast<std::time_t>(GetTickCount64() / 1000);
  EXPECT_LE(std::abs(SystemInfoWindows().getSystemStartTime() - expected), 1);
}

}  // namespace
}  // namespace sentiq
