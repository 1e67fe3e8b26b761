// Who is named in the fields of an event: nobody else knows which of them hold a computer or a person.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reader/events/EventRecord.h"

namespace sentiq {

enum class NameKind : std::uint8_t { Computer, Domain, Person, Account };

struct EventName {
  NameKind kind;
  std::string_view text;  // As the event has it: a person may be STUDIO\anna.
};

/// The computer that wrote the event first. Ids of accounts and what stands within other texts are not among them. The
/// views are into the event.
std::vector<EventName> namesIn(const EventRecord& event);

/// An event's XML, or a line with it, without the contents of fields that are bytes.
std::string withoutBinary(std::string_view xml);

}  // namespace sentiq
