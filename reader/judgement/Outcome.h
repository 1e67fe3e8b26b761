// The ways in which a session ends, and their names.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sentiq {

/// In the order in which an overview counts them.
enum class Outcome : std::uint8_t { Ended, Crashed, Hung, PowerLoss, BlueScreen, Shutdown, Asleep, Unknown };

constexpr std::size_t outcomeCount = static_cast<std::size_t>(Outcome::Unknown) + 1;

/// All of them, in that order.
std::array<Outcome, outcomeCount> allOutcomes();

/// For scripts, one word: "power-loss".
std::string_view outcomeWord(Outcome outcome);

/// "3 crashed, 2 blue screens", in the order of the outcomes.
std::string outcomesText(const std::vector<Outcome>& outcomes);

/// What it is called where it stands alone: "lost power".
std::string_view outcomeName(Outcome outcome);

/// Whether Canvix or the machine failed: a crash, a hang, a fall of the machine.
bool isFailure(Outcome outcome);

}  // namespace sentiq
