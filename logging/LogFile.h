// A log file as the platform sees it. Each append is a single write at the file's end in text mode (every
// newline becomes the platform's line end), so what two writers append may alternate but not mix. Other
// processes may read and write the file meanwhile.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace sentiq {

class LogFile {
 public:
  enum class Mode { Append, Truncate };

  /// Opens the file and creates it when it is missing, but not its folder; isOpen() tells whether that went well.
  /// @param path as longPath gives it.
  LogFile(const std::filesystem::path& path, Mode mode);
  ~LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;
  LogFile(LogFile&&) = delete;
  LogFile& operator=(LogFile&&) = delete;

  bool isOpen() const;

  /// False when not all of the text was written. The file needs no flush: nothing is held back in the process.
  bool append(std::string_view text);

 private:
  std::intptr_t file_;  // Owned; the platform's handle or descriptor, -1 when not open.
};

/// The path as the system takes it at any length: on Windows one of over 259 characters becomes a full path with the
/// prefix that says so (else a setting of the machine would be needed); costs some system calls. Elsewhere unchanged.
std::filesystem::path longPath(const std::filesystem::path& path);

/// Whether anything exists at the path (as longPath gives it); a link is what it leads to. Throws
/// std::filesystem::filesystem_error ("exists") when the system fails to tell for another reason than that nothing is
/// there.
bool logFileExists(const std::filesystem::path& path);

}  // namespace sentiq
