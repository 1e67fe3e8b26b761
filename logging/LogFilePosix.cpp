#include <cstddef>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "logging/LogFile.h"

namespace sentiq {

LogFile::LogFile(const std::filesystem::path& path, Mode mode)
    : file_(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_APPEND | (mode == Mode::Truncate ? O_TRUNC : 0),
                   0644)) {}

LogFile::~LogFile() {
  if (isOpen()) {
    ::close(static_cast<int>(file_));
  }
}

bool LogFile::isOpen() const {
  return file_ != -1;
}

bool LogFile::append(std::string_view text) {
  return ::write(static_cast<int>(file_), text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

std::filesystem::path longPath(const std::filesystem::path& path) {
  return path;
}

bool logFileExists(const std::filesystem::path& path) {
  std::error_code error;
  const bool exists = std::filesystem::exists(path, error);
  if (error) {
    throw std::filesystem::filesystem_error("exists", path, error);
  }
  return exists;
}

}  // namespace sentiq
