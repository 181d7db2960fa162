#pragma once

#include <algorithm>

#include "numerics/error_prompt.h"

// Inverse trigonometry that survives rounding: a dot product of unit vectors may exceed 1 by a few units of the last
// place, and a cell may lie on an axis. No routine here raises.
namespace orv {

inline constexpr double kPi15 = 3.14159265358979;     // the constant of the angle routines
inline constexpr double kPi = 3.141592653589793;      // the constant of the geometry's steps
inline constexpr double kDegree = 0.017453292519943;  // pi / 180 as the cell angles use it

// Arccosine in radians, 0 to pi. Beyond 1 by less than 4e-16 the argument is taken as 1 silently, by less than 9e-16
// with a log line; beyond 1.1 the user is asked; the result is 0 or pi in all these cases.
double Acos(double x, ErrorPrompt& prompt);

// Arccosine in radians, clamped to 0 and pi at and beyond 1 and -1.
double AcosPlain(double x);

// Angle of the point (x, y) in radians, 0 to under 2 pi; (0, 0) gives pi / 2.
double Atn2(double x, double y, ErrorPrompt& prompt);

// Arctangent, with 2 pi added when it is negative.
double AtanPos(double t);

// Angle of the point (x, y), -pi to pi; arguments, quotient, arctangent and result in single precision; (0, 0) gives 0.
float Atan2Single(double x, double y);

// Degrees from radians, 0 to under 360. Whole and broken degrees are separated so that the fraction keeps its digits.
double Deg(double radians, ErrorPrompt& prompt);

inline double RadToDeg(double radians) {
  return radians / kPi15 * 180;
}
inline double DegToRad(double degrees) {
  return degrees * kPi15 / 180;
}
inline double Clamp(double x, double low, double high) {
  return std::max(low, std::min(x, high));
}
inline double MaxOf(double a, double b) {
  return a > b ? a : b;
}
inline double MinOf(double a, double b) {
  return a < b ? a : b;
}

}  // namespace orv
