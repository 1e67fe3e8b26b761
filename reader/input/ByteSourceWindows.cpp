#include <windows.h>

#include <chrono>
#include <thread>
#include <utility>

#include "reader/input/ByteSource.h"

namespace sentiq {

struct ByteSource::Opened {
  const HANDLE handle;
  const bool owned;

  Opened(HANDLE opened, bool isOwned) : handle(opened), owned(isOwned) {}
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  Opened(Opened&&) = delete;
  Opened& operator=(Opened&&) = delete;
  ~Opened() {
    if (owned && handle != INVALID_HANDLE_VALUE) {
      CloseHandle(handle);
    }
  }
};

ByteSource::ByteSource(std::unique_ptr<Opened> opened) : opened_(std::move(opened)) {}
ByteSource::ByteSource(ByteSource&& other) noexcept = default;
ByteSource::~ByteSource() = default;

ByteSource ByteSource::file(const std::filesystem::path& path) {
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return ByteSource(
      std::make_unique<Opened>(CreateFileW(path.c_str(), GENERIC_READ, shareAll, /*lpSecurityAttributes=*/nullptr,
                                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, /*hTemplateFile=*/nullptr),
                               /*owned=*/true));
}

ByteSource ByteSource::standardInput() {
  return ByteSource(std::make_unique<Opened>(GetStdHandle(STD_INPUT_HANDLE), /*owned=*/false));
}

bool ByteSource::isOpen() const {
  return opened_->handle != INVALID_HANDLE_VALUE && opened_->handle != nullptr;
}

std::optional<std::size_t> ByteSource::read(char* block, std::size_t size, const std::atomic<bool>& stop) {
  constexpr std::chrono::milliseconds wait{50};
  const auto atEnd = [] { return GetLastError() == ERROR_BROKEN_PIPE || GetLastError() == ERROR_HANDLE_EOF; };
  while (!stop) {
    if (GetFileType(opened_->handle) == FILE_TYPE_PIPE) {
      DWORD available = 0;
      if (PeekNamedPipe(opened_->handle, /*lpBuffer=*/nullptr, /*nBufferSize=*/0, /*lpBytesRead=*/nullptr, &available,
                        /*lpBytesLeftThisMessage=*/nullptr) == FALSE) {
        return atEnd() ? std::optional<std::size_t>(0) : std::nullopt;
      }
      if (available == 0) {
        std::this_thread::sleep_for(wait);
        continue;
      }
    }
    DWORD count = 0;
    if (ReadFile(opened_->handle, block, static_cast<DWORD>(size), &count, /*lpOverlapped=*/nullptr) == FALSE) {
      return atEnd() ? std::optional<std::size_t>(0) : std::nullopt;
    }
    return count;
  }
  return 0;
}

}  // namespace sentiq
