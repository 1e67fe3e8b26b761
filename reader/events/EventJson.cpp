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
  constexpr std::string_view escapes = R"("\/nrtbf)";
  constexpr std::string_view meant = "\"\\/\n\r\t\b\f";
  unsigned char lowest = 0xFF;
  unsigned char highest = 0;
  for (const char c : text) {
    lowest = std::min(lowest, static_cast<unsigned char>(c));
    highest = std::max(highest, static_cast<unsigned char>(c));
  }
  if (lowest < ' ' || (highest >= 0x80 && !isCleanText(text))) {
    return std::nullopt;
  }
  std::string out;
  out.reserve(text.size());
  while (true) {
    const std::string_view plain = text.substr(0, text.find('\\'));
    if (plain.find('"') != std::string_view::npos) {
      return std::nullopt;
    }
    out += plain;
    text.remove_prefix(plain.size());
    if (text.empty()) {
      return out;
    }
    const std::size_t escape = text.size() > 1 ? escapes.find(text[1]) : std::string_view::npos;
    if (escape == std::string_view::npos) {
      return std::nullopt;
    }
    out += meant[escape];
    text.remove_prefix(2);
  }
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
