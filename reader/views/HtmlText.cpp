#include "reader/views/HtmlText.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "reader/input/CleanText.h"

namespace sentiq {

std::string htmlText(std::string_view bytes) {
  static constexpr std::pair<char, const char*> escapes[] = {
      {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}};
  std::string html;
  for (const char c : cleanText(bytes)) {
    const auto* const found =
        std::find_if(std::begin(escapes), std::end(escapes), [c](const auto& escape) { return escape.first == c; });
    if (found == std::end(escapes)) {
      html += c;
    } else {
      html += found->second;
    }
  }
  return html;
}

}  // namespace sentiq
