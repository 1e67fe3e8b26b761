#include "reader/events/EventWords.h"

#include <cstddef>
#include <sstream>
#include <string_view>

#include "reader/events/CodeWords.h"
#include "reader/events/EventPattern.h"
#include "reader/events/EventTable.h"
#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

// One line: times in local time, blanks for line ends.
std::string shownValue(std::string_view value, std::chrono::minutes offset) {
  constexpr std::size_t longestShown = 200;
  std::size_t used = 0;
  if (const auto time = parseTime(value, &used); time && used == value.size() && value.ends_with('Z')) {
    return showTime(time->instant, offset);
  }
  std::istringstream words{std::string(value)};
  std::string line;
  for (std::string word; words >> word;) {
    line += (line.empty() ? "" : " ") + word;
  }
  return shortText(line, longestShown);
}

// As it is when it is no number.
std::string inForm(const Form& form, const std::string& value) {
  const auto number = form.shown == Shown::HexCode ? parseHex(value) : parseDecimal(value);
  if (form.shown == Shown::AsItIs || !number) {
    return value;
  }
  if (form.shown == Shown::Size) {
    return '(' + std::to_string(*number >> 20U) + " MiB)";
  }
  const std::string words(form.kind ? codeWords(*form.kind, *number) : "");
  if (form.shown == Shown::Words) {
    return words.empty() ? "code " + std::to_string(*number) : words;
  }
  return showHex(*number) + (words.empty() ? "" : form.kind == CodeKind::Stop ? ' ' + words : " (" + words + ')');
}

// Bytes say nothing to a reader.
bool isBinary(std::string_view value) {
  constexpr std::size_t shortest = 64;
  return value.size() >= shortest && value.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

std::string allFields(const EventRecord& event, std::chrono::minutes offset) {
  constexpr std::size_t longestWords = 400;
  std::string text;
  for (const auto& [name, value] : event.fields()) {
    if (value.empty() || isBinaryField(name) || name.starts_with("RenderingInfo.") || isBinary(value)) {
      continue;
    }
    text.append(text.empty() ? "" : ", ").append(name).append(name.empty() ? "" : " ");
    text += shownValue(value, offset);
    if (text.size() > longestWords) {
      return shortText(text, longestWords);
    }
  }
  return text;
}

std::string fillIn(std::string_view words, const EventRecord& event, std::chrono::minutes offset) {
  std::string filled;
  while (!words.empty()) {
    std::string_view text;
    const auto place = nextPlace(words, text);
    filled += text;
    if (!place) {
      break;
    }
    const std::string value =
        place->allFields ? allFields(event, offset) : shownValue(event.field(*place->field), offset);
    if (!value.empty()) {
      filled.append(place->before).append(inForm(*place->form, value));
    } else if (!place->mayBeMissing) {
      filled += "unknown";
    }
  }
  return filled;
}

}  // namespace

std::string eventWords(const EventRecord& event, std::chrono::minutes offset) {
  if (event.row() != nullptr) {
    return fillIn(event.row()->words, event, offset);
  }
  return std::string(event.provider()) + ' ' + std::to_string(event.id) +
         fillIn("{: |RenderingInfo.Message}{: |*}", event, offset);
}

std::string inSentence(std::string words) {
  for (const std::string_view begin : {"The ", "A ", "An ", "Error "}) {
    if (words.starts_with(begin)) {
      words.front() = static_cast<char>(words.front() + ('a' - 'A'));
    }
  }
  return words;
}

}  // namespace sentiq
