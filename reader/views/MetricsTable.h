// The ten-second records as a table, with units, for people and for other tools.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "reader/session/LogSet.h"

namespace sentiq {

enum class TableForm : std::uint8_t { Text, Csv, Json };

/// JSON is one object a line. A figure that a record does not hold is empty, or null in JSON.
void writeMetrics(const LogSet& logs, TableForm form, std::ostream& out);

}  // namespace sentiq
