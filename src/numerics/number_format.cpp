#include "numerics/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <vector>

#include "numerics/failure.h"

namespace orv {

double Int(double x) {
  return std::floor(x);
}

double CInt(double x) {
  return std::nearbyint(x);
}

double Mod(double a, double b) {
  const double divisor = CInt(b);
  if (divisor == 0) Raise(FailureNumber::DivisionByZero);
  return std::fmod(CInt(a), divisor);
}

double Sgn(double x) {
  return x > 0 ? 1 : (x < 0 ? -1 : 0);
}

namespace {

// The decimal digits of |value|, d1 d2 d3 ..., with value = 0.d1d2d3... * 10^point.
struct Decimal {
  std::string digits;
  int point = 0;
};

// Rounded to 15 digits first, as numbers are shown, so that 0.15 is a half and not a hair below it.
Decimal ToDecimal(double value) {
  char buffer[40];
  const auto written =
      std::to_chars(buffer, buffer + sizeof buffer, std::abs(value), std::chars_format::scientific, 14);
  const std::string text(buffer, written.ptr);
  const std::size_t e = text.find('e');
  Decimal decimal;
  decimal.digits = text.substr(0, 1) + text.substr(2, e - 2);
  decimal.point = std::atoi(text.c_str() + e + 1) + 1;
  if (value == 0) {
    decimal.digits = "0";
    decimal.point = 0;
  }
  return decimal;
}

// Keeps `places` digits behind the decimal point, halves away from zero.
void RoundTo(Decimal& decimal, int places) {
  const int keep = decimal.point + places;
  if (keep >= static_cast<int>(decimal.digits.size())) return;
  if (keep < 0) {
    decimal = {"0", 0};
    return;
  }
  const bool up = decimal.digits[static_cast<std::size_t>(keep)] >= '5';
  decimal.digits.resize(static_cast<std::size_t>(keep));
  if (!up) return;
  int k = keep - 1;
  while (k >= 0 && decimal.digits[static_cast<std::size_t>(k)] == '9') {
    decimal.digits[static_cast<std::size_t>(k--)] = '0';
  }
  if (k >= 0) {
    ++decimal.digits[static_cast<std::size_t>(k)];
  } else {
    decimal.digits.insert(decimal.digits.begin(), '1');
    ++decimal.point;
  }
}

bool IsZero(const Decimal& decimal) {
  return decimal.digits.find_first_not_of('0') == std::string::npos;
}

char DigitAt(const Decimal& decimal, int place) {  // place 0: ones, 1: tens, -1: tenths
  const int index = decimal.point - 1 - place;
  if (index < 0 || index >= static_cast<int>(decimal.digits.size())) return '0';
  return decimal.digits[static_cast<std::size_t>(index)];
}

// One section of a mask: how many places stand in front of and behind the point, and where an exponent begins.
struct Mask {
  std::string text;
  int before = 0;
  int behind = 0;
  int fixedBefore = 0;  // places that are always filled, counted from the first "0" to the point
  bool point = false;
  std::size_t exponent = std::string::npos;
  int exponentPlaces = 0;
  int exponentDigits = 0;  // printed always
};

Mask ReadMask(std::string_view text) {
  Mask mask;
  mask.text = std::string(text);
  bool zeroSeen = false;
  for (std::size_t k = 0; k < text.size(); ++k) {
    const char c = text[k];
    if (c == 'E' && k + 1 < text.size() && (text[k + 1] == '+' || text[k + 1] == '-')) {
      mask.exponent = k;
      for (std::size_t m = k + 2; m < text.size() && (text[m] == '0' || text[m] == '#'); ++m) {
        ++mask.exponentPlaces;
        if (text[m] == '0') ++mask.exponentDigits;
      }
      break;
    }
    if (c == '.') mask.point = true;
    if (c != '0' && c != '#') continue;
    if (mask.point) {
      ++mask.behind;
    } else {
      ++mask.before;
      zeroSeen = zeroSeen || c == '0';
      if (zeroSeen) ++mask.fixedBefore;
    }
  }
  return mask;
}

std::string Fill(const Mask& mask, const Decimal& decimal, int exponent, bool negative) {
  std::string out;
  int place = mask.before - 1;
  int last = -mask.behind;  // the lowest place that is printed: "#" places behind the last digit are dropped
  while (last < 0 && DigitAt(decimal, last) == '0') ++last;
  int placeBehind = -1;
  bool started = false;
  bool behindPoint = false;
  const auto sign = [&] {
    if (negative) out.push_back('-');
    negative = false;
  };
  for (std::size_t k = 0; k < mask.text.size(); ++k) {
    const char c = mask.text[k];
    if (k == mask.exponent) {
      sign();
      out.push_back('E');
      if (exponent < 0 || mask.text[k + 1] == '+') out.push_back(exponent < 0 ? '-' : '+');
      const std::string digits = std::to_string(std::abs(exponent));
      out.append(static_cast<std::size_t>(std::max(0, mask.exponentDigits - static_cast<int>(digits.size()))), '0');
      out.append(digits);
      k += 1 + static_cast<std::size_t>(mask.exponentPlaces);
      continue;
    }
    if (c == '.' && !behindPoint) {
      sign();
      if (!started && mask.before == 0) {
        for (int p = decimal.point - 1; p >= 0; --p) out.push_back(DigitAt(decimal, p));
      }
      out.push_back('.');
      behindPoint = true;
    } else if ((c == '0' || c == '#') && !behindPoint) {
      sign();
      if (!started) {
        for (int p = decimal.point - 1; p >= mask.before; --p) out.push_back(DigitAt(decimal, p));
      }
      const bool needed = decimal.point > mask.before || decimal.point - 1 >= place;
      if (started || needed || place < mask.fixedBefore) {
        if (!IsZero(decimal) || place < mask.fixedBefore) {
          out.push_back(DigitAt(decimal, place));
          started = true;
        }
      }
      --place;
    } else if (c == '0' || c == '#') {
      // A "0" further right keeps the "#" places in front of it.
      const bool zeroBehind = mask.text.find('0', k) < mask.exponent;
      if (placeBehind >= last || zeroBehind) out.push_back(DigitAt(decimal, placeBehind));
      --placeBehind;
    } else {
      out.push_back(c);
    }
  }
  return out;
}

}  // namespace

std::string NumberText(double value) {
  if (value == 0) return "0";
  if (!std::isfinite(value)) return value > 0 ? "INF" : (value < 0 ? "-INF" : "NAN");
  Decimal decimal = ToDecimal(value);
  while (decimal.digits.size() > 1 && decimal.digits.back() == '0') decimal.digits.pop_back();
  const int count = static_cast<int>(decimal.digits.size());
  std::string out = value < 0 ? "-" : "";
  if (decimal.point > 15 || decimal.point < -3) {
    out.push_back(decimal.digits[0]);
    if (count > 1) out.append(".").append(decimal.digits.substr(1));
    char exponent[16];
    std::snprintf(exponent, sizeof exponent, "E%+03d", decimal.point - 1);
    return out.append(exponent);
  }
  if (decimal.point <= 0) {
    return out.append("0.").append(static_cast<std::size_t>(-decimal.point), '0').append(decimal.digits);
  }
  if (count <= decimal.point) {
    return out.append(decimal.digits).append(static_cast<std::size_t>(decimal.point - count), '0');
  }
  const auto split = static_cast<std::size_t>(decimal.point);
  return out.append(decimal.digits, 0, split).append(".").append(decimal.digits, split);
}

std::string ExactText(double value) {
  char buffer[40];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 17);
  return std::string(buffer, end.ptr);
}

