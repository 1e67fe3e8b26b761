// Owners of the system's resources: one generic owner, and for each kind what "none" is and how it is closed.
// Aliases stand with their users where only one file needs a kind.
#pragma once

#include <windows.h>

#include <utility>

namespace sentiq {

/// Kind says: Type, none() and close(Type).
template <typename Kind>
class UniqueHandle {
 public:
  using Type = typename Kind::Type;

  UniqueHandle() = default;
  explicit UniqueHandle(Type value) : value_(value) {}
  ~UniqueHandle() { reset(); }
  UniqueHandle(UniqueHandle&& other) noexcept : value_(std::exchange(other.value_, Kind::none())) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    reset();
    value_ = std::exchange(other.value_, Kind::none());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;

  Type get() const { return value_; }
  explicit operator bool() const { return value_ != Kind::none(); }

  void reset() {
    if (*this) {
      Kind::close(std::exchange(value_, Kind::none()));
    }
  }

 private:
  Type value_ = Kind::none();
};

struct KernelHandleKind {
  using Type = HANDLE;
  static Type none() { return nullptr; }
  static void close(Type handle) { CloseHandle(handle); }
};

/// Files and snapshots, whose "none" is INVALID_HANDLE_VALUE.
struct FileHandleKind {
  using Type = HANDLE;
  static Type none() { return INVALID_HANDLE_VALUE; }
  static void close(Type handle) { CloseHandle(handle); }
};

using KernelHandle = UniqueHandle<KernelHandleKind>;
using FileHandle = UniqueHandle<FileHandleKind>;

}  // namespace sentiq
