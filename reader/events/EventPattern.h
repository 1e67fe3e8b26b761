// The language of the event table: words with places for fields, and texts with asterisks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "reader/events/CodeWords.h"
#include "reader/events/EventField.h"

namespace sentiq {

/// Takes the part before the next separator, or all, from the list.
constexpr std::string_view nextPart(std::string_view& list, char separator = '|') {
  const std::string_view part = list.substr(0, list.find(separator));
  list.remove_prefix(part.size() < list.size() ? part.size() + 1 : part.size());
  return part;
}

/// Whether the check says yes for one of the parts between bars.
template <typename Check>
constexpr bool anyPart(std::string_view parts, const Check& check) {
  do {
    if (check(nextPart(parts))) {
      return true;
    }
  } while (!parts.empty());
  return false;
}

/// How a value is shown.
enum class Shown : std::uint8_t {
  AsItIs,
  HexCode,      // A number in hexadecimal digits, with the words for it.
  DecimalCode,  // So, of one in decimal digits.
  Words,        // For a decimal number.
  Size,         // Of a number of bytes.
};

struct Form {
  std::string_view name;
  Shown shown;
  std::optional<CodeKind> kind = {};  // Whose words there are.
};
constexpr Form forms[] = {
    Form{"", Shown::AsItIs},
    Form{"hex", Shown::HexCode},
    Form{"exception", Shown::HexCode, CodeKind::Exception},
    Form{"stop", Shown::HexCode, CodeKind::Stop},
    Form{"decimal stop", Shown::DecimalCode, CodeKind::Stop},
    Form{"reason", Shown::Words, CodeKind::SleepReason},
    Form{"standby", Shown::Words, CodeKind::StandbyReason},
    Form{"action", Shown::Words, CodeKind::PowerAction},
    Form{"size", Shown::Size},
};

/// {Name}: a field. {, |Name}: one that may be missing, with what stands before it. {Name:form}: in one of the forms.
/// {*}: all fields.
struct Place {
  std::string_view before;
  bool mayBeMissing = false;
  bool allFields = false;
  std::optional<Field> field;
  std::optional<Form> form;

  /// Names a field and a form that there are.
  constexpr bool good() const { return (allFields || field) && form; }
};

/// Takes the words up to the next place, and that, from the rest; the place is nothing at the end of the words.
constexpr std::optional<Place> nextPlace(std::string_view& rest, std::string_view& text) {
  text = nextPart(rest, '{');
  if (rest.empty()) {
    return std::nullopt;
  }
  std::string_view name = nextPart(rest, '}');
  Place place;
  place.mayBeMissing = name.find('|') != std::string_view::npos;
  place.before = place.mayBeMissing ? nextPart(name) : "";
  const std::string_view field = nextPart(name, ':');
  for (const Form& row : forms) {
    if (row.name == name) {
      place.form = row;
    }
  }
  place.allFields = field == "*";
  place.field = fieldNamed(field);
  return place;
}

constexpr char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char upperCase(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

/// In any case of the letters A to Z. An asterisk in the pattern stands for any text.
constexpr bool matches(std::string_view text, std::string_view pattern) {
  std::size_t star =
      std::string_view::npos;  // In the pattern, with the place in the text from which it was tried last.
  std::size_t tried = 0;
  std::size_t p = 0;
  for (std::size_t t = 0; t < text.size();) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      tried = t;
    } else if (p < pattern.size() && lowerCase(pattern[p]) == lowerCase(text[t])) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++tried;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

/// So, somewhere in the text; no asterisk is in the part.
constexpr bool contains(std::string_view text, std::string_view part) {
  if (part.empty()) {
    return true;
  }
  for (const char first : {lowerCase(part.front()), upperCase(part.front())}) {
    for (std::size_t at = text.find(first); at != std::string_view::npos; at = text.find(first, at + 1)) {
      if (matches(text.substr(at, part.size()), part)) {
        return true;
      }
    }
  }
  return false;
}

}  // namespace sentiq
