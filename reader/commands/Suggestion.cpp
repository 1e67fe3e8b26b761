#include "reader/commands/Suggestion.h"

#include <algorithm>
#include <cstddef>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// Letters to put in, leave out, change or swap with their neighbour.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> rows(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  const auto same = [&](std::size_t i, std::size_t j) { return equalIgnoringCase(a.substr(i, 1), b.substr(j, 1)); };
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        rows[i][j] = i + j;
        continue;
      }
      rows[i][j] =
          std::min({rows[i - 1][j] + 1, rows[i][j - 1] + 1, rows[i - 1][j - 1] + (same(i - 1, j - 1) ? 0 : 1)});
      if (i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1)) {
        rows[i][j] = std::min(rows[i][j], rows[i - 2][j - 2] + 1);
      }
    }
  }
  return rows[a.size()][b.size()];
}

}  // namespace

std::string suggestionFor(std::string_view word, const std::vector<std::string>& candidates) {
  constexpr std::size_t longestWord = 40;  // That anybody would take the trouble to mistype.
  const std::size_t far = std::max<std::size_t>(word.size() / 3, 1) + 1;
  std::size_t least = far;
  std::string meant;
  if (word.size() > longestWord) {
    return {};
  }
  for (const std::string& candidate : candidates) {
    if (const std::size_t d = distance(word, candidate); d < least) {
      least = d;
      meant = candidate;
    }
  }
  return meant.empty() ? "" : "; did you mean '" + meant + "'?";
}

}  // namespace sentiq
