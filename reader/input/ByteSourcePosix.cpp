#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "reader/input/ByteSource.h"

namespace sentiq {

struct ByteSource::Opened {
  const int descriptor;
  const bool owned;

  Opened(int number, bool isOwned) : descriptor(number), owned(isOwned) {}
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  Opened(Opened&&) = delete;
  Opened& operator=(Opened&&) = delete;
  ~Opened() {
    if (owned && descriptor >= 0) {
      ::close(descriptor);
    }
  }
};

ByteSource::ByteSource(std::unique_ptr<Opened> opened) : opened_(std::move(opened)) {}
ByteSource::ByteSource(ByteSource&& other) noexcept = default;
ByteSource::~ByteSource() = default;

ByteSource ByteSource::file(const std::filesystem::path& path) {
  return ByteSource(std::make_unique<Opened>(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), /*owned=*/true));
}

ByteSource ByteSource::standardInput() {
  return ByteSource(std::make_unique<Opened>(STDIN_FILENO, /*owned=*/false));
}

bool ByteSource::isOpen() const {
  return opened_->descriptor >= 0;
}

std::optional<std::size_t> ByteSource::read(char* block, std::size_t size, const std::atomic<bool>& stop) {
  constexpr int waitMilliseconds = 100;
  while (!stop) {
    pollfd waited{opened_->descriptor, POLLIN, 0};
    const int ready = ::poll(&waited, 1, waitMilliseconds);
    if (ready == 0 || (ready < 0 && errno == EINTR)) {
      continue;
    }
    const ssize_t count = ::read(opened_->descriptor, block, size);
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
