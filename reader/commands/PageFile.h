// A page that a command writes: beside its place, and renamed once it is whole. One that cannot be written whole leaves
// the one before.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "reader/commands/Streams.h"
#include "reader/input/LogTime.h"
#include "reader/session/LogSet.h"
#include "reader/views/page/PageOptions.h"

namespace sentiq {

struct PageRequest {
  std::string output;             // A path.
  bool open = false;              // In the browser.
  std::optional<LogTime> made{};  // What the page says of when it was made: now, without it.
  std::string program{};          // So, by which program.
};

/// Whether the page has a place of its own; says so when that is one of the logs.
bool sparesLogs(const PageRequest& page, const std::vector<LogInput>& logs, Messages& messages);

/// Says what could not be done and, on a terminal, what the page is. @param held "all that the logs hold".
void writePageFile(const PageRequest& page, const std::string& held,
                   const std::function<void(const PageOptions&, std::ostream&)>& write, const Streams& streams);

}  // namespace sentiq
