// What the compiler checks of each row of the event table.
#pragma once

#include <algorithm>
#include <string_view>
#include <variant>

#include "reader/events/EventPattern.h"
#include "reader/events/EventTable.h"

namespace sentiq {

constexpr bool tells(const EventRow& row, Field field) {
  if (std::any_of(row.parts.begin(), row.parts.end(), [&](const FieldPart& part) { return part.fact == field; })) {
    return true;
  }
  std::string_view words = row.words;
  std::string_view text;
  for (auto place = nextPlace(words, text); place; place = nextPlace(words, text)) {
    if (place->field == field) {
      return true;
    }
  }
  return false;
}

constexpr bool patternsAreGood(const EventRow& row) {
  std::string_view words = row.words;
  std::string_view text;
  for (auto place = nextPlace(words, text); place; place = nextPlace(words, text)) {
    if (!place->good() || text.find_first_of("}|") != std::string_view::npos) {
      return false;
    }
  }
  std::string_view when = row.when;
  const std::string_view fields = nextPart(when, '=');
  return text.find_first_of("}|") == std::string_view::npos && !row.words.ends_with('{') && !row.provider.empty() &&
         (fields.empty() || !anyPart(fields, [](std::string_view field) { return !fieldNamed(field); }));
}

// Has what the facts of its meaning are made of.
constexpr bool fitsItsMeaning(const EventRow& row) {
  switch (row.meaning) {
    case Meaning::Crash:
    case Meaning::Hang:
    case Meaning::Recovered:
    case Meaning::Leak:
      return row.isOfProgram() && (tells(row, Field::AppName) || tells(row, Field::PackageFullName));
    case Meaning::Sleep:
    case Meaning::Resume:
    case Meaning::StandbyBegun:
    case Meaning::StandbyEnded:
      return std::holds_alternative<SleepKind>(row.kind);
    case Meaning::Change:
      return std::holds_alternative<ChangeKind>(row.kind) && tells(row, Field::ChangedName);
    case Meaning::Clock:
      return tells(row, Field::OldTime) && tells(row, Field::NewTime);
    case Meaning::BlueScreen:
      return tells(row, Field::BugcheckCode) || tells(row, Field::StopCode);
    default:
      return row.kind.index() == 0;
  }
}

}  // namespace sentiq
