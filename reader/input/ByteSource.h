// The bytes of a file, a pipe or standard input, without a wait that nobody can end.
#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <type_traits>

namespace sentiq {

/// Of standard input nobody else may read, std::cin neither.
class ByteSource {
 public:
  /// Waits for nothing: a pipe need not have a writer yet. @param file nullptr for standard input.
  explicit ByteSource(const std::filesystem::path* file);
  ByteSource(const ByteSource&) = delete;
  ByteSource(ByteSource&&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;
  ByteSource& operator=(ByteSource&&) = delete;
  ~ByteSource();

  bool isOpen() const;

  /// Waits for bytes until there are some, the end is reached or stop is set; looks at it several times a second. On
  /// Windows a console is waited for until its line is ended, or Ctrl-C.
  /// @return how many were read; 0 at the end and when stopped; nothing when they cannot be read.
  std::optional<std::size_t> read(char* block, std::size_t size, const std::atomic<bool>& stop);

 private:
  // A handle of Windows, or a descriptor.
  std::conditional_t<std::is_same_v<std::filesystem::path::value_type, wchar_t>, void*, int> handle_;
  bool owned_;
};

}  // namespace sentiq
