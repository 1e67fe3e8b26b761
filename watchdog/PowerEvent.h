// What the system's power messages mean here, and what is recorded of them.
#pragma once

#include <cstdint>

namespace sentiq {

enum class PowerEvent { None, WillSleep, Resume, Standby };

/// @param code of a power broadcast, its wParam. Most of them mean nothing: a resume, say, is told by several.
PowerEvent powerEventOf(std::uintptr_t code);

/// Writes the event and a copy of the event log into the watchdog log, which a sleep begins anew. Callable on any
/// thread; throws what the log throws.
void recordPowerEvent(PowerEvent event);

}  // namespace sentiq
