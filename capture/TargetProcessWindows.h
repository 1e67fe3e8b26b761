#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <string>

#include "capture/TargetProcess.h"

namespace sentiq {

/// Opens the process afresh for every answer and keeps no handle, so the monitored process can end and be
/// forgotten by the system whenever it likes.
class TargetProcessWindows : public TargetProcess {
 public:
  void setProcessId(std::uint32_t pid) override;

  /// In the machine's code page. The system answers only who may also read the process's memory; that right is not
  /// asked for, so another process's name is "Unknown" there.
  std::string getProcessName() override;

  std::uint32_t getProcessId() override;
  std::uint64_t getMemoryUsage() override;

  /// Always 0.0: processor use is not measured here.
  double getCpuUsage() override;

  /// "Running", "Terminated", "Process does not exist", "Access denied to process", "Unable to query process
  /// status" or "Invalid process ID". A process that ended with exit code 259 reads as running.
  std::string getStatus() override;

  std::int64_t getStartTime() override;

  /// Always -1: there is nothing of the kind here.
  std::int32_t getFileDescriptorCount() override;

  std::uint32_t getThreadCount() override;

 private:
  static constexpr std::uint32_t noProcess = std::numeric_limits<std::uint32_t>::max();

  // Atomic, because a start that is ignored still sets it while the capture thread reads.
  std::atomic<std::uint32_t> processId_ = noProcess;
};

}  // namespace sentiq
