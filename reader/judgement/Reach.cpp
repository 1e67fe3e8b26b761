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
  bool gaps;
};

// A copy joins those before it when it reaches back to one of them, by time or by record numbers: a copy holds the
// newest events only, and on a busy machine these are few minutes. Numbers begin anew when a channel is cleared.
std::vector<Stretch> stretchesOf(const Session& session) {
  std::vector<Stretch> stretches;
  for (const ChannelCopy& copy : session.copies) {
    if (copy.channel != "Application" || !copy.oldest) {
      continue;
    }
    Stretch* const last = stretches.empty() ? nullptr : &stretches.back();
    const bool joins =
        last != nullptr &&
        (*copy.oldest <= last->to || (copy.firstRecord != 0 && last->lastRecord != 0 &&
                                      copy.firstRecord <= last->lastRecord + 1 && copy.lastRecord >= last->lastRecord));
    if (!joins) {
      stretches.push_back({*copy.oldest, copy.made, copy.lastRecord, copy.gaps});
      continue;
    }
    last->from = std::min(last->from, *copy.oldest);
    last->to = std::max(last->to, copy.made);
    last->lastRecord = std::max(last->lastRecord, copy.lastRecord);
    last->gaps = last->gaps && copy.gaps;
  }
  return stretches;
}

}  // namespace

std::string missingAbout(const Session& session, const LogEntry& exit) {
  const Instant time = *exit.time;
  const auto show = [&](Instant instant) { return showTime(instant, exit.offset); };
  std::optional<Instant> latest;  // Up to which there is a copy; so from which, after the exit.
  std::optional<Instant> reach;
  for (const Stretch& stretch : stretchesOf(session)) {
    latest = std::max(latest.value_or(stretch.to), stretch.to);
    if (stretch.to < time + lateEnough) {
      continue;
    }
    if (stretch.from <= time - before) {
      return stretch.gaps ? "events in the copies of the Application events cannot be read" : "";
    }
    reach = std::min(reach.value_or(stretch.from), stretch.from);
  }
  if (reach) {
    return "the copies of the Application events do not reach back to " + show(time) + ", only to " + show(*reach);
  }
  return "the logs hold no copy of the Application events made late enough" +
         (latest && *latest >= time ? ", the last one at " + show(*latest) : "");
}

}  // namespace sentiq
