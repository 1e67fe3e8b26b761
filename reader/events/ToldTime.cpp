#include "reader/events/ToldTime.h"

#include <algorithm>

namespace sentiq {
namespace {

constexpr int latestYear = 9999;

std::vector<int> numbersIn(std::string_view text) {
  std::vector<int> numbers;
  bool within = false;
  for (const char c : text) {
    const bool digit = c >= '0' && c <= '9';
    if (digit && !within) {
      numbers.push_back(0);
    }
    if (digit) {
      numbers.back() = std::min(numbers.back() * 10 + (c - '0'), latestYear + 1);
    }
    within = digit;
  }
  return numbers;
}

int yearOf(Instant time) {
  return static_cast<int>(std::chrono::year_month_day(std::chrono::floor<std::chrono::days>(time)).year());
}

}  // namespace

ToldTime readToldTime(std::string_view clock, std::string_view date) {
  return {numbersIn(clock), numbersIn(date)};
}

std::optional<Instant> firstMeant(const ToldTime& told, Instant from, Instant until, std::chrono::minutes offset) {
  std::optional<Instant> first;
  if (told.clock.size() < 2 || told.clock[0] > 23 || told.clock[1] > 59 || told.date.size() != 3) {
    return first;
  }
  const int hour = told.clock[0];
  const int otherHalf = hour <= 12 ? (hour + 12) % 24 : hour;  // Perhaps it is one of the half day.
  const auto past = std::chrono::minutes(told.clock[1]) +
                    std::chrono::seconds(told.clock.size() > 2 && told.clock[2] < 60 ? told.clock[2] : 0);
  std::vector<int> date = told.date;
  std::sort(date.begin(), date.end());
  do {
    for (const int century : {yearOf(from) / 100, yearOf(until) / 100}) {
      const int year = date[0] < 100 ? century * 100 + date[0] : date[0];
      if (year > latestYear || date[1] > 12 || date[2] > 31) {
        continue;
      }
      const std::chrono::year_month_day day(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(date[1])),
                                            std::chrono::day(static_cast<unsigned>(date[2])));
      for (const int meant : {hour, otherHalf}) {
        const Instant time = std::chrono::sys_days(day) + std::chrono::hours(meant) + past - offset;
        if (day.ok() && time >= std::chrono::floor<std::chrono::minutes>(from) && time <= until) {
          first = std::min(first.value_or(time), time);
        }
      }
    }
  } while (std::next_permutation(date.begin(), date.end()));
  return first;
}

}  // namespace sentiq
