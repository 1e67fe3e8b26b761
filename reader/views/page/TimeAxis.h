// A stretch of time as the width of a drawing, in percent.
#pragma once

#include <algorithm>
#include <chrono>
#include <iterator>
#include <string>
#include <vector>

#include "reader/input/LogTime.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {

class TimeAxis {
 public:
  /// @param offset of the local time in which ticks are round.
  TimeAxis(Instant first, Instant last, std::chrono::minutes offset);

  /// Where an instant lies, in percent with two decimals; at the near end when it is outside.
  std::string at(Instant time) const;

  /// How wide the time between two instants is, in percent.
  std::string width(Instant from, Instant to) const;

  /// Those of which the axis shows a part: the moments, or what lasted.
  template <class Span>
  std::vector<Span> within(const std::vector<Span>& spans, bool moments) const {
    std::vector<Span> inside;
    std::copy_if(spans.begin(), spans.end(), std::back_inserter(inside), [&](const Span& span) {
      return span.to >= first_ && span.from <= last_ && (span.from == span.to) == moments;
    });
    return inside;
  }

  /// The list "ticks": each round local time as "at" (percent), "time" and "anchor" (of the text); every other one is
  /// "spare", for drawings that have little room.
  void addTicks(Places& places) const;

 private:
  double percent(Instant time) const;

  Instant first_;
  Instant last_;
  std::chrono::minutes offset_;
  Ticks step_;  // From one round time to the next.
};

}  // namespace sentiq
