#include "reader/views/TimeAxis.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <ostream>

namespace sentiq {
namespace {

using namespace std::chrono_literals;

constexpr int mostTicks = 6;
constexpr std::chrono::seconds steps[] = {1s,    2s, 5s, 10s, 30s, 1min, 2min, 5min, 10min,
                                          30min, 1h, 2h, 4h,  12h, 24h,  48h,  168h};

}  // namespace

TimeAxis::TimeAxis(Instant first, Instant last, std::chrono::minutes offset)
    : first_(first), last_(std::max(last, Instant(first + 1s))), offset_(offset), step_(last_ - first_) {
  const auto* const found =
      std::find_if(std::begin(steps), std::end(steps), [this](auto step) { return step_ / step <= mostTicks; });
  step_ = found != std::end(steps) ? *found : step_;
  const Ticks local = first_.time_since_epoch() + offset_;
  for (Instant time = first_ + (step_ - local % step_) % step_; time <= last_; time += step_) {
    rounds_.push_back(time);
  }
}

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

void TimeAxis::writeLine(std::string_view style, Instant time, std::string_view name, std::ostream& out) const {
  out << "<line class=\"" << style << R"(" x1=")" << at(time) << R"(" x2=")" << at(time) << R"(" y2="100%")";
  if (name.empty()) {
    out << "/>";
  } else {
    out << "><title>" << name << "</title></line>\n";
  }
}

void TimeAxis::writeGrid(std::ostream& out) const {
  for (const Instant time : rounds_) {
    writeLine("grid", time, "", out);
  }
}

void TimeAxis::writeTimes(std::string_view y, std::ostream& out) const {
  for (const Instant time : rounds_) {
    const std::string text = showTime(time, offset_);
    out << R"(<text x=")" << at(time) << R"(" y=")" << y << R"(" text-anchor="middle">)"
        << (step_ >= 24h ? text.substr(5, 5) : text.substr(11, step_ < 1min ? 8 : 5)) << "</text>";
  }
}

std::string showNumber(double number, int decimals) {
  std::array<char, 40> room{};
  const auto result = std::to_chars(room.data(), room.data() + room.size(), number, std::chars_format::fixed, decimals);
  return {room.data(), result.ptr};
}

}  // namespace sentiq
