// A log that is read while others write it, empty it, delete it and create it again.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace sentiq {

/// Holds no file open between two polls, so that the file can be moved and deleted on Windows, too.
class FollowedFile {
 public:
  explicit FollowedFile(std::filesystem::path path);

  struct Handlers {
    std::function<void(std::string_view)> bytes;  // What is new, in blocks.
    std::function<void()> startedAnew;            // The file went or was emptied: what follows is another one.
  };

  /// Hands on what has come since the last poll; stops between two blocks when asked to. A file that cannot
  /// be opened counts as not there yet.
  void poll(const Handlers& handlers, const std::atomic<bool>& stop);

 private:
  bool isStillTheSame(std::istream& in);

  std::filesystem::path path_;
  std::uint64_t offset_ = 0;
  std::string head_;  // The file's first bytes: another file at the same path differs in its time stamp or session.
};

}  // namespace sentiq
