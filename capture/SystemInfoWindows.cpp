#include "capture/SystemInfoWindows.h"

#include <windows.h>

#include <dxgi.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "logging/TextConversion.h"
#include "logging/UniqueHandle.h"

namespace sentiq {
namespace {

template <typename Interface>
struct ComKind {
  using Type = Interface*;
  static Type none() { return nullptr; }
  static void close(Type object) { object->Release(); }
};

template <typename Interface>
using ComObject = UniqueHandle<ComKind<Interface>>;

constexpr BYTE percentageUnknown = 255;
constexpr BYTE noSystemBattery = 128;

// More than any machine has: an enumeration that keeps failing must come to an end.
constexpr UINT mostAdapters = 256;

ComObject<IDXGIFactory1> createFactory() {
  void* factory = nullptr;
  if (FAILED(CreateDXGIFactory1(IID_IDXGIFactory1, &factory))) {
    return {};
  }
  return ComObject<IDXGIFactory1>(static_cast<IDXGIFactory1*>(factory));
}

// A description that fills its field has no terminating zero.
std::string adapterName(const DXGI_ADAPTER_DESC& description) {
  const auto* const begin = std::begin(description.Description);
  const auto* const end = std::find(begin, std::end(description.Description), L'\0');
  try {
    return toUtf8(std::wstring_view(begin, static_cast<std::size_t>(end - begin)));
  } catch (const std::range_error&) {
    return {};
  }
}

}  // namespace

bool SystemInfoWindows::getDiskSpace(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) {
  ULARGE_INTEGER freeToCaller = {};
  ULARGE_INTEGER all = {};
  ULARGE_INTEGER allFree = {};
  if (GetDiskFreeSpaceExW(L"C:\\", &freeToCaller, &all, &allFree) == FALSE) {
    return false;
  }
  total = all.QuadPart;
  free = allFree.QuadPart;
  used = total - free;
  return true;
}

void SystemInfoWindows::getGpuInfo(std::vector<GpuInfo>& adapters) {
  const ComObject<IDXGIFactory1> factory = createFactory();
  if (!factory) {
    adapters.emplace_back();
    return;
  }
  for (UINT index = 0; index < mostAdapters; ++index) {
    IDXGIAdapter* found = nullptr;
    const HRESULT result = factory.get()->EnumAdapters(index, &found);
    const ComObject<IDXGIAdapter> adapter(found);
    if (result == DXGI_ERROR_NOT_FOUND) {
      return;
    }
    DXGI_ADAPTER_DESC description = {};
    if (!adapter || FAILED(adapter.get()->GetDesc(&description))) {
      continue;
    }
    GpuInfo gpu;
    gpu.name = adapterName(description);
    gpu.deviceId = description.DeviceId;
    gpu.dedicatedVideoMemory = description.DedicatedVideoMemory;
    adapters.push_back(std::move(gpu));
  }
}

std::int32_t SystemInfoWindows::getBatteryPercentage() {
  SYSTEM_POWER_STATUS status = {};
  if (GetSystemPowerStatus(&status) == FALSE) {
    return -1;
  }
  if (status.BatteryLifePercent != percentageUnknown) {
    return status.BatteryLifePercent;
  }
  return status.BatteryFlag == noSystemBattery ? -2 : -1;
}

bool SystemInfoWindows::getSwapMemory(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) {
  MEMORYSTATUSEX status = {};
  static_assert(sizeof status == 64);
  status.dwLength = sizeof status;
  if (GlobalMemoryStatusEx(&status) == FALSE) {
    return false;
  }
  total = status.ullTotalPageFile;
  free = status.ullAvailPageFile;
  used = total - free;
  return true;
}

std::int64_t SystemInfoWindows::getSystemStartTime() {
  return std::int64_t{std::time(nullptr)} - static_cast<std::int64_t>(GetTickCount64() / 1000);
}

}  // namespace sentiq
