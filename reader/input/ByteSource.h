// The bytes of a file, a pipe or standard input, without a wait that nobody can end.
#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>

namespace sentiq {

/// Not the stream std::cin: nobody else may read standard input.
class ByteSource {
 public:
  /// Waits for nothing: a pipe need not have a writer yet.
  static ByteSource file(const std::filesystem::path& path);
  static ByteSource standardInput();

  ByteSource(ByteSource&& other) noexcept;
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  ByteSource& operator=(ByteSource&&) = delete;
  ~ByteSource();

  bool isOpen() const;

  /// Waits for bytes until there are some, the end is reached or stop is set; looks at it several times a second. On
  /// Windows a console is waited for until its line is ended, or Ctrl-C.
  /// @return how many were read; 0 at the end and when stopped; nothing when they cannot be read.
  std::optional<std::size_t> read(char* block, std::size_t size, const std::atomic<bool>& stop);

 private:
  struct Opened;
  explicit ByteSource(std::unique_ptr<Opened> opened);

  std::unique_ptr<Opened> opened_;
};

}  // namespace sentiq
