// The texts of one event in one piece of memory, since a log may hold 100,000 events.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reader/events/EventField.h"

namespace sentiq {

struct NamedValue {
  std::string_view name;  // Empty when the event leaves it unnamed and no layout names it.
  std::string_view value;
};

/// What is added becomes clean and of limited length. The views are into this object.
class EventText {
 public:
  /// All of them come before the fields.
  void addHeader(std::string_view text);
  void addField(std::string_view name, std::string_view value);

  void shrink() { text_.shrink_to_fit(); }

  std::string_view header(std::size_t index) const;

  /// The first one of that name that is not empty; else empty.
  std::string_view field(Field field) const;

  std::vector<NamedValue> fields() const;

 private:
  struct Entry {
    char code;
    std::string_view name;
    std::string_view value;
  };
  static Entry nextEntry(std::string_view& rest);
  void add(std::string_view text);

  // Each text ends with a zero. Before a field's name stands its number plus one, and then no name, or a zero when
  // nobody asks for it.
  std::string text_;
  std::size_t fields_ = 0;  // Where they begin.
};

}  // namespace sentiq
