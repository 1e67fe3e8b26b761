#include "reader/views/page/HtmlText.h"

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

std::string_view escapeOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string htmlText(std::string_view bytes) {
  std::string html;
  for (const char c : cleanText(bytes)) {
    if (const std::string_view escape = escapeOf(c); escape.empty()) {
      html += c;
    } else {
      html += escape;
    }
  }
  return html;
}

}  // namespace sentiq
