#include "reader/session/JsonMembers.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace sentiq {
namespace {

void skipBlanks(std::string_view& text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t' || text.front() == '\r')) {
    text.remove_prefix(1);
  }
}

bool take(std::string_view& text, char c) {
  skipBlanks(text);
  const bool found = text.starts_with(c);
  text.remove_prefix(found ? 1 : 0);
  skipBlanks(text);
  return found;
}

// Behind the string that begins here; the text's size when it does not end.
std::size_t stringEnd(std::string_view text, std::size_t begin) {
  std::size_t end = begin;
  bool escaped = true;
  while (escaped) {
    end = text.find('"', end + 1);
    if (end == std::string_view::npos) {
      return text.size();
    }
    std::size_t backslashes = end;
    while (text[backslashes - 1] == '\\') {
      --backslashes;
    }
    escaped = (end - backslashes) % 2 == 1;
  }
  return end + 1;
}

// What stands before the next comma, colon, blank or closing bracket that is in no string, object or array of its own.
std::string_view takeValue(std::string_view& text) {
  std::size_t depth = 0;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    if (c == '"') {
      i = stringEnd(text, i);
      continue;
    }
    if (c == '{' || c == '[') {
      ++depth;
    } else if (depth > 0) {
      depth -= c == '}' || c == ']' ? 1 : 0;
    } else if (c == ',' || c == ':' || c == '}' || c == ']' || c == ' ') {
      const std::string_view value = text.substr(0, i);
      text.remove_prefix(i);
      return value;
    }
    ++i;
  }
  return {};
}

}  // namespace

bool visitMembers(std::string_view json, const MemberVisit& visit) {
  const bool isObject = take(json, '{');
  if (!isObject && !take(json, '[')) {
    return false;
  }
  const char end = isObject ? '}' : ']';
  while (!json.starts_with(end)) {
    const std::string_view name = isObject ? takeValue(json) : std::string_view{};
    if (isObject && !take(json, ':')) {
      return false;
    }
    const std::string_view value = takeValue(json);
    if (value.empty()) {
      return false;
    }
    visit(name, value);
    if (!take(json, ',')) {
      break;
    }
  }
  return take(json, end) && json.empty();
}

std::string jsonText(std::string_view value) {
  if (!value.starts_with('"')) {
    return {};
  }
  if (value.find('\\') == std::string_view::npos) {
    return std::string(value.substr(1, value.size() - 2));
  }
  const auto text = nlohmann::json::parse(value, /*cb=*/nullptr, /*allow_exceptions=*/false);
  return text.is_string() ? text.get<std::string>() : std::string{};
}

}  // namespace sentiq
