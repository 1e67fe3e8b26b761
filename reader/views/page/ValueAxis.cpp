#include "reader/views/page/ValueAxis.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "reader/views/TextStyle.h"

namespace sentiq {

ValueAxis::ValueAxis(std::string_view unit, double least, double most) : unit_(unit) {
  if (unit == "%") {
    return;
  }
  if (unit == "MiB" && most >= 10 * 1024) {
    unit_ = "GiB";
    scale_ = 1024;
  }
  const double low = least / scale_;
  const double high = most / scale_;
  const double range = std::max({high - low, high / 1000, 1 / scale_});
  const double power = std::pow(10, std::floor(std::log10(range / 3)));
  const double steps = range / 3 / power;
  step_ = power * (steps <= 1 ? 1 : steps <= 2 ? 2 : steps <= 5 ? 5 : 10);
  step_ = scale_ == 1 ? std::max(1.0, step_) : step_;
  low_ = low <= range ? 0 : std::floor(low / step_) * step_;
  high_ = std::max(std::ceil(high / step_) * step_, low_ + step_);
  if (low == high && low_ > 0) {  // In the middle.
    low_ -= step_;
  }
  decimals_ = std::max(0, static_cast<int>(-std::floor(std::log10(step_) + 1e-9)));
}

int ValueAxis::finer() const {
  return scale_ == 1 ? decimals_ : std::max(1, decimals_);
}

std::string ValueAxis::number(double value) const {
  return showNumber(value / scale_, finer());
}

std::string ValueAxis::tick(double value) const {
  return showNumber(value, decimals_) + ' ' + unit_;
}

std::string ValueAxis::at(double value) const {
  return showNumber(100 - 100 * (value / scale_ - low_) / (high_ - low_), 2);
}

void ValueAxis::addPlaces(Places& places) const {
  places.add({{"unit", unit_},
              {"scale", showNumber(scale_, 0)},
              {"decimals", std::to_string(finer())},
              {"low", showNumber(low_, decimals_)},
              {"high", showNumber(high_, decimals_)}});
  std::vector<double> ticks;
  for (long i = 0; i <= std::lround((high_ - low_) / step_); ++i) {
    ticks.push_back(low_ + static_cast<double>(i) * step_);
  }
  places.list("values", ticks,
              [&](double value) { return Places{{"at", at(value * scale_)}, {"value", tick(value)}}; });
}

}  // namespace sentiq
