#include "reader/judgement/Reach.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace sentiq {
namespace {

// Crash events are written up to two minutes after the exit, when the channels are copied once more.
constexpr std::chrono::seconds lateEnough{100};
// The system may be about to write them when the exit is noticed.
constexpr std::chrono::seconds before{10};

// A stretch of time without a hole, from one copy or several.
struct Stretch {
  Instant from;
  Instant to;
  std::uint64_t lastRecord;
};

// A copy joins those before it when it reaches back to one of them, by time or by record numbers: a copy holds the
// newest events only, and on a busy machine these are few minutes. Numbers begin anew when a channel is cleared.
// @param whole whether a copy counts only down to the first event that is lost in it.
std::vector<Stretch> stretchesOf(const Session& session, bool whole) {
  std::vector<Stretch> stretches;
  for (const ChannelCopy& copy : session.copies) {
    if (copy.channel != "Application" || !copy.oldest) {
      continue;
    }
    const bool cut = whole && copy.lostBefore;
    const Instant from = cut ? *copy.lostBefore : *copy.oldest;
    Stretch* const last = stretches.empty() ? nullptr : &stretches.back();
    const bool follows = last != nullptr && !cut && copy.firstRecord != 0 && last->lastRecord != 0 &&
                         copy.firstRecord <= last->lastRecord + 1 && copy.lastRecord >= last->lastRecord;
    if (last == nullptr || (!follows && from > last->to)) {
      stretches.push_back({from, copy.made, copy.lastRecord});
      continue;
    }
    last->from = std::min(last->from, from);
    last->to = std::max(last->to, copy.made);
    last->lastRecord = std::max(last->lastRecord, copy.lastRecord);
  }
  return stretches;
}

}  // namespace

std::string missingAbout(const Session& session, const LogEntry& exit) {
  const Instant time = *exit.time;
  const auto show = [&](Instant instant) { return showTime(instant, exit.offset); };
  std::optional<Instant> latest;  // Up to which there is a copy; so from which, after the exit.
  std::optional<Instant> reach;
  for (const bool whole : {true, false}) {
    for (const Stretch& stretch : stretchesOf(session, whole)) {
      latest = later(latest, stretch.to);
      if (stretch.to >= time + lateEnough) {
        reach = earlier(reach, stretch.from);
      }
    }
    if (reach && *reach <= time - before) {
      return whole ? "" : "events in the copies of the Application events cannot be read";
    }
  }
  if (reach) {
    return "the copies of the Application events do not reach back to " + show(time) + ", only to " + show(*reach);
  }
  return "the logs hold no copy of the Application events made late enough" +
         (latest && *latest >= time ? ", the last one at " + show(*latest) : "");
}

}  // namespace sentiq
