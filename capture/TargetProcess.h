// The monitored process as the capture sees it.
#pragma once

#include <cstdint>
#include <string>

namespace sentiq {

/// Nothing here throws or logs: what cannot be found out shows as the fallback that the operation states. The
/// process may end between any two calls. Used on the capture thread, but for setProcessId, which may be
/// called on another thread meanwhile. The order of the operations is part of the interface.
class TargetProcess {
 public:
  TargetProcess() = default;
  virtual ~TargetProcess() = default;
  TargetProcess(const TargetProcess&) = delete;
  TargetProcess& operator=(const TargetProcess&) = delete;
  TargetProcess(TargetProcess&&) = delete;
  TargetProcess& operator=(TargetProcess&&) = delete;

  /// Says which process is meant; does not look whether there is one.
  virtual void setProcessId(std::uint32_t pid) = 0;

  /// Base name of the executable; "Unknown" when it cannot be read.
  virtual std::string getProcessName() = 0;

  virtual std::uint32_t getProcessId() = 0;

  /// Working set in bytes; 0 when it cannot be read.
  virtual std::uint64_t getMemoryUsage() = 0;

  virtual double getCpuUsage() = 0;

  /// One of the fixed status texts.
  virtual std::string getStatus() = 0;

  /// Seconds since 1970, UTC; 0 when it cannot be read.
  virtual std::int64_t getStartTime() = 0;

  virtual std::int32_t getFileDescriptorCount() = 0;

  /// 0 when the threads cannot be counted.
  virtual std::uint32_t getThreadCount() = 0;
};

}  // namespace sentiq
