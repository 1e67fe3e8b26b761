#include "reader/views/HtmlText.h"

#include <string>
#include <string_view>

#include "reader/input/CleanText.h"

namespace sentiq {

std::string htmlText(std::string_view bytes) {
  std::string html;
  for (const char c : cleanText(bytes)) {
    switch (c) {
      case '&':
        html += "&amp;";
        break;
      case '<':
        html += "&lt;";
        break;
      case '>':
        html += "&gt;";
        break;
      case '"':
        html += "&quot;";
        break;
      case '\'':
        html += "&#39;";
        break;
      default:
        html += c;
    }
  }
  return html;
}

}  // namespace sentiq
