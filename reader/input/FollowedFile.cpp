#include "reader/input/FollowedFile.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <type_traits>
#include <utility>

namespace sentiq {
namespace {

constexpr std::size_t headSize = 128;
// Windows tells size and time of a file that others hold open as they were when it was opened.
constexpr bool tellsWrites = !std::is_same_v<std::filesystem::path::value_type, wchar_t>;
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
  std::error_code error;
  if (!std::filesystem::is_regular_file(path_, error)) {
    return;
  }
  const std::uint64_t size = std::filesystem::file_size(path_, error);
  const auto written = std::filesystem::last_write_time(path_, error);
  if (error || (tellsWrites && size == size_ && written == written_)) {
    return;
  }
  std::ifstream in(path_, std::ios::binary);
  const State state = stateOf(in);
  if (state == State::Unreadable) {
    return;
  }
  if (state == State::Another) {
    offset_ = 0;
    head_.clear();
    text_ = {};
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
    handlers.bytes(text_.take(bytes));
  }
  if (offset_ == size && !in.bad()) {
    size_ = size;
    written_ = written;
  }
}

FollowedFile::State FollowedFile::stateOf(std::istream& in) const {
  const bool opened = in.good();
  const std::string head = readBytes(in, head_.size());
  const bool readable = opened && !in.bad();
  in.clear();  // Of a shorter file the end was met.
  in.seekg(0, std::ios::end);
  const auto end = in.tellg();
  if (!readable || end < 0) {
    return State::Unreadable;
  }
  return head == head_ && static_cast<std::uint64_t>(end) >= offset_ ? State::Same : State::Another;
}

}  // namespace sentiq
