// A stretch of time as the width of a drawing, in percent.
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "reader/input/LogTime.h"

namespace sentiq {

class TimeAxis {
 public:
  /// @param offset of the local time in which ticks are round.
  TimeAxis(Instant first, Instant last, std::chrono::minutes offset);

  Instant first() const { return first_; }
  Instant last() const { return last_; }

  /// Where an instant lies, as an SVG length; at the near end when it is outside.
  std::string at(Instant time) const;

  /// How wide the time between two instants is, as an SVG length.
  std::string width(Instant from, Instant to) const;

  /// A line from top to bottom. @param name what it stands for, in HTML; none when empty.
  void writeLine(std::string_view style, Instant time, std::string_view name, std::ostream& out) const;

  /// Such a line at each round local time.
  void writeGrid(std::ostream& out) const;

  /// The times of these lines.
  /// @param y of the text's base line, an SVG length.
  void writeTimes(std::string_view y, std::ostream& out) const;

 private:
  double percent(Instant time) const;

  Instant first_;
  Instant last_;
  std::chrono::minutes offset_;
  Ticks step_;  // From one round time to the next.
  std::vector<Instant> rounds_;
};

/// A decimal fraction with so many digits behind the point, in every locale.
std::string showNumber(double number, int decimals);

}  // namespace sentiq
