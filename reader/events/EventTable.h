// Which event is what. A new event of a known kind is one row of the table in the source file.
#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <variant>

#include "reader/events/EventField.h"
#include "reader/events/Meaning.h"

namespace sentiq {

/// Where an event tells a fact under another name: in its own field, after the one text and up to the other or to the
/// line's end; the whole field when both texts are empty.
struct FieldPart {
  Field fact;
  Field own;
  std::string_view after = {};
  std::string_view until = {};
};

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order in which a row is read.
struct EventRow {
  int id;  // 0 for every id of a warning or an error.
  Meaning meaning;
  Severity severity;
  std::string_view provider;  // Several with bars between; an asterisk stands for any text.
  std::string_view words;     // With places for fields, as in EventPattern.h.
  /// "A|B": one of these fields holds more than nothing, 0 or false. "A|B=x|y*": one of them holds one of these texts.
  /// Empty: always.
  std::string_view when = {};
  /// What the meaning leaves open.
  std::variant<std::monostate, Teller, SleepKind, ChangeKind> kind = {};
  std::span<const FieldPart> parts = {};

  /// About a program, so that it means what it does for Canvix only.
  constexpr bool isOfProgram() const { return std::holds_alternative<Teller>(kind); }
};

/// Gives an event's own field of that name, empty when it has none.
using OwnField = std::function<std::string_view(Field)>;

bool isFrom(const EventRow& row, std::string_view provider);

/// All but the condition. Inline: each event is held against all rows.
inline bool mayFit(const EventRow& row, std::string_view provider, int id, int level) {
  return (row.id == id || (row.id == 0 && level >= 1 && level <= 3)) && isFrom(row, provider);
}

/// The table, in its order; of the rows that fit an event the first counts.
std::span<const EventRow> eventRows();

/// Nothing when the table does not know the event.
const EventRow* findRow(std::string_view provider, int id, int level, const OwnField& field);

}  // namespace sentiq
