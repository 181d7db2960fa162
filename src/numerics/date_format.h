#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "numerics/environment.h"

namespace orv {

// Day numbers as spreadsheets count them: 0 is 1899-12-30, the fraction is the time of day. Below 0 the fraction still
// counts forward from midnight, so -1.25 is 1899-12-29 06:00.
inline constexpr double kFirstDay = -657434;  // 0100-01-01
inline constexpr double kLastDay = 2958465;   // 9999-12-31

// Date and time of a day number, rounded to whole seconds. Nothing for a number outside the years 100 to 9999 or one
// that is no number.
std::optional<CivilTime> DateOfDay(double day);

// The text of a date by a pattern: yyyy, yy; MMMM and MMM (English names), MM, M; dd, d; hh, h; mm, m; ss, s. A small m
// stands for minutes behind the hours and for the month elsewhere. Anything else is copied.
std::string FormatDate(const CivilTime& time, std::string_view pattern);

// The same from a day number; empty when it is no date.
std::string FormatDay(double day, std::string_view pattern);

}  // namespace orv
