// Sessions by a key, and of those with one key the ones that began near a time: however many bear it, few are looked
// at.
#pragma once

#include <cstddef>
#include <initializer_list>
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
  void add(const std::string& key, std::optional<Instant> begin, std::size_t session) {
    sessions_.emplace(std::pair(key, begin.value_or(Instant{})), session);
  }

  /// The nearest ones, those that began before it first, each time the nearest first.
  std::vector<std::size_t> near(const std::string& key, std::optional<Instant> time) const {
    std::vector<std::size_t> found;
    const auto take = [&](auto place, const auto& end) {
      constexpr int most = 8;
      for (int i = 0; i < most && place != end && place->first.first == key; ++i, ++place) {
        found.push_back(place->second);
      }
    };
    const auto after = sessions_.upper_bound(std::pair(key, time.value_or(Instant{})));
    take(std::make_reverse_iterator(after), sessions_.rend());
    take(after, sessions_.end());
    return found;
  }

 private:
  std::multimap<std::pair<std::string, Instant>, std::size_t> sessions_;
};

/// In a key: wherever the session lies.
constexpr std::string_view anyFolder = "*";

/// A key of several texts.
inline std::string joinedKey(std::initializer_list<std::string_view> texts) {
  std::string key;
  for (const std::string_view text : texts) {
    (key += text) += '\0';
  }
  return key;
}

}  // namespace sentiq
