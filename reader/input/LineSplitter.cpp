#include "reader/input/LineSplitter.h"

#include <cstddef>
#include <cstring>
#include <string_view>

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
    if (found == std::string_view::npos) {
      keep(bytes, visit);
      return;
    }
    std::string_view line = bytes.substr(0, found + 1);
    bytes.remove_prefix(found + 1);
    if (overlong_) {
      keep(line, visit);
      visit({kept_, {}, number_, /*whole=*/false});
    } else if (kept_.empty()) {
      visit(wholeLine(line, number_));
    } else {
      kept_ += line;
      visit(wholeLine(kept_, number_));
    }
    kept_.clear();
    overlong_ = false;
    ++number_;
  }
}

void LineSplitter::finish(const Visit& visit) {
  if (!kept_.empty()) {
    visit({kept_, {}, number_, /*whole=*/false});
  }
  *this = {};
}

void LineSplitter::keep(std::string_view rest, const Visit& visit) {
  kept_ += rest;
  if (kept_.size() > longestLine) {
    visit({kept_, {}, number_, /*whole=*/false});
    kept_.clear();
    overlong_ = true;
  }
}

}  // namespace sentiq
