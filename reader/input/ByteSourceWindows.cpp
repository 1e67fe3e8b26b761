#include <windows.h>

#include <chrono>
#include <thread>

#include "reader/input/ByteSource.h"

namespace sentiq {
namespace {

HANDLE opened(const std::filesystem::path& file) {
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return CreateFileW(file.c_str(), GENERIC_READ, shareAll, /*lpSecurityAttributes=*/nullptr, OPEN_EXISTING,
                     FILE_ATTRIBUTE_NORMAL, /*hTemplateFile=*/nullptr);
}

}  // namespace

ByteSource::ByteSource(const std::filesystem::path* file)
    : handle_(file != nullptr ? opened(*file) : GetStdHandle(STD_INPUT_HANDLE)), owned_(file != nullptr) {}

ByteSource::~ByteSource() {
  if (owned_ && isOpen()) {
    CloseHandle(handle_);
  }
}

bool ByteSource::isOpen() const {
  return handle_ != INVALID_HANDLE_VALUE && handle_ != nullptr;
}

std::optional<std::size_t> ByteSource::read(char* block, std::size_t size, const std::atomic<bool>& stop) {
  constexpr std::chrono::milliseconds wait{50};
  const auto atEnd = [] { return GetLastError() == ERROR_BROKEN_PIPE || GetLastError() == ERROR_HANDLE_EOF; };
  while (!stop) {
    if (GetFileType(handle_) == FILE_TYPE_PIPE) {
      DWORD available = 0;
      if (PeekNamedPipe(handle_, /*lpBuffer=*/nullptr, /*nBufferSize=*/0, /*lpBytesRead=*/nullptr, &available,
                        /*lpBytesLeftThisMessage=*/nullptr) == FALSE) {
        return atEnd() ? std::optional<std::size_t>(0) : std::nullopt;
      }
      if (available == 0) {
        std::this_thread::sleep_for(wait);
        continue;
      }
    }
    DWORD count = 0;
    if (ReadFile(handle_, block, static_cast<DWORD>(size), &count, /*lpOverlapped=*/nullptr) == FALSE) {
      return atEnd() ? std::optional<std::size_t>(0) : std::nullopt;
    }
    return count;
  }
  return 0;
}

}  // namespace sentiq
