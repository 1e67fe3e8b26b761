#include "reader/input/LineSplitter.h"

namespace sentiq {
namespace {

Line wholeLine(std::string_view bytes, std::uint64_t number) {
  const std::size_t end = bytes.size() >= 2 && bytes[bytes.size() - 2] == '\r' ? 2 : 1;
  return {bytes.substr(0, bytes.size() - end), bytes.substr(bytes.size() - end), number, /*whole=*/true};
}

}  // namespace

void LineSplitter::feed(std::string_view bytes, const Visit& visit) {
  while (!bytes.empty()) {
    const std::size_t found = bytes.find('\n');
    const bool ends = found != std::string_view::npos;
    std::string_view text = bytes.substr(0, ends ? found + 1 : bytes.size());
    bytes.remove_prefix(text.size());
    if (!ends || !kept_.empty()) {
      kept_ += text;
      text = kept_;
    }
    if (ends || text.size() > longestLine) {
      visit(ends && !overlong_ ? wholeLine(text, number_) : Line{text, {}, number_, /*whole=*/false});
      kept_.clear();
      overlong_ = !ends;
      number_ += ends ? 1 : 0;
    }
  }
}

void LineSplitter::finish(const Visit& visit) {
  if (!kept_.empty()) {
    visit({kept_, {}, number_, /*whole=*/false});
  }
  *this = {};
}

}  // namespace sentiq
