// One record of the Windows event log, with what the event table says of it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reader/events/EventField.h"
#include "reader/events/EventText.h"
#include "reader/events/Meaning.h"
#include "reader/input/LogTime.h"

namespace sentiq {

struct EventRow;

/// All texts are clean and of limited length. Kept in one piece of memory, since a log may hold 100,000 of them.
class EventRecord {
 public:
  std::optional<Instant> time;  // The event's own.
  std::uint64_t recordId = 0;
  int id = 0;
  int level = 0;  // 1 critical, 2 error, 3 warning, others information.
  Meaning meaning = Meaning::Other;
  Severity severity = Severity::Info;

  std::string_view channel() const { return text_.header(0); }
  std::string_view provider() const { return text_.header(1); }
  std::string_view computer() const { return text_.header(2); }

  /// The account's id (S-1-5-…); empty when the event names none.
  std::string_view userId() const { return text_.header(3); }

  /// In the event's order. Fields that the event leaves unnamed have the names that newer systems give them where those
  /// are known; nested ones the names of all elements around them with dots between. The views are into this object.
  std::vector<NamedValue> fields() const { return text_.fields(); }

  /// Empty when there is no such field. The fields of a failure or a change go by the same names in all events.
  std::string_view field(Field field) const;

  /// Puts others in place of the computer, the account's id and the fields' values; what is only bytes becomes empty.
  void replaceNames(const std::function<std::string(std::string_view)>& by);

  /// That of the event table; nothing when the table does not know the event.
  const EventRow* row() const { return row_; }

  /// Equal for all copies of one event, within one machine.
  std::string key() const;

 private:
  friend std::optional<EventRecord> readEvent(std::string_view json);

  bool isOfCanvix() const;

  EventText text_;
  const EventRow* row_ = nullptr;
};

/// @param json the event as the log has it: {"xmlData":"<Event …"}.
/// Nothing when the text is not an event. Never throws for any bytes.
std::optional<EventRecord> readEvent(std::string_view json);

}  // namespace sentiq
