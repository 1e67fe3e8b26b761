// Where the ten-second records are further apart than they should be, and for how long Canvix really ran there.
#pragma once

#include <chrono>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/session/Session.h"

namespace sentiq {

/// Records come every ten seconds; further apart there is a gap.
constexpr std::chrono::seconds longestRecordInterval{15};

struct RecordGap {
  LogTime from;    // The last record before it.
  Ticks length{};  // By how long Canvix ran, where the records tell: the clock may have been set meanwhile.
  bool slept = false;
};

/// In order.
std::vector<RecordGap> recordGaps(const Session& session);

/// How far the clock was set forward (back: negative) between two records that follow each other, by how long Canvix
/// ran; 0 where the records do not tell.
Ticks clockJump(const MetricSample& a, const MetricSample& b);

}  // namespace sentiq
