#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "reader/input/ByteSource.h"

namespace sentiq {

ByteSource::ByteSource(const std::filesystem::path* file)
    : handle_(file != nullptr ? ::open(file->c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC) : STDIN_FILENO),
      owned_(file != nullptr) {}

ByteSource::~ByteSource() {
  if (owned_ && isOpen()) {
    ::close(handle_);
  }
}

bool ByteSource::isOpen() const {
  return handle_ >= 0;
}

std::optional<std::size_t> ByteSource::read(char* block, std::size_t size, const std::atomic<bool>& stop) {
  constexpr int waitMilliseconds = 100;
  while (!stop) {
    pollfd waited{handle_, POLLIN, 0};
    const int ready = ::poll(&waited, 1, waitMilliseconds);
    if (ready == 0 || (ready < 0 && errno == EINTR)) {
      continue;
    }
    const ssize_t count = ::read(handle_, block, size);
    if (count >= 0) {
      return static_cast<std::size_t>(count);
    }
    if (errno != EAGAIN && errno != EINTR) {
      return std::nullopt;
    }
  }
  return 0;
}

}  // namespace sentiq
