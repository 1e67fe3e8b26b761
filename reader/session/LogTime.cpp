#include "reader/session/LogTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace sentiq {
namespace {

// Takes characters off the text's beginning; once something does not fit, nothing does any more.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  int number(std::size_t digits) {
    int value = 0;
    const std::string_view part = text_.substr(0, digits);
    const bool allDigits =
        part.size() == digits && std::all_of(part.begin(), part.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!allDigits) {
      good_ = false;
      return 0;
    }
    std::from_chars(part.data(), part.data() + digits, value);
    text_.remove_prefix(digits);
    return value;
  }
  bool skip(std::string_view anyOf) {
    const bool found = !text_.empty() && anyOf.find(text_.front()) != std::string_view::npos;
    if (found) {
      text_.remove_prefix(1);
    }
    return found;
  }
  void need(std::string_view anyOf) { good_ = skip(anyOf) && good_; }
  char peek() const { return text_.empty() ? '\0' : text_.front(); }
  bool good() const { return good_; }
  std::size_t left() const { return text_.size(); }

 private:
  std::string_view text_;
  bool good_ = true;
};

Ticks scanFraction(Scanner& scanner) {
  std::int64_t ticks = 0;
  std::int64_t unit = Ticks::period::den;
  while (scanner.peek() >= '0' && scanner.peek() <= '9') {
    unit /= 10;
    ticks += unit * scanner.number(1);
  }
  return Ticks(ticks);
}

std::chrono::minutes scanOffset(Scanner& scanner) {
  if (scanner.skip("Z") || (scanner.peek() != '+' && scanner.peek() != '-')) {
    return {};
  }
  const int sign = scanner.peek() == '-' ? -1 : 1;
  scanner.need("+-");
  const std::chrono::hours hours(scanner.number(2));
  scanner.skip(":");
  return sign * (hours + std::chrono::minutes(scanner.number(2)));
}

struct Parts {
  std::chrono::year_month_day day;
  std::chrono::hh_mm_ss<Ticks> time;
};

Parts localParts(Instant instant, std::chrono::minutes offset) {
  const Instant local = instant + offset;
  const auto day = std::chrono::floor<std::chrono::days>(local);
  return {std::chrono::year_month_day(day), std::chrono::hh_mm_ss<Ticks>(local - day)};
}

std::string formatTime(Instant instant, std::chrono::minutes offset, char between) {
  const Parts parts = localParts(instant, offset);
  std::array<char, 40> text{};
  static_cast<void>(std::snprintf(
      text.data(), text.size(), "%04d-%02u-%02u%c%02d:%02d:%02d.%03d", static_cast<int>(parts.day.year()),
      static_cast<unsigned>(parts.day.month()), static_cast<unsigned>(parts.day.day()), between,
      static_cast<int>(parts.time.hours().count()), static_cast<int>(parts.time.minutes().count()),
      static_cast<int>(parts.time.seconds().count()), static_cast<int>(parts.time.subseconds().count() / 10'000)));
  return text.data();
}

}  // namespace

std::optional<LogTime> parseTime(std::string_view text, std::size_t* used) {
  Scanner scanner(text);
  const std::chrono::year year(scanner.number(4));
  scanner.need("-");
  const std::chrono::month month(static_cast<unsigned>(scanner.number(2)));
  scanner.need("-");
  const std::chrono::day day(static_cast<unsigned>(scanner.number(2)));
  scanner.need("T ");
  const std::chrono::hours hours(scanner.number(2));
  scanner.need(":");
  const std::chrono::minutes minutes(scanner.number(2));
  const std::chrono::seconds seconds(scanner.skip(":") ? scanner.number(2) : 0);
  const Ticks fraction = scanner.skip(".") ? scanFraction(scanner) : Ticks{};
  const std::chrono::minutes offset = scanOffset(scanner);
  const std::chrono::year_month_day date(year, month, day);
  if (!scanner.good() || !date.ok() || hours.count() > 23 || minutes.count() > 59 || seconds.count() > 60) {
    return std::nullopt;
  }
  if (used != nullptr) {
    *used = text.size() - scanner.left();
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
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration).count();
  const auto pair = [](std::int64_t large, const char* largeUnit, std::int64_t small, const char* smallUnit) {
    return std::to_string(large) + largeUnit + std::to_string(small) + smallUnit;
  };
  if (seconds >= 86400) {
    return pair(seconds / 86400, " d ", seconds % 86400 / 3600, " h");
  }
  if (seconds >= 3600) {
    return pair(seconds / 3600, " h ", seconds % 3600 / 60, " min");
  }
  return seconds >= 60 ? pair(seconds / 60, " min ", seconds % 60, " s") : std::to_string(seconds) + " s";
}

}  // namespace sentiq
