// The watchdog's two log files. Every operation opens its file, appends and closes it again, so that others
// can read, move or delete the files between two lines. One process-wide mutex serialises all lines,
// separators and truncations across both files. All operations but configureWatchdogLog are callable on any
// thread; failures to open or write are silent, and the next call tries again.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace sentiq {

enum class LogLevel : std::uint32_t { Info = 0, Alert = 1, Error = 2 };

/// Every value but WatchdogInitialLog means the watchdog log.
enum class LogTarget : std::uint32_t { WatchdogInitialLog = 0, WatchdogLog = 1 };

/// Called once, before the first line; what it stores is only read afterwards. An empty path switches its target off.
void configureWatchdogLog(std::int32_t pid, const std::wstring& watchdogLogPath, const std::wstring& initialLogPath,
                          bool encodeLogs);

/// Appends "<time stamp> [SYSTEM] [INFO]: <message>", with the category "[PROCESS]" when not isSystem.
/// @param message UTF-8; may hold newlines, only its first line then carries time stamp and tags.
/// @param keepHeaderPlain leaves a message that names a session or process id unencoded.
/// @param neverEncode leaves any message unencoded.
/// Throws std::system_error when the mutex cannot be taken.
void writeLogLine(std::string_view message, bool isSystem, LogLevel level, LogTarget target,
                  bool keepHeaderPlain = false, bool neverEncode = false);

/// A line of level Info in the category "[SYSTEM]" or "[PROCESS]", as writeLogLine appends it.
void writeSystemLine(std::string_view message, LogTarget target = LogTarget::WatchdogLog);
void writeProcessLine(std::string_view message, LogTarget target = LogTarget::WatchdogLog);

/// Appends a line of 39 "=" without time stamp. It is always encoded, also when encoding is off.
void writeSeparator(LogTarget target);

/// Empties the target's file when something exists at its path. Throws std::filesystem::filesystem_error
/// ("exists") when the system fails to tell.
void truncateLog(LogTarget target);

/// Appends the four header lines: session id and monitored process id (both plain), time zone, boot time.
/// Lines of other threads can fall between them.
void writeWatchdogHeader(std::string_view sessionId, LogTarget target);

}  // namespace sentiq
