#include "capture/DataCapture.h"

#include <exception>
#include <utility>

#include "capture/MetricRecord.h"
#include "logging/LogFile.h"
#include "logging/LogGrammar.h"
#include "logging/TextConversion.h"
#include "logging/TimeText.h"

namespace sentiq {
namespace {

constexpr int openAttempts = 3;
constexpr std::chrono::milliseconds openRetryStep{100};

// Process-wide: set by the first capture thread that has written the header, read by those that follow.
std::atomic<bool> headerWritten = false;

// Another program may hold the file for a moment, so a failure is not final at once.
std::shared_ptr<SessionFileWriter> openSessionLog(const CaptureSettings& settings) {
  for (int attempt = 1;; ++attempt) {
    try {
      return std::make_shared<SessionFileWriter>(toUtf8(settings.sessionLogPath), settings.encodeLogs,
                                                 LogFile::Mode::Append);
    } catch (const std::exception&) {
      if (attempt == openAttempts) {
        return nullptr;
      }
      std::this_thread::sleep_for(attempt * openRetryStep);
    } catch (...) {
      return nullptr;
    }
  }
}

void writeHeaderOnce(SessionFileWriter& writer, const std::string& analyticsIdentifier, std::uint32_t pid) {
  if (headerWritten) {
    return;
  }
  writer.write(grammar::headerLine(grammar::sessionId, analyticsIdentifier) + '\n' +
                   grammar::headerLine(grammar::processId, std::to_string(pid)),
               /*withTimestamp=*/false, /*neverEncode=*/true);
  headerWritten = true;
}

bool isKnown(std::int64_t startSeconds) {
  return startSeconds != 0 && startSeconds != -1;
}

std::string elapsedSince(std::int64_t startSeconds) {
  using namespace std::chrono;
  return elapsedTimeText(sys_seconds{seconds{startSeconds}}, time_point_cast<seconds>(system_clock::now()));
}

}  // namespace

DataCapture::DataCapture(std::unique_ptr<SentiqSystem> system, std::unique_ptr<TargetProcess> process,
                         std::chrono::milliseconds interval)
    : interval_(interval), system_(std::move(system)), process_(std::move(process)) {}

// A thread that nobody joined would end the program by std::terminate.
DataCapture::~DataCapture() {
  running_ = false;
  if (thread_.joinable()) {
    thread_.join();
  }
}

void DataCapture::start(CaptureSettings settings) {
  process_->setProcessId(settings.processId);
  const std::lock_guard lock(startStopMutex_);
  if (thread_.joinable()) {
    return;
  }
  running_ = true;
  forceQuitLogPath_ = settings.forceQuitLogPath;
  analyticsIdentifier_ = settings.analyticsIdentifier;
  WriterPromise opened;
  writer_ = opened.get_future().share();
  thread_ = std::thread(&DataCapture::captureData, this, std::move(settings), std::move(opened));
}

// Waits until the capture thread knows whether it has a file: a process that ends right after the start gets
// its closing line all the same.
void DataCapture::stop(bool processGone) {
  const std::lock_guard lock(startStopMutex_);
  if (!thread_.joinable() || !writer_.get()) {
    return;
  }
  writer_.get()->write(processGone ? grammar::exitStatus : grammar::captureStopped,
                       /*withTimestamp=*/true, /*neverEncode=*/false);
  running_ = false;
  thread_.join();
}

void DataCapture::captureData(const CaptureSettings& settings, WriterPromise opened) {
  const std::shared_ptr<SessionFileWriter> writer = openSessionLog(settings);
  if (!writer) {
    running_ = false;
    opened.set_value(nullptr);
    return;
  }
  writeHeaderOnce(*writer, analyticsIdentifier_, settings.processId);
  opened.set_value(writer);  // Not before the header, or a closing line could stand above it.
  while (running_) {
    try {
      captureSample(*writer, settings.metrics);
    } catch (const std::exception& error) {
      writer->write(std::string(grammar::captureError) + error.what(), /*withTimestamp=*/true,
                    /*neverEncode=*/false);
      continue;  // Without a pause, on purpose: the next sample makes up for the one that was lost.
    }
    // Not a wait on a condition: its time-out would follow changes of the clock, and stop does not cut the sleep short.
    std::this_thread::sleep_for(interval_);
  }
}

void DataCapture::captureSample(SessionFileWriter& writer, const MetricSelection& selection) {
  SystemMetrics systemMetrics;
  ProcessMetrics processMetrics;
  collect(selection, systemMetrics, processMetrics);
  std::string record;
  buildMetricRecord(systemMetrics, processMetrics, record, selection);
  writer.write(record, /*withTimestamp=*/false, /*neverEncode=*/false);
}

// The order is fixed.
void DataCapture::collect(const MetricSelection& selection, SystemMetrics& systemMetrics,
                          ProcessMetrics& processMetrics) {
  if (isSelected(selection, MetricCode::StartTimesAndIdentity)) {
    collectSystemStart(systemMetrics);
    collectProcessIdentity(processMetrics);
  }
  if (isSelected(selection, MetricCode::MemoryUsage)) {
    processMetrics.memoryUsage = process_->getMemoryUsage();
  }
  if (isSelected(selection, MetricCode::CpuUsage)) {
    processMetrics.cpuUsage = process_->getCpuUsage();
  }
  if (isSelected(selection, MetricCode::Gpu)) {
    system_->getGpuInfo(systemMetrics.gpuInfo);
  }
  if (isSelected(selection, MetricCode::ForegroundProcess)) {
    systemMetrics.fgProcessName = foregroundProcessName_;
  }
  if (isSelected(selection, MetricCode::DiskSpace)) {
    system_->getDiskSpace(systemMetrics.totalDiskSpace, systemMetrics.usedDiskSpace, systemMetrics.freeDiskSpace);
  }
  if (isSelected(selection, MetricCode::Battery)) {
    systemMetrics.batteryPercentage = system_->getBatteryPercentage();
  }
  if (isSelected(selection, MetricCode::SwapMemory)) {
    system_->getSwapMemory(systemMetrics.totalSwapMemory, systemMetrics.usedSwapMemory, systemMetrics.freeSwapMemory);
  }
  if (isSelected(selection, MetricCode::ThreadCount)) {
    processMetrics.threadCount = static_cast<std::int32_t>(process_->getThreadCount());
  }
  if (isSelected(selection, MetricCode::FileDescriptors)) {
    processMetrics.fileDescriptors = process_->getFileDescriptorCount();
  }
  processMetrics.status = process_->getStatus();
}

void DataCapture::collectSystemStart(SystemMetrics& metrics) {
  if (!systemStart_) {
    const std::int64_t seconds = system_->getSystemStartTime();
    systemStart_ = SystemStart{seconds, formatLocalTime(seconds, "%b %d %H:%M:%S")};
  }
  if (isKnown(systemStart_->seconds)) {
    metrics.systemStartTime = systemStart_->text;
    metrics.systemUpTime = elapsedSince(systemStart_->seconds);
  }
}

void DataCapture::collectProcessIdentity(ProcessMetrics& metrics) {
  if (!processIdentity_) {
    // Braces ask in this order: name, id, start time.
    processIdentity_ = ProcessIdentity{process_->getProcessName(), process_->getProcessId(), process_->getStartTime()};
  }
  metrics.processName = processIdentity_->name;
  metrics.processId = processIdentity_->id;
  if (isKnown(processIdentity_->startSeconds)) {
    metrics.appStartTime = elapsedSince(processIdentity_->startSeconds);
  }
}

}  // namespace sentiq
