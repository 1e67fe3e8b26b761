// With the machine's answers replaced: whatever a machine may say, or fail to say.
#include <windows.h>

#include <dxgi.h>

#include <cstdlib>
#include <ctime>

#include "capture/SystemInfoWindows.h"
#include "tests/support/Test.h"

namespace {

bool answers = true;  // Whether disk, page file and power can be asked.
std::wstring askedRoot;
BYTE batteryFlag = 0, batteryPercent = 0;
HRESULT factoryResult = S_OK;
int references = 0;  // To the objects below.

// A COM object is a pointer to a table of its functions; here stand only those that are called, at their places.
struct FakeAdapter {
  const void* const* table;
  HRESULT found, described;
  std::wstring name;
};
std::vector<FakeAdapter> adapters;

ULONG STDMETHODCALLTYPE release(void*) {
  return static_cast<ULONG>(--references);
}
HRESULT STDMETHODCALLTYPE getDesc(FakeAdapter* adapter, DXGI_ADAPTER_DESC* description) {
  *description = {};
  adapter->name.copy(description->Description, 128);
  description->DeviceId = 0x2206;
  description->DedicatedVideoMemory = 8u << 20;
  description->SharedSystemMemory = 1;
  return adapter->described;
}
const void* const adapterTable[] = {nullptr, nullptr, reinterpret_cast<void*>(release), nullptr, nullptr, nullptr,
                                    nullptr, nullptr, reinterpret_cast<void*>(getDesc)};
HRESULT STDMETHODCALLTYPE enumAdapters(void*, UINT index, void** adapter) {
  if (index == adapters.size()) {
    return DXGI_ERROR_NOT_FOUND;
  }
  FakeAdapter& wanted = adapters.at(index);
  wanted.table = adapterTable;
  *adapter = SUCCEEDED(wanted.found) ? &wanted : nullptr;
  references += SUCCEEDED(wanted.found);
  return wanted.found;
}
const void* const factoryTable[] = {nullptr, nullptr, reinterpret_cast<void*>(release),     nullptr, nullptr,
                                    nullptr, nullptr, reinterpret_cast<void*>(enumAdapters)};
const void* const* factory = factoryTable;

}  // namespace

// The program calls through these pointers: defining them here takes the system's place.
extern "C" {
decltype(&GetDiskFreeSpaceExW) __imp_GetDiskFreeSpaceExW = [](LPCWSTR root, ULARGE_INTEGER* toCaller,
                                                              ULARGE_INTEGER* total, ULARGE_INTEGER* free) -> BOOL {
  askedRoot = root;
  toCaller->QuadPart = 5;
  total->QuadPart = 100;
  free->QuadPart = 30;
  return answers;
};
decltype(&GlobalMemoryStatusEx) __imp_GlobalMemoryStatusEx = [](MEMORYSTATUSEX* status) -> BOOL {
  EXPECT_EQ(status->dwLength, 64u);
  status->ullTotalPageFile = 200;
  status->ullAvailPageFile = 50;
  return answers;
};
decltype(&GetSystemPowerStatus) __imp_GetSystemPowerStatus = [](SYSTEM_POWER_STATUS* status) -> BOOL {
  status->BatteryFlag = batteryFlag;
  status->BatteryLifePercent = batteryPercent;
  return answers;
};
decltype(&GetTickCount64) __imp_GetTickCount64 = []() -> ULONGLONG { return 100'999; };
decltype(&CreateDXGIFactory1) __imp_CreateDXGIFactory1 = [](REFIID kind, void** created) {
  EXPECT_TRUE(IsEqualGUID(kind, IID_IDXGIFactory1));
  *created = SUCCEEDED(factoryResult) ? &factory : nullptr;
  references += SUCCEEDED(factoryResult);
  return factoryResult;
};
}

namespace sentiq {
namespace {

TEST(SystemInfoWindows, DiskAndPageFileStayAsTheyWereWhenTheyCannotBeAsked) {
  SystemInfoWindows system;
  for (const bool can : {true, false}) {
    answers = can;
    std::uint64_t total = 1, used = 2, free = 3;
    EXPECT_EQ(system.getDiskSpace(total, used, free), can);
    EXPECT_EQ((std::vector{total, used, free}),
              (can ? std::vector<std::uint64_t>{100, 70, 30} : std::vector<std::uint64_t>{1, 2, 3}));
    EXPECT_EQ(askedRoot, L"C:\\");
    total = 1, used = 2, free = 3;
    EXPECT_EQ(system.getSwapMemory(total, used, free), can);
    EXPECT_EQ((std::vector{total, used, free}),
              (can ? std::vector<std::uint64_t>{200, 150, 50} : std::vector<std::uint64_t>{1, 2, 3}));
  }
}

TEST(SystemInfoWindows, BatteryIsAPercentageOrSaysWhyNot) {
  const struct {
    bool answers;
    BYTE flag, percent;
    std::int32_t figure;
  } cases[] = {{true, 1, 57, 57},    {true, 8, 100, 100},  {true, 128, 0, 0},  {true, 128, 255, -2},
               {true, 255, 255, -1}, {true, 136, 255, -1}, {true, 0, 255, -1}, {false, 128, 255, -1}};
  for (const auto& [can, flag, percent, figure] : cases) {
    answers = can;
    batteryFlag = flag;
    batteryPercent = percent;
    EXPECT_EQ(SystemInfoWindows().getBatteryPercentage(), figure) << int{flag} << ' ' << int{percent};
  }
}

TEST(SystemInfoWindows, EveryAdapterThatDescribesItselfIsListed) {
  const std::wstring full(128, L'x');  // Fills the field: no terminating zero.
  adapters = {{nullptr, S_OK, S_OK, L"A \u00FC\U0001F600"},
              {nullptr, S_OK, E_FAIL, L"mute"},
              {nullptr, E_FAIL, S_OK, L"not handed out"},
              {nullptr, S_OK, S_OK, std::wstring(L"B\0hidden", 8)},
              {nullptr, S_OK, S_OK, full},
              {nullptr, S_OK, S_OK, L"\xD800"}};
  std::vector<GpuInfo> found(1);
  SystemInfoWindows().getGpuInfo(found);
  ASSERT_EQ(found.size(), 5u);  // Appended to what was there.
  EXPECT_EQ(found[1].name, "A \u00FC\U0001F600");
  EXPECT_EQ(found[1].deviceId, 0x2206u);
  EXPECT_EQ(found[1].dedicatedVideoMemory, 8u << 20);
  EXPECT_EQ(found[2].name + found[3].name, "B" + std::string(128, 'x'));
  EXPECT_EQ(found[4].name, "");
  EXPECT_EQ(references, 0);

  adapters.clear();
  found.clear();
  SystemInfoWindows().getGpuInfo(found);
  EXPECT_TRUE(found.empty());
  factoryResult = E_FAIL;
  SystemInfoWindows().getGpuInfo(found);
  ASSERT_EQ(found.size(), 1u);  // One blank entry.
  EXPECT_EQ(found[0].name, "");
  EXPECT_EQ(found[0].dedicatedVideoMemory, 0u);
  EXPECT_EQ(references, 0);
}

TEST(SystemInfoWindows, SystemStartIsNowLessTheWholeSecondsOfUpTime) {
  const std::int64_t start = SystemInfoWindows().getSystemStartTime();
  EXPECT_LE(std::abs(std::time(nullptr) - 100 - start), 1);
}

}  // namespace
}  // namespace sentiq
