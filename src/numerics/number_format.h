#pragma once

#include <string>
#include <string_view>

namespace orv {

// Largest whole number not above x; x rounded to a whole number, halves to the even one; the remainder of the rounded
// operands with the sign of the first (failure 11 for a divisor that rounds to 0); the sign as -1, 0 or 1.
double Int(double x);
double CInt(double x);
double Mod(double a, double b);
double Sgn(double x);

// The text of a number with up to 15 significant digits and "." as separator: "0.1", "1E-05", "1.5E+20".
std::string NumberText(double value);

// The text of a number with 17 significant digits, from which the same double is read again.
std::string ExactText(double value);

// A number by a mask of "0" (digit always), "#" (digit when needed), ".", "E+00" and literal characters; a second mask
// behind ";" serves negative numbers. Halves round away from zero. The separator is always ".". With an exponent the
// mantissa fills all places in front of the point.
std::string FormatNumber(double value, std::string_view mask);

// x rounded to a count of significant digits: plain for middling sizes, otherwise with an exponent that is a multiple
// of three; a blank or a minus in front, a blank behind.
std::string SignificantText(double value, int digits);

}  // namespace orv
