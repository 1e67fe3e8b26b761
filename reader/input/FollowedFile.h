// A log that is read while others write it, empty it, delete it and create it again.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "reader/input/Utf8Bytes.h"

namespace sentiq {

/// Holds no file open between two polls, so that the file can be moved and deleted on Windows, too.
class FollowedFile {
 public:
  explicit FollowedFile(std::filesystem::path path);

  struct Handlers {
    std::function<void(std::string_view)> bytes;  // What is new, in blocks; UTF-8 without a byte order mark.
    std::function<void()> startedAnew;            // The file was emptied or replaced: what follows is another one.
  };

  /// Hands on what has come since the last poll; stops between two blocks when asked to. A file that is not there or
  /// cannot be read is waited for: it may be the same one again. What is no file (a pipe) is left alone. Where the
  /// system tells writes at once, a file of the size and time of the last poll is not opened.
  void poll(const Handlers& handlers, const std::atomic<bool>& stop);

 private:
  enum class State : std::uint8_t { Same, Another, Unreadable };
  State stateOf(std::istream& in) const;

  std::filesystem::path path_;
  std::uint64_t offset_ = 0;
  std::string head_;  // The file's first bytes: another file at the same path differs in its time stamp or session.
  std::uint64_t size_ = 0;  // At the last poll that read all; so is the time.
  std::filesystem::file_time_type written_{};
  Utf8Bytes text_;
};

}  // namespace sentiq
