#include "reader/session/Life.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "logging/LogGrammar.h"

namespace sentiq {
namespace {

bool isPower(Meaning meaning) {
  return meaning == Meaning::Sleep || meaning == Meaning::Resume || meaning == Meaning::DisplayChange;
}

bool isTail(const std::string& text) {
  return text == grammar::stopBegun || text == grammar::exitDone || text == grammar::stopDone;
}

}  // namespace

Life lifeOf(const Session& session, std::size_t index) {
  Life life;
  life.session = index;
  for (std::size_t i = 0; i < session.entries.size(); ++i) {
    const LogEntry& entry = session.entries[i];
    if (!entry.time || entry.event || entry.role == LogRole::Initial) {
      continue;
    }
    life.begin = life.begin ? life.begin : entry.time;
    if (entry.metric) {
      life.records.push_back(*entry.time);
    } else if (entry.meaning == Meaning::Exit) {
      (entry.role == LogRole::Session ? life.statusExits : life.watchdogExits).push_back(i);
    } else if (isPower(entry.meaning)) {
      life.power.push_back(*entry.time);
    } else if (isTail(entry.text)) {
      life.tails.push_back(i);
    }
  }
  return life;
}

bool isExitAt(const std::optional<Instant>& exit, Instant time) {
  return exit && std::chrono::abs(*exit - time) <= lifeSlack;
}

bool livesAfter(const Life& life, Instant time) {
  const auto after = std::upper_bound(life.records.begin(), life.records.end(), time);
  return life.records.end() - after >= 2 || (after != life.records.end() && life.records.back() > time + lifeSlack);
}

bool endsAt(const Life& life, Instant time) {
  const auto after = std::upper_bound(life.records.begin(), life.records.end(), time);
  return !livesAfter(life, time) && after != life.records.begin() && time - *std::prev(after) <= lifeSlack;
}

}  // namespace sentiq
