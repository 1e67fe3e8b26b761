#include "reader/events/EventJson.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include <nlohmann/json.hpp>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

constexpr std::string_view begin = R"({"xmlData":")";
constexpr std::string_view end = R"("})";

// As the program writes it; nothing when there is anything rarer in it, or wrong.
std::optional<std::string> plainText(std::string_view text) {
  const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return (c & '\x80') == 0; });
  if (!ascii && !isCleanText(text)) {
    return std::nullopt;
  }
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain < text.size() && text[plain] != '\\' && text[plain] != '"' &&
           static_cast<unsigned char>(text[plain]) >= ' ') {
      ++plain;
    }
    out.append(text, 0, plain);
    text.remove_prefix(plain);
    if (text.empty()) {
      break;
    }
    constexpr std::string_view escapes = R"("\/nrtbf)";
    constexpr std::string_view meant = "\"\\/\n\r\t\b\f";
    const std::size_t escape = text.size() > 1 && text[0] == '\\' ? escapes.find(text[1]) : std::string_view::npos;
    if (escape == std::string_view::npos) {
      return std::nullopt;
    }
    out += meant[escape];
    text.remove_prefix(2);
  }
  return out;
}

}  // namespace

std::optional<std::string> xmlOfEvent(std::string_view json) {
  if (json.size() >= begin.size() + end.size() && json.starts_with(begin) && json.ends_with(end)) {
    if (auto text = plainText(json.substr(begin.size(), json.size() - begin.size() - end.size()))) {
      return text;
    }
  }
  auto object = nlohmann::json::parse(json, nullptr, /*allow_exceptions=*/false);
  const auto text = object.is_object() ? object.find("xmlData") : object.end();
  return text != object.end() && text->is_string() ? std::optional(std::move(text->get_ref<std::string&>()))
                                                   : std::nullopt;
}

}  // namespace sentiq
