#include "reader/input/FollowedFile.h"

#include <algorithm>
#include <fstream>
#include <utility>

namespace sentiq {
namespace {

constexpr std::size_t headSize = 128;
constexpr std::size_t blockSize = 1U << 16;

// Fewer bytes than asked for only at the file's end.
std::string readBytes(std::istream& in, std::size_t size) {
  std::string bytes(size, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(size));
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return bytes;
}

}  // namespace

FollowedFile::FollowedFile(std::filesystem::path path) : path_(std::move(path)) {}

void FollowedFile::poll(const Handlers& handlers, const std::atomic<bool>& stop) {
  std::ifstream in(path_, std::ios::binary);
  if (!isStillTheSame(in)) {
    offset_ = 0;
    head_.clear();
    handlers.startedAnew();
  }
  in.clear();
  in.seekg(static_cast<std::streamoff>(offset_));
  while (in && !stop) {
    const std::string bytes = readBytes(in, blockSize);
    if (bytes.empty()) {
      break;
    }
    head_ += bytes.substr(0, headSize - std::min(headSize, head_.size()));
    offset_ += bytes.size();
    handlers.bytes(bytes);
  }
}

bool FollowedFile::isStillTheSame(std::istream& in) {
  if (offset_ == 0) {
    return true;
  }
  if (!in || readBytes(in, head_.size()) != head_) {
    return false;
  }
  in.seekg(0, std::ios::end);
  return in && static_cast<std::uint64_t>(in.tellg()) >= offset_;
}

}  // namespace sentiq
