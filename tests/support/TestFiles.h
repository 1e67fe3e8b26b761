// A folder that a test owns, and what the tests read of files.
#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

namespace sentiq::test {

class TempFolder {
 public:
  TempFolder() { std::filesystem::create_directories(path_); }
  TempFolder(TempFolder&&) = delete;
  ~TempFolder() { std::filesystem::remove_all(path_, ignored_); }

  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

 private:
  std::error_code ignored_;
  const std::filesystem::path path_ =
      std::filesystem::temp_directory_path() /
      ("sentiq-" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
};

/// The file's bytes; empty when it does not exist.
inline std::string readFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of a text, without their line ends (LF or CRLF).
inline std::vector<std::string> linesOf(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0)));
  }
  return lines;
}

}  // namespace sentiq::test
