#include "reader/views/page/TimeAxis.h"

#include "reader/views/TextStyle.h"

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
}

double TimeAxis::percent(Instant time) const {
  const Instant inside = std::clamp(time, first_, last_);
  return 100 * static_cast<double>((inside - first_).count()) / static_cast<double>((last_ - first_).count());
}

std::string TimeAxis::at(Instant time) const {
  return showNumber(percent(time), 2);
}

std::string TimeAxis::width(Instant from, Instant to) const {
  return showNumber(percent(to) - percent(from), 2);
}

void TimeAxis::addTicks(Places& places) const {
  std::vector<Instant> rounds;
  const Ticks local = first_.time_since_epoch() + offset_;
  for (Instant time = first_ + (step_ - local % step_) % step_; time <= last_; time += step_) {
    rounds.push_back(time);
  }
  bool spare = true;
  places.list("ticks", rounds, [&](Instant time) {
    constexpr double edge = 4;  // Percent: nearer to it, the text would stand beyond.
    const double at = percent(time);
    const std::string text = showTime(time, offset_);
    spare = !spare;
    return Places{{"at", showNumber(at, 2)},
                  {"anchor", at < edge         ? "start"
                             : at > 100 - edge ? "end"
                                               : "middle"},
                  {"time", step_ >= 24h ? text.substr(5, 5) : text.substr(11, step_ < 1min ? 8 : 5)},
                  {"spare", spare}};
  });
}

}  // namespace sentiq
