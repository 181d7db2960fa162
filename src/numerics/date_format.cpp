#include "numerics/date_format.h"

#include <array>
#include <cmath>

namespace orv {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr int kSecondsOfADay = 86400;

std::string Digits(int number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

// The civil date of a count of days from 1899-12-30, by eras of 400 years that begin on a first of March.
CivilTime CivilDate(int days) {
  constexpr int kDaysOfAnEra = 146097;
  constexpr int kEpoch = 693899;  // 0000-03-01 to 1899-12-30
  const int shifted = days + kEpoch;
  const int era = shifted / kDaysOfAnEra;
  const int dayOfEra = shifted % kDaysOfAnEra;
  const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int monthFromMarch = (5 * dayOfYear + 2) / 153;
  CivilTime date;
  date.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  date.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  date.year = yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0);
  return date;
}

std::string MonthText(int month, std::size_t width) {
  if (month < 1 || month > 12) return {};
  const std::string_view name = kMonths[static_cast<std::size_t>(month - 1)];
  if (width >= 4) return std::string(name);
  return width == 3 ? std::string(name.substr(0, 3)) : Digits(month, width);
}

// The longest run of one letter that makes a token.
std::size_t LongestToken(char letter) {
  switch (letter) {
    case 'y':
    case 'M':
    case 'm':
      return 4;
    case 'd':
    case 'h':
    case 's':
      return 2;
    default:
      return 0;
  }
}

}  // namespace

std::optional<CivilTime> DateOfDay(double day) {
  if (!(day > kFirstDay - 1 && day < kLastDay + 1)) return std::nullopt;
  const double whole = std::trunc(day);
  int days = static_cast<int>(whole);
  int seconds = static_cast<int>(std::lround(std::abs(day - whole) * kSecondsOfADay));
  if (seconds == kSecondsOfADay) {
    seconds = 0;
    ++days;
  }
  if (days > static_cast<int>(kLastDay)) return std::nullopt;
  CivilTime time = CivilDate(days);
  time.hour = seconds / 3600;
  time.minute = seconds / 60 % 60;
  time.second = seconds % 60;
  return time;
}

std::string FormatDate(const CivilTime& time, std::string_view pattern) {
  std::string text;
  bool behindHours = false;
  for (std::size_t k = 0; k < pattern.size();) {
    const char letter = pattern[k];
    const std::size_t longest = LongestToken(letter);
    if (longest == 0) {
      text.push_back(letter);
      ++k;
      continue;
    }
    std::size_t width = 1;
    while (width < longest && k + width < pattern.size() && pattern[k + width] == letter) ++width;
    k += width;
    if (letter == 'y') {
      text += width > 2 ? Digits(time.year, 4) : Digits(time.year % 100, 2);
    } else if (letter == 'd') {
      text += Digits(time.day, width);
    } else if (letter == 'h') {
      text += Digits(time.hour, width);
    } else if (letter == 's') {
      text += Digits(time.second, width);
    } else if (letter == 'm' && behindHours && width <= 2) {
      text += Digits(time.minute, width);
    } else {
      text += MonthText(time.month, width);
    }
    behindHours = letter == 'h';
  }
  return text;
}

std::string FormatDay(double day, std::string_view pattern) {
  const std::optional<CivilTime> time = DateOfDay(day);
  return time ? FormatDate(*time, pattern) : std::string();
}

}  // namespace orv
