#include "reader/views/TimeAxis.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <iterator>
#include <ostream>
#include <string>

namespace sentiq {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;

constexpr int mostTicks = 6;
constexpr seconds steps[] = {seconds(1), seconds(2), seconds(5),  seconds(10), seconds(30), minutes(1),
                             minutes(2), minutes(5), minutes(10), minutes(30), hours(1),    hours(2),
                             hours(4),   hours(12),  days(1),     days(2),     days(7)};

}  // namespace

TimeAxis::TimeAxis(Instant first, Instant last, std::chrono::minutes offset)
    : first_(first), last_(std::max(last, first + seconds(1))), offset_(offset) {}

double TimeAxis::percent(Instant time) const {
  const Instant inside = std::clamp(time, first_, last_);
  return 100 * static_cast<double>((inside - first_).count()) / static_cast<double>((last_ - first_).count());
}

std::string TimeAxis::at(Instant time) const {
  return showNumber(percent(time), 2) + '%';
}

std::string TimeAxis::width(Instant from, Instant to) const {
  return showNumber(percent(to) - percent(from), 2) + '%';
}

Ticks TimeAxis::step() const {
  const auto* const found = std::find_if(std::begin(steps), std::end(steps), [this](std::chrono::seconds step) {
    return (last_ - first_) / step <= mostTicks;
  });
  return found != std::end(steps) ? Ticks(*found) : last_ - first_;
}

Instant TimeAxis::firstTick() const {
  const Ticks local = first_.time_since_epoch() + offset_;
  return first_ + (step() - local % step()) % step();
}

void TimeAxis::writeLines(std::ostream& out) const {
  for (Instant tick = firstTick(); tick <= last_; tick += step()) {
    out << R"(<line class="grid" x1=")" << at(tick) << R"(" x2=")" << at(tick) << R"(" y2="100%"/>)";
  }
}

void TimeAxis::writeTimes(const std::string& y, std::ostream& out) const {
  for (Instant tick = firstTick(); tick <= last_; tick += step()) {
    const std::string text = showTime(tick, offset_);
    out << R"(<text x=")" << at(tick) << R"(" y=")" << y << R"(" text-anchor="middle">)"
        << (step() >= days(1) ? text.substr(5, 5) : text.substr(11, step() < minutes(1) ? 8 : 5)) << "</text>";
  }
}

std::string showNumber(double number, int decimals) {
  std::array<char, 40> room{};
  const auto result = std::to_chars(room.data(), room.data() + room.size(), number, std::chars_format::fixed, decimals);
  return {room.data(), result.ptr};
}

}  // namespace sentiq
