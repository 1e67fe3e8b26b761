// The machine as the capture sees it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace sentiq {

/// One graphics adapter. Only the name and the dedicated video memory reach the metric record.
struct GpuInfo {
  std::string name;  // UTF-8.
  std::string vendorName;
  std::string driverVersion;
  std::string driverDate;
  std::uint32_t revision = 0;
  std::uint64_t deviceId = 0;
  std::uint64_t dedicatedVideoMemory = 0;  // Bytes.
};

/// Used on the capture thread only. Nothing here throws or logs: what cannot be found out shows as the
/// fallback that the operation states. The order of the operations is part of the interface.
class SentiqSystem {
 public:
  SentiqSystem() = default;
  virtual ~SentiqSystem() = default;
  SentiqSystem(const SentiqSystem&) = delete;
  SentiqSystem& operator=(const SentiqSystem&) = delete;
  SentiqSystem(SentiqSystem&&) = delete;
  SentiqSystem& operator=(SentiqSystem&&) = delete;

  /// Bytes of volume C:. False, with the arguments as they were, when it cannot be asked.
  virtual bool getDiskSpace(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) = 0;

  /// Appends every adapter; one blank entry when adapters cannot be listed at all.
  virtual void getGpuInfo(std::vector<GpuInfo>& adapters) = 0;

  /// Percent; -1 when not known, -2 when there is no battery.
  virtual std::int32_t getBatteryPercentage() = 0;

  /// Bytes of what can be committed, which is physical memory and page files together. False, with the arguments as
  /// they were, when they cannot be asked.
  virtual bool getSwapMemory(std::uint64_t& total, std::uint64_t& used, std::uint64_t& free) = 0;

  /// Seconds since 1970, UTC. Two calls can differ by a second.
  virtual std::int64_t getSystemStartTime() = 0;
};

}  // namespace sentiq
