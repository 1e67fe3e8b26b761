#include "logging/WatchdogLog.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>
#include <mutex>

#include "logging/LogEncoding.h"
#include "logging/LogFile.h"
#include "logging/LogGrammar.h"
#include "logging/TextConversion.h"
#include "logging/TimeText.h"

namespace sentiq {
namespace {

struct Configuration {
  std::int32_t pid = 0;
  std::filesystem::path watchdogLog;
  std::filesystem::path initialLog;
  bool encodeLogs = false;
};

// Process-wide: written by configureWatchdogLog, then only read, by every thread that logs. The thread that stops the
// watchdog, which writes a line, does not wait for its start: so nobody reads it before configured is set.
Configuration configuration;
std::atomic<bool> configured = false;

// Process-wide: guards the files, not the configuration.
std::mutex filesMutex;

const std::filesystem::path& pathOf(LogTarget target) {
  if (!configured) {
    static const std::filesystem::path none;
    return none;
  }
  return target == LogTarget::WatchdogInitialLog ? configuration.initialLog : configuration.watchdogLog;
}

std::string_view levelTag(LogLevel level) {
  constexpr std::size_t unknown = std::size(grammar::levels) - 1;
  return grammar::levels[std::min<std::size_t>(static_cast<std::uint32_t>(level), unknown)];
}

bool namesSessionOrProcess(std::string_view message) {
  return message.find(grammar::sessionId) != std::string_view::npos ||
         message.find(grammar::processId) != std::string_view::npos;
}

// Appends what makeText() returns and a newline; the text is made once the file is open.
template <typename MakeText>
void appendLine(LogTarget target, MakeText makeText) {
  const std::filesystem::path& path = pathOf(target);
  if (path.empty()) {
    return;
  }
  const std::lock_guard lock(filesMutex);
  LogFile file(path, LogFile::Mode::Append);
  if (file.isOpen()) {
    file.append(makeText() + '\n');
  }
}

}  // namespace

void configureWatchdogLog(std::int32_t pid, const std::wstring& watchdogLogPath, const std::wstring& initialLogPath,
                          bool encodeLogs) {
  configuration = {pid, longPath(toPath(watchdogLogPath)), longPath(toPath(initialLogPath)), encodeLogs};
  configured = true;
}

// The line carries no process id: the header says it once.
void writeLogLine(std::string_view message, bool isSystem, LogLevel level, LogTarget target, bool keepHeaderPlain,
                  bool neverEncode) {
  appendLine(target, [&] {
    std::string line = isoLocalTimestamp();
    if (line.empty()) {
      line = grammar::noTimeStamp;
    }
    line += ' ';
    line += grammar::categories[isSystem ? 0 : 1];
    line += ' ';
    line += levelTag(level);
    line += grammar::tagsEnd;
    line += message;
    const bool plain = !configuration.encodeLogs || neverEncode || (keepHeaderPlain && namesSessionOrProcess(message));
    return plain ? line : encodeText(line);
  });
}

void writeSystemLine(std::string_view message, LogTarget target) {
  writeLogLine(message, /*isSystem=*/true, LogLevel::Info, target);
}

void writeProcessLine(std::string_view message, LogTarget target) {
  writeLogLine(message, /*isSystem=*/false, LogLevel::Info, target);
}

void writeSeparator(LogTarget target) {
  appendLine(target, [] { return encodeText(grammar::separator); });
}

void truncateLog(LogTarget target) {
  const std::filesystem::path& path = pathOf(target);
  if (logFileExists(path)) {
    const std::lock_guard lock(filesMutex);
    const LogFile emptied(path, LogFile::Mode::Truncate);
  }
}

void writeWatchdogHeader(std::string_view sessionId, LogTarget target) {
  const auto write = [target](const std::string& message, bool keepPlain) {
    writeLogLine(message, /*isSystem=*/true, LogLevel::Info, target, keepPlain);
  };
  write(grammar::headerLine(grammar::sessionId, sessionId), /*keepPlain=*/true);
  write(grammar::headerLine(grammar::processId, std::to_string(configuration.pid)), /*keepPlain=*/true);
  write(timeZoneLine(), /*keepPlain=*/false);
  write(grammar::headerLine(grammar::bootTime, lastBootTime()), /*keepPlain=*/false);
}

}  // namespace sentiq
