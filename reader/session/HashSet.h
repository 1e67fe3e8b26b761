// Hashes that have come. A log may hold a million, and the library's set looks at three places in memory for each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace sentiq {

/// Of good hashes, of which the highest of 64 bits does not count.
class HashSet {
 public:
  bool contains(std::uint64_t hash) const { return places_[placeOf(hash | taken)] != 0; }

  /// False when it is there already.
  bool insert(std::uint64_t hash) {
    if (contains(hash)) {
      return false;
    }
    if (++count_ > places_.size() / 2) {
      std::vector<std::uint64_t> fewer(2 * places_.size());
      fewer.swap(places_);
      for (const std::uint64_t other : fewer) {
        places_[placeOf(other)] = other;
      }
    }
    places_[placeOf(hash | taken)] = hash | taken;
    return true;
  }

 private:
  static constexpr std::uint64_t taken = std::uint64_t{1} << 63U;

  // Where it is, or the free place after others where it would go.
  std::size_t placeOf(std::uint64_t hash) const {
    std::size_t place = hash & (places_.size() - 1);
    while (places_[place] != 0 && places_[place] != hash) {
      place = (place + 1) & (places_.size() - 1);
    }
    return place;
  }

  std::vector<std::uint64_t> places_ = std::vector<std::uint64_t>(16);  // A power of two of them; 0 is a free one.
  std::size_t count_ = 0;
};

}  // namespace sentiq
