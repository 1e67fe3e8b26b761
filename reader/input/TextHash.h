// One hash of texts, the same on every machine: in a browser the library's own has 32 bits, which 100,000 events share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace sentiq {

inline std::uint64_t textHash(std::string_view text) {
  constexpr std::size_t pieceSize = sizeof(std::uint64_t);
  constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = text.size() * factor;
  const auto add = [&](std::uint64_t piece) {
    hash = (hash ^ piece) * factor;
    hash ^= hash >> 32U;
  };
  std::uint64_t piece = 0;
  for (; text.size() >= pieceSize; text.remove_prefix(pieceSize)) {
    std::memcpy(&piece, text.data(), pieceSize);
    add(piece);
  }
  if (!text.empty()) {
    piece = 0;
    std::memcpy(&piece, text.data(), text.size());
    add(piece);
  }
  return hash;
}

}  // namespace sentiq
