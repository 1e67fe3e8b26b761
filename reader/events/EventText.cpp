#include "reader/events/EventText.h"

#include <algorithm>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

std::string_view upToZero(std::string_view& rest) {
  const std::string_view text = rest.substr(0, rest.find('\0'));
  rest.remove_prefix(text.size() + 1);
  return text;
}

char codeOf(Field field) {
  return static_cast<char>(static_cast<int>(field) + 1);
}
static_assert(fieldNames.size() < 127);

}  // namespace

void EventText::add(std::string_view text) {
  constexpr std::size_t longest = 8192;
  const bool plain =
      text.size() <= longest && std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
  if (plain) {
    text_ += text;
  } else {
    text_ += shortText(text, longest);
  }
  text_ += '\0';
}

void EventText::addHeader(std::string_view text) {
  add(text);
  fields_ = text_.size();
}

void EventText::addField(std::string_view name, std::string_view value) {
  const std::optional<Field> field = fieldNamed(name);
  text_ += field ? codeOf(*field) : '\0';
  if (!field) {
    add(name);
  }
  add(value);
}

std::string_view EventText::header(std::size_t index) const {
  std::string_view rest = text_;
  for (; index > 0; --index) {
    upToZero(rest);
  }
  return upToZero(rest);
}

EventText::Entry EventText::nextEntry(std::string_view& rest) {
  Entry entry{rest.front(), {}, {}};
  rest.remove_prefix(1);
  entry.name = entry.code == 0 ? upToZero(rest) : fieldName(static_cast<Field>(entry.code - 1));
  entry.value = upToZero(rest);
  return entry;
}

std::string_view EventText::field(Field field) const {
  for (std::string_view rest = std::string_view(text_).substr(fields_); !rest.empty();) {
    const Entry entry = nextEntry(rest);
    if (entry.code == codeOf(field) && !entry.value.empty()) {
      return entry.value;
    }
  }
  return {};
}

std::vector<NamedValue> EventText::fields() const {
  std::vector<NamedValue> fields;
  for (std::string_view rest = std::string_view(text_).substr(fields_); !rest.empty();) {
    const Entry entry = nextEntry(rest);
    fields.push_back({entry.name, entry.value});
  }
  return fields;
}

}  // namespace sentiq
