// Which event is what. A new event of a known kind is one row of the table in the source file.
#pragma once

#include <span>
#include <string_view>

#include "reader/events/EventRow.h"

namespace sentiq {

/// In their order; of those that fit an event the first counts.
std::span<const EventRow> eventRows();

/// Nothing when the table does not know the event.
const EventRow* findRow(std::string_view provider, int id, int level, const OwnField& field);

}  // namespace sentiq
