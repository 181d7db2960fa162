#include "numerics/angles.h"

#include <cmath>

#include "numerics/number_format.h"

namespace orv {
namespace {

constexpr double kSilentExcess = 4e-16;
constexpr double kLoggedExcess = 9e-16;

double EndOfRange(double x) {
  return x > 0 ? 0 : 4 * std::atan(1.0);
}

}  // namespace

double Acos(double x, ErrorPrompt& prompt) {
  if (x == 1) return 0;
  if (x == -1) return 4 * std::atan(1.0);
  const double excess = std::abs(x) - 1;
  if (excess >= 0 && excess < kSilentExcess) return EndOfRange(x);
  if (excess >= kSilentExcess && excess < kLoggedExcess) {
    prompt("_Acos arrondi faute Abs(cc) - 1# < 400E-18      " + FormatNumber(1 - std::abs(x), "##0.0E+00"));
    return EndOfRange(x);
  }
  try {
    return std::atan(Divide(-x, Root(1 - x * x))) + (4 * std::atan(1.0)) / 2;
  } catch (const RuntimeFailure&) {
    if (excess > 0.1) prompt("Acosfaute Acos d'un cos > 1 ? -> arrondi à 1 " + NumberText(x));
    return EndOfRange(x);
  }
}

double AcosPlain(double x) {
  if (x >= 1) return 0;
  if (x <= -1) return std::atan(1.0) * 4;
  return std::atan(-x / std::sqrt(1 - x * x)) + 2 * std::atan(1.0);
}

double AtanPos(double t) {
  const double angle = std::atan(t);
  return angle < 0 ? angle + 2 * kPi15 : angle;
}

double Atn2(double x, double y, ErrorPrompt& prompt) {
  double angle = 0;
  if (x != 0) {
    try {
      angle = AtanPos(Divide(y, x));
    } catch (const RuntimeFailure&) {
      prompt("Atn2faute");
    }
  } else {
    angle = y >= 0 ? kPi15 / 2 : 3 * kPi15 / 2;
  }
  if (x < 0) angle = y > 0 ? angle - kPi15 : angle + kPi15;
  if (angle < 0) angle += 2 * kPi15;
  return angle;
}

float Atan2Single(double x, double y) {
  const auto sx = static_cast<float>(x);
  const auto sy = static_cast<float>(y);
  const auto pi = static_cast<float>(kPi15);
  if (sy != 0) {
    if (sx == 0) return sy < 0 ? -pi / 2 : pi / 2;
    if (sx > 0) return std::atan(sy / sx);
    const float inner = pi - std::atan(std::abs(sy) / std::abs(sx));
    return sy < 0 ? -inner : inner;
  }
  return sx < 0 ? 3.1415927F : 0.0F;
}

double Deg(double radians, ErrorPrompt& prompt) {
  if (std::abs(radians) <= 4.45e-16) return 0;
  try {
    const double degrees = Finite(RadToDeg(radians));
    const double turns = Int(degrees / 360);
    const double base = CInt(degrees / 360) > turns ? turns : turns - 1;
    const double rest = degrees - base * 360;
    const double whole = Int(rest);
    const double result = (rest - whole) + Mod(whole, 360);
    if (result < 0 || result >= 360) prompt("DegEst < 0 Or DegEst >= 360");
    if (result == 360) prompt("DegEst = 360");
    const double reverse = ((turns * 360 + result) / 180) * kPi15 - radians;
    if (std::abs(reverse) > 1e-07) prompt("Deg Verification inverse" + SignificantText(reverse, 5));
    return result;
  } catch (const RuntimeFailure&) {
    prompt(NumberText(radians) + "degfaute");
    return 0;
  }
}

}  // namespace orv
