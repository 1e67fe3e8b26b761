#pragma once

#include <cstdint>
#include <vector>

#include "capture/SentiqSystem.h"

namespace sentiq {

class SystemInfoWindows : public SentiqSystem {
 public:
  bool getDiskSpace(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) override;

  /// Every adapter counts, software and remote ones too; one that does not describe itself is left out. A
  /// name that is not valid UTF-16 becomes empty.
  void getGpuInfo(std::vector<GpuInfo>& adapters) override;

  std::int32_t getBatteryPercentage() override;

  /// Of the commit limit, physical memory included.
  bool getSwapMemory(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) override;

  std::int64_t getSystemStartTime() override;
};

}  // namespace sentiq
