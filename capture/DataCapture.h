// Samples the machine and the monitored process at a fixed interval and appends one record per sample to the
// session log, on a thread of its own.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "capture/CaptureSettings.h"
#include "capture/MetricCode.h"
#include "capture/ProcessMetrics.h"
#include "capture/SentiqSystem.h"
#include "capture/SystemMetrics.h"
#include "capture/TargetProcess.h"
#include "logging/SessionFileWriter.h"

namespace sentiq {

class DataCapture {
 public:
  explicit DataCapture(std::unique_ptr<SentiqSystem> system, std::unique_ptr<TargetProcess> process,
                       std::chrono::milliseconds interval = std::chrono::seconds{10});

  /// Ends a capture that still runs, without a line about it, and waits for its thread: up to one interval.
  ~DataCapture();
  DataCapture(const DataCapture&) = delete;
  DataCapture& operator=(const DataCapture&) = delete;
  DataCapture(DataCapture&&) = delete;
  DataCapture& operator=(DataCapture&&) = delete;

  /// The program's one capture, made on first use. Never destroyed: the process ends while its thread may still run.
  static DataCapture& instance();

  /// Starts the capture thread. While there is one nothing happens, except that the process id is passed on.
  /// A capture whose session log could not be opened counts as one. Callable on any thread; throws
  /// std::system_error (resource_unavailable_try_again) when no thread can be made.
  void start(CaptureSettings settings);

  /// Writes the closing line and waits for the capture thread, which may sleep up to one interval and may
  /// write one more record after that line. Does nothing without a capture or when its session log could not
  /// be opened. Callable on any thread but the capture's own (std::system_error, resource_deadlock_would_occur).
  /// @param processGone whether the monitored process has ended.
  void stop(bool processGone);

 private:
  using WriterPromise = std::promise<std::shared_ptr<SessionFileWriter>>;

  struct SystemStart {
    std::int64_t seconds;
    std::string text;
  };

  struct ProcessIdentity {
    std::string name;
    std::uint32_t id;
    std::int64_t startSeconds;
  };

  // These run on the capture thread.
  void captureData(const CaptureSettings& settings, WriterPromise opened);
  void captureSample(SessionFileWriter& writer, const MetricSelection& selection);
  void collect(const MetricSelection& selection, SystemMetrics& systemMetrics, ProcessMetrics& processMetrics);
  void collectSystemStart(SystemMetrics& metrics);
  void collectProcessIdentity(ProcessMetrics& metrics);

  const std::chrono::system_clock::time_point createdAt_ = std::chrono::system_clock::now();
  const std::chrono::milliseconds interval_;
  const std::unique_ptr<SentiqSystem> system_;
  const std::unique_ptr<TargetProcess> process_;

  // Set by start; cleared by stop, by the destructor and by a capture without a file.
  std::atomic<bool> running_ = false;

  // Guards what start and stop change: the four that follow. Never taken on the capture thread.
  std::mutex startStopMutex_;
  std::thread thread_;
  std::shared_future<std::shared_ptr<SessionFileWriter>> writer_;  // None inside: its file did not open.
  std::string analyticsIdentifier_;  // Read by the capture thread: it changes only while there is none.
  std::wstring forceQuitLogPath_;    // Kept for a writer of that file; there is none.

  // Only the capture thread uses the rest. What is known is never asked again, not even by a later capture.
  const std::string foregroundProcessName_;  // Nothing fills it.
  std::optional<SystemStart> systemStart_;
  std::optional<ProcessIdentity> processIdentity_;
};

}  // namespace sentiq