std::string FormatNumber(double value, std::string_view mask) {
  if (!std::isfinite(value)) return NumberText(value);
  const std::size_t semicolon = mask.find(';');
  bool negative = std::signbit(value) && value != 0;
  std::string_view section = mask.substr(0, semicolon);
  if (semicolon != std::string_view::npos && negative) {
    section = mask.substr(semicolon + 1);
    negative = false;
  }
  const Mask parsed = ReadMask(section);
  Decimal decimal = ToDecimal(value);
  int exponent = 0;
  if (parsed.exponent != std::string::npos && value != 0) {
    const int places = std::max(parsed.before, parsed.before + parsed.behind == 0 ? 1 : parsed.before);
    exponent = decimal.point - places;
    decimal.point = places;
    RoundTo(decimal, parsed.behind);
    if (decimal.point > places) {  // 9.99 became 10.0
      ++exponent;
      decimal.point = places;
    }
  } else {
    RoundTo(decimal, parsed.behind);
  }
  if (IsZero(decimal)) negative = false;
  return Fill(parsed, decimal, exponent, negative);
}

std::string SignificantText(double value, int digits) {
  if (value == 0) return FormatNumber(0, " 0. ");
  if (!std::isfinite(value)) return " " + NumberText(value) + " ";
  const double magnitude = std::abs(value);
  int e = static_cast<int>(Int(std::log(magnitude) / std::log(10.0)));
  double unit = std::pow(10.0, e - digits + 1);
  if (unit == 0) unit = std::numeric_limits<double>::denorm_min();  // the last digits a double can hold
  const double rounded = Sgn(value) * unit * Int(magnitude / unit + 0.5);
  const double half = digits / 2.0;
  const bool fixed = e >= -(half + 1) && e - digits <= half;
  if (!fixed) e = ((e % 3) + 3) % 3;

  int lowest = e - digits;
  int highest = e;
  if (lowest < 0 && e < 0) highest = 0;
  if (lowest > 0) lowest = 0;
  std::string mask;
  for (int place = lowest; place <= highest; ++place) mask.insert(0, place == 0 ? "0." : "#");
  if (!fixed) mask += "E+00";
  return FormatNumber(rounded, " " + mask + " ; -" + mask + " ");
}

}  // namespace orv
