#include "reader/judgement/Outcome.h"

#include <algorithm>

namespace sentiq {
namespace {

struct OutcomeRow {
  Outcome outcome;
  std::string_view word;
  std::string_view name;
  std::string_view one;  // Behind the number 1; so below behind others.
  std::string_view many;
  bool isFailure;
};

// Its size is that of the enumeration, and its order, which the compiler holds together.
constexpr std::array<OutcomeRow, outcomeCount> rows{{
    {Outcome::Ended, "ended", "ended", "ended", "ended", false},
    {Outcome::Crashed, "crashed", "crashed", "crashed", "crashed", true},
    {Outcome::Hung, "hung", "hung", "hung", "hung", true},
    {Outcome::PowerLoss, "power-loss", "lost power", "lost power", "lost power", true},
    {Outcome::BlueScreen, "bluescreen", "blue screen", "blue screen", "blue screens", true},
    {Outcome::Shutdown, "shutdown", "shut down", "shut down", "shut down", false},
    {Outcome::Asleep, "asleep", "asleep", "asleep", "asleep", false},
    {Outcome::Unknown, "unknown", "unknown", "unknown", "unknown", false},
}};
static_assert([] {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (static_cast<std::size_t>(rows[i].outcome) != i || rows[i].word.empty()) {
      return false;
    }
  }
  return true;
}());

const OutcomeRow& rowOf(Outcome outcome) {
  return rows[static_cast<std::size_t>(outcome)];
}

}  // namespace

std::array<Outcome, outcomeCount> allOutcomes() {
  std::array<Outcome, outcomeCount> all{};
  for (std::size_t i = 0; i < all.size(); ++i) {
    all[i] = rows[i].outcome;
  }
  return all;
}

std::string_view outcomeWord(Outcome outcome) {
  return rowOf(outcome).word;
}

std::string_view outcomeName(Outcome outcome) {
  return rowOf(outcome).name;
}

std::string outcomeCountText(Outcome outcome, std::size_t count) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? rowOf(outcome).one : rowOf(outcome).many);
}

std::string outcomesText(const std::vector<Outcome>& outcomes) {
  std::string text;
  for (const OutcomeRow& row : rows) {
    const auto count = static_cast<std::size_t>(std::count(outcomes.begin(), outcomes.end(), row.outcome));
    if (count > 0) {
      text += (text.empty() ? "" : ", ") + outcomeCountText(row.outcome, count);
    }
  }
  return text;
}

bool isFailure(Outcome outcome) {
  return rowOf(outcome).isFailure;
}

}  // namespace sentiq
