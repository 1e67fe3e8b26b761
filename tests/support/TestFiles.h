// A folder that a test owns, and what the tests read of files.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace sentiq::test {

class TempFolder {
 public:
  TempFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("sentiq-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

/// The file's bytes; empty when it does not exist.
inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of a text, without their line ends (LF or CRLF).
inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const bool crlf = end > start && text[end - 1] == '\r';
    lines.push_back(text.substr(start, end - start - (crlf ? 1 : 0)));
    start = end + 1;
  }
  return lines;
}

/// What masked() makes of a time stamp.
inline const std::string stamp = "0000-00-00T00:00:00.000+0000";

/// What stands before the message of a masked log line.
inline const std::string systemHead = stamp + " [SYSTEM] [INFO]: ";
inline const std::string processHead = stamp + " [PROCESS] [INFO]: ";

/// The line with the digits of its leading time stamp, and the sign of the offset, made alike.
inline std::string masked(std::string line) {
  const bool stamped = line.size() >= stamp.size() && line[10] == 'T' && line[19] == '.';
  for (std::size_t i = 0; stamped && i < stamp.size(); ++i) {
    if ((line[i] >= '0' && line[i] <= '9') || (i == 23 && line[i] == '-')) {
      line[i] = stamp[i];
    }
  }
  return line;
}

}  // namespace sentiq::test
