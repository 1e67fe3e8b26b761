#include "reader/input/LogTime.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

namespace sentiq {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::string formatTime(Instant instant, std::chrono::minutes offset, char between) {
  const Instant local = instant + offset;
  const auto midnight = std::chrono::floor<std::chrono::days>(local);
  const std::chrono::year_month_day day(midnight);
  const std::chrono::hh_mm_ss<Ticks> time(local - midnight);
  std::array<char, 40> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%04d-%02u-%02u%c%02d:%02d:%02d.%03d",
                                  static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                                  static_cast<unsigned>(day.day()), between, static_cast<int>(time.hours().count()),
                                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                                  static_cast<int>(time.subseconds().count() / 10'000)));
  return text.data();
}

}  // namespace

std::optional<Instant> earlier(std::optional<Instant> a, std::optional<Instant> b) {
  return a && b ? std::min(a, b) : std::max(a, b);
}

std::optional<Instant> later(std::optional<Instant> a, std::optional<Instant> b) {
  return std::max(a, b);  // Nothing is less than any.
}

std::optional<LogTime> parseTime(std::string_view text, std::size_t* used) {
  bool good = true;
  std::size_t at = 0;
  const auto next = [&] { return at < text.size() ? text[at] : '\0'; };
  const auto number = [&](std::size_t digits) {
    int value = 0;
    for (const std::size_t end = at + digits; at < end; ++at) {
      good = good && isDigit(next());
      value = value * 10 + (good ? next() - '0' : 0);
    }
    return value;
  };
  const auto skip = [&](char c) {
    const bool found = next() == c;
    at += found ? 1 : 0;
    return found;
  };
  const std::chrono::year year(number(4));
  good = skip('-') && good;
  const std::chrono::month month(static_cast<unsigned>(number(2)));
  good = skip('-') && good;
  const std::chrono::day day(static_cast<unsigned>(number(2)));
  good = (skip('T') || skip(' ')) && good;
  const std::chrono::hours hours(number(2));
  good = skip(':') && good;
  const std::chrono::minutes minutes(number(2));
  const std::chrono::seconds seconds(skip(':') ? number(2) : 0);
  Ticks fraction{};
  if (skip('.')) {
    for (std::int64_t unit = Ticks::period::den / 10; isDigit(next()); unit /= 10) {
      fraction += Ticks(unit * number(1));
    }
  }
  std::chrono::minutes offset{};
  const int sign = skip('+') ? 1 : skip('-') ? -1 : 0;
  if (sign != 0) {
    offset = sign * std::chrono::hours(number(2));
    skip(':');
    offset += sign * std::chrono::minutes(number(2));
  } else {
    skip('Z');
  }
  const std::chrono::year_month_day date(year, month, day);
  if (!good || !date.ok() || hours.count() > 23 || minutes.count() > 59 || seconds.count() > 60) {
    return std::nullopt;
  }
  if (used != nullptr) {
    *used = at;
  }
  return LogTime{std::chrono::sys_days(date) + hours + minutes + seconds + fraction - offset, offset};
}

std::string showTime(Instant instant, std::chrono::minutes offset) {
  return formatTime(instant, offset, ' ');
}

std::string showOffset(std::chrono::minutes offset) {
  const int minutes = static_cast<int>(std::abs(offset.count()));
  std::array<char, 24> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%c%02d:%02d", offset.count() < 0 ? '-' : '+', minutes / 60,
                                  minutes % 60));
  return text.data();
}

std::string isoTime(Instant instant, std::chrono::minutes offset) {
  return formatTime(instant, offset, 'T') + showOffset(offset);
}

std::string showDuration(Ticks duration) {
  struct Unit {
    std::int64_t seconds;
    const char* name;
  };
  constexpr std::array units{Unit{86400, " d"}, Unit{3600, " h"}, Unit{60, " min"}, Unit{1, " s"}};
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration).count();
  for (std::size_t i = 0; i + 1 < units.size(); ++i) {
    if (seconds >= units[i].seconds) {
      return std::to_string(seconds / units[i].seconds) + units[i].name + ' ' +
             std::to_string(seconds % units[i].seconds / units[i + 1].seconds) + units[i + 1].name;
    }
  }
  return std::to_string(seconds) + units.back().name;
}

}  // namespace sentiq
