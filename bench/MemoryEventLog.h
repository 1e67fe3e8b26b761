// An event log that stands ready in memory: its calls cost next to nothing (a copy of the text), so that what is
// measured is the reader and the log writer. Linked into a program, it takes the place of the system's.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace sentiq::bench {

/// Puts so many events of 3 KB into every channel.
void fillEventLog(std::size_t events);

/// The texts of a channel's events.
const std::vector<std::wstring>& eventLog();

}  // namespace sentiq::bench
