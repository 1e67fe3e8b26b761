// Sessions by a name of theirs and their folder, and of those with both alike the ones that began near a time: however
// many there are, few are looked at.
#pragma once

#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "reader/input/LogTime.h"

namespace sentiq {

class SessionIndex {
 public:
  void add(std::string_view name, std::string_view folder, std::optional<Instant> begin, std::size_t session) {
    sessions_.emplace(keyOf(name, folder, begin), session);
  }

  /// The nearest ones, those that began before it first, each time the nearest first.
  std::vector<std::size_t> near(std::string_view name, std::string_view folder, std::optional<Instant> time) const {
    std::vector<std::size_t> found;
    const Key key = keyOf(name, folder, time);
    const auto take = [&](auto place, auto end) {
      constexpr int most = 8;
      for (int i = 0; i < most && place != end && place->first.first == key.first; ++i, ++place) {
        found.push_back(place->second);
      }
    };
    const auto after = sessions_.upper_bound(key);
    take(std::make_reverse_iterator(after), sessions_.rend());
    take(after, sessions_.end());
    return found;
  }

 private:
  using Key = std::pair<std::string, Instant>;

  static Key keyOf(std::string_view name, std::string_view folder, std::optional<Instant> time) {
    return {(std::string(name) += '\0') += folder, time.value_or(Instant{})};
  }

  std::multimap<Key, std::size_t> sessions_;
};

}  // namespace sentiq
