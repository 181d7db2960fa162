#pragma once

#include <cmath>
#include <exception>
#include <string>

// Run-time failures. A run survives them: the statement that fails is left undone and the next one is executed, so a
// variable keeps the value it had before. Results depend on this, hence the named helpers below, which are the only
// places where arithmetic raises. Plain operators are for values that cannot fail.
namespace orv {

enum class FailureNumber : int {
  InvalidProcedureCall = 5,
  Overflow = 6,
  SubscriptOutOfRange = 9,
  DivisionByZero = 11,
  TypeMismatch = 13,
  BadFileName = 52,
  FileNotFound = 53,
  FileAlreadyOpen = 55,
  InputPastEndOfFile = 62,
  PermissionDenied = 70,
  PathFileAccessError = 75,
  PathNotFound = 76,
  ObjectVariableNotSet = 91,
  ObjectRequired = 424,
  CannotCreateObject = 429,
  NamedArgumentNotFound = 448,
  ApplicationDefined = 1004,
  SpreadsheetBusy = 50290
};

// The classic English description of a failure number.
std::string Describe(FailureNumber number);

class RuntimeFailure : public std::exception {
 public:
  explicit RuntimeFailure(FailureNumber number) : RuntimeFailure(number, Describe(number)) {}
  RuntimeFailure(FailureNumber number, std::string description)
      : number_(number), description_(std::move(description)) {}
  FailureNumber number() const { return number_; }
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  FailureNumber number_;
  std::string description_;
};

// The abort answer of a question. It is no std::exception, so no handler of failures can take it for one; main alone
// catches it, after every open file has been closed by its owner's destructor.
struct ProgramEnd {};

// Raises a failure; kept out of line so that the checks before it stay small.
[[noreturn]] void Raise(FailureNumber number);
[[noreturn]] void Raise(FailureNumber number, std::string description);

// a / b. Failure 11 for b = 0, but 6 for 0 / 0 and for a result too large for a double.
inline double Divide(double a, double b) {
  if (b == 0) Raise(a == 0 ? FailureNumber::Overflow : FailureNumber::DivisionByZero);
  const double quotient = a / b;
  if (!std::isfinite(quotient)) Raise(FailureNumber::Overflow);
  return quotient;
}

// Square root. Failure 5 below 0 (and for a value that is no number).
inline double Root(double x) {
  if (!(x >= 0)) Raise(FailureNumber::InvalidProcedureCall);
  return std::sqrt(x);
}

// Natural logarithm. Failure 5 at 0 and below.
inline double Logarithm(double x) {
  if (!(x > 0)) Raise(FailureNumber::InvalidProcedureCall);
  return std::log(x);
}

// e^x. Failure 6 when the result is too large.
inline double Exponential(double x) {
  const double value = std::exp(x);
  if (!std::isfinite(value)) Raise(FailureNumber::Overflow);
  return value;
}

// base^exponent. Failure 5 for a negative base with a broken exponent and for 0 to a negative power, 6 for a result
// too large. 0^0 is 1.
inline double Power(double base, double exponent) {
  if (base < 0 && exponent != std::floor(exponent)) Raise(FailureNumber::InvalidProcedureCall);
  if (base == 0 && exponent < 0) Raise(FailureNumber::InvalidProcedureCall);
  const double value = std::pow(base, exponent);
  if (!std::isfinite(value)) Raise(FailureNumber::Overflow);
  return value;
}

// Passes a finite value on; failure 6 for one that left the range of a double.
inline double Finite(double value) {
  if (!std::isfinite(value)) Raise(FailureNumber::Overflow);
  return value;
}

}  // namespace orv
