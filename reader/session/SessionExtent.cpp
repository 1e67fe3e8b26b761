#include "reader/session/SessionExtent.h"

#include <chrono>

#include "reader/input/CleanText.h"

namespace sentiq {
namespace {

using std::chrono::abs;

// The program tells the start of Windows from two clocks, in whole seconds, and those are set right now and then.
constexpr std::chrono::seconds bootSlack{10};

// How far b's start of Windows is after a's; 0 when they are the same, nothing when one is not known. The header tells
// it in local time: when summer time has begun or ended since, it is an hour off.
std::optional<Ticks> bootDistance(const SessionExtent& a, const SessionExtent& b) {
  if (!a.bootFrom || !b.bootFrom) {
    return std::nullopt;
  }
  const Ticks distance = *b.bootFrom > *a.bootTo   ? *b.bootFrom - *a.bootTo
                         : *a.bootFrom > *b.bootTo ? *b.bootTo - *a.bootFrom
                                                   : Ticks{};
  const bool same = abs(distance) <= bootSlack || abs(abs(distance) - std::chrono::hours(1)) <= bootSlack;
  return same ? Ticks{} : distance;
}

}  // namespace

void SessionExtent::add(const SessionExtent& more) {
  begin = earlier(begin, more.begin);
  end = later(end, more.end);
  bootFrom = earlier(bootFrom, more.bootFrom);
  bootTo = later(bootTo, more.bootTo);
  computer = computer.empty() ? more.computer : computer;
}

SessionExtent extentOf(const Session& session) {
  SessionExtent own;
  SessionExtent told;
  for (const LogEntry& entry : session.entries) {
    if (!entry.event) {
      SessionExtent& extent = entry.role == LogRole::Initial ? told : own;
      extent.begin = earlier(extent.begin, entry.time);
      extent.end = later(extent.end, entry.time);
    }
  }
  SessionExtent& extent = own.begin ? own : told;
  extent.computer = session.computer;
  extent.bootFrom = extent.bootTo = session.booted;
  for (const MetricSample& record : session.metrics) {
    if (record.up) {
      const Instant boot = record.time.instant - *record.up;
      extent.bootFrom = earlier(extent.bootFrom, boot);
      extent.bootTo = later(extent.bootTo, boot);
    }
  }
  return extent;
}

std::optional<bool> sameComputer(std::string_view a, std::string_view b) {
  return a.empty() || b.empty() ? std::nullopt : std::optional(equalIgnoringCase(a, b));
}

std::optional<bool> sameStart(const SessionExtent& a, const SessionExtent& b) {
  const auto distance = bootDistance(a, b);
  return distance ? std::optional(*distance == Ticks{}) : std::nullopt;
}

Tie tieOfRun(const SessionExtent& a, const SessionExtent& b) {
  constexpr std::chrono::days longestPause{1};
  const auto startedAfter = [](const SessionExtent& later, const SessionExtent& earlier) {
    return later.bootFrom && earlier.end && *later.bootFrom > *earlier.end + std::chrono::hours(1) + bootSlack;
  };
  if (startedAfter(a, b) || startedAfter(b, a)) {
    return Tie::Impossible;
  }
  if (const auto same = sameComputer(a.computer, b.computer)) {
    return *same ? Tie::Proven : Tie::Impossible;
  }
  if (const auto same = sameStart(a, b)) {
    return *same ? Tie::Proven : Tie::Impossible;
  }
  const bool apart = a.begin && b.begin && (*a.begin > *b.end + longestPause || *b.begin > *a.end + longestPause);
  return apart ? Tie::Impossible : Tie::Possible;
}

Tie tieToSubject(const SessionExtent& initial, const SessionExtent& subject) {
  constexpr std::chrono::minutes late{10};  // The program beside the process that ended goes on for minutes.
  if (initial.begin && subject.end && *subject.end > *initial.begin + late) {
    return Tie::Impossible;
  }
  if (const auto same = sameComputer(initial.computer, subject.computer)) {
    return *same ? Tie::Proven : Tie::Impossible;
  }
  const auto distance = bootDistance(subject, initial);
  if (distance && *distance == Ticks{}) {
    return Tie::Proven;
  }
  // Windows was started anew after the session, or it is another machine.
  const bool startedAfter = distance && *distance > Ticks{} && subject.end && *initial.bootTo > *subject.end - late;
  return distance && !startedAfter ? Tie::Impossible : Tie::Possible;
}

}  // namespace sentiq
