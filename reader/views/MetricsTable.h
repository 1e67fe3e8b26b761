// The ten-second records as a table, with units, for people and for other tools.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>

#include "reader/session/LogSet.h"

namespace sentiq {

enum class TableForm : std::uint8_t { Text, Csv, Json };

/// JSON is one object a line. A figure that a record does not hold is empty, or null in JSON. No cell of CSV is a
/// formula.
/// @param width of a line of text: columns that do not fit are left out, and named at the end. 0 leaves out none.
void writeMetrics(const LogSet& logs, TableForm form, std::size_t width, std::ostream& out);

}  // namespace sentiq
