#include "reader/judgement/Outcome.h"

#include <algorithm>

namespace sentiq {
namespace {

struct OutcomeRow {
  Outcome outcome;
  std::string_view word;
  std::string_view name;  // Also behind the number 1.
  std::string_view many;  // Behind others.
  bool isFailure;
};

// Its size is that of the enumeration, and its order, which the compiler holds together.
constexpr std::array<OutcomeRow, outcomeCount> rows{{
    {Outcome::Ended, "ended", "ended", "ended", false},
    {Outcome::Crashed, "crashed", "crashed", "crashed", true},
    {Outcome::Hung, "hung", "hung", "hung", true},
    {Outcome::PowerLoss, "power-loss", "lost power", "lost power", true},
    {Outcome::BlueScreen, "bluescreen", "blue screen", "blue screens", true},
    {Outcome::Shutdown, "shutdown", "shut down", "shut down", false},
    {Outcome::Asleep, "asleep", "asleep", "asleep", false},
    {Outcome::Unknown, "unknown", "unknown", "unknown", false},
}};
static_assert(std::adjacent_find(rows.begin(), rows.end(), [](const OutcomeRow& a, const OutcomeRow& b) {
                return a.outcome >= b.outcome;
              }) == rows.end());

const OutcomeRow& rowOf(Outcome outcome) {
  return rows[static_cast<std::size_t>(outcome)];
}

}  // namespace

std::array<Outcome, outcomeCount> allOutcomes() {
  std::array<Outcome, outcomeCount> all{};
  std::transform(rows.begin(), rows.end(), all.begin(), [](const OutcomeRow& row) { return row.outcome; });
  return all;
}

std::string_view outcomeWord(Outcome outcome) {
  return rowOf(outcome).word;
}

std::string_view outcomeName(Outcome outcome) {
  return rowOf(outcome).name;
}

std::string outcomesText(const std::vector<Outcome>& outcomes) {
  std::string text;
  for (const OutcomeRow& row : rows) {
    if (const auto count = std::count(outcomes.begin(), outcomes.end(), row.outcome); count > 0) {
      text.append(text.empty() ? "" : ", ").append(std::to_string(count)).append(1, ' ');
      text += count == 1 ? row.name : row.many;
    }
  }
  return text;
}

bool isFailure(Outcome outcome) {
  return rowOf(outcome).isFailure;
}

}  // namespace sentiq
