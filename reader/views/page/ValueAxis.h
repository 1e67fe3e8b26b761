// A range of values as the height of a drawing, in percent from its top, in the unit that reads best.
#pragma once

#include <string>
#include <string_view>

#include "reader/views/page/PageTemplate.h"

namespace sentiq {

class ValueAxis {
 public:
  /// @param unit of the values: "%", "MiB" or what they count. The axis goes from a round value to a round value.
  ValueAxis(std::string_view unit, double least, double most);

  /// "402.5 GiB"
  std::string show(double value) const { return number(value) + ' ' + unit_; }
  std::string number(double value) const;

  /// In percent, with two decimals.
  std::string at(double value) const;

  /// Where the axis begins, when that is not at 0; else empty.
  std::string cutAt() const { return low_ > 0 ? tick(low_) : ""; }

  /// "unit", "scale" (what a value is divided by), "decimals", "low" and "high" (in that unit); the list "values" of
  /// "at" and "value".
  void addPlaces(Places& places) const;

 private:
  std::string tick(double value) const;
  int finer() const;  // Digits of a value between the ticks.

  std::string unit_;
  double scale_ = 1;
  double step_ = 25;
  double low_ = 0;  // In the axis's unit; so is the other.
  double high_ = 100;
  int decimals_ = 0;  // Of the ticks.
};

}  // namespace sentiq
