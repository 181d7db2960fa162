#include "numerics/failure.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <type_traits>

namespace orv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

// 0: no failure.
int NumberOf(const std::function<double()>& operation, double* value = nullptr) {
  try {
    const double result = operation();
    if (value != nullptr) *value = result;
    return 0;
  } catch (const RuntimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
}

TEST(Failure, HasTheClassicNumbersAndDescriptions) {
  struct Row {
    FailureNumber failure;
    int number;
    const char* description;
  };
  for (const Row& row : {Row{FailureNumber::InvalidProcedureCall, 5, "Invalid procedure call or argument"},
                         Row{FailureNumber::Overflow, 6, "Overflow"},
                         Row{FailureNumber::SubscriptOutOfRange, 9, "Subscript out of range"},
                         Row{FailureNumber::DivisionByZero, 11, "Division by zero"},
                         Row{FailureNumber::TypeMismatch, 13, "Type mismatch"},
                         Row{FailureNumber::BadFileName, 52, "Bad file name or number"},
                         Row{FailureNumber::FileNotFound, 53, "File not found"},
                         Row{FailureNumber::FileAlreadyOpen, 55, "File already open"},
                         Row{FailureNumber::InputPastEndOfFile, 62, "Input past end of file"},
                         Row{FailureNumber::PermissionDenied, 70, "Permission denied"},
                         Row{FailureNumber::PathFileAccessError, 75, "Path/File access error"},
                         Row{FailureNumber::PathNotFound, 76, "Path not found"},
                         Row{FailureNumber::ObjectVariableNotSet, 91, "Object variable or With block variable not set"},
                         Row{FailureNumber::ObjectRequired, 424, "Object required"},
                         Row{FailureNumber::CannotCreateObject, 429, "ActiveX component can't create object"}}) {
    SCOPED_TRACE(row.number);
    EXPECT_EQ(static_cast<int>(row.failure), row.number);
    EXPECT_EQ(Describe(row.failure), row.description);
    const RuntimeFailure raised(row.failure);
    EXPECT_EQ(raised.number(), row.failure);
    EXPECT_EQ(raised.description(), row.description);
    EXPECT_STREQ(raised.what(), row.description);
  }
  EXPECT_EQ(static_cast<int>(FailureNumber::NamedArgumentNotFound), 448);
  EXPECT_EQ(static_cast<int>(FailureNumber::ApplicationDefined), 1004);
  EXPECT_EQ(static_cast<int>(FailureNumber::SpreadsheetBusy), 50290);
}

TEST(Failure, CarriesItsOwnDescription) {
  try {
    Raise(FailureNumber::FileNotFound, "no such thing");
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::FileNotFound);
    EXPECT_EQ(failure.description(), "no such thing");
  }
}

// A handler of failures must not take the abort answer for one.
TEST(Failure, AbortIsNoFailure) {
  EXPECT_FALSE((std::is_base_of_v<std::exception, ProgramEnd>));
  EXPECT_FALSE((std::is_base_of_v<RuntimeFailure, ProgramEnd>));
}

struct Operation {
  const char* name;
  std::function<double()> run;
  int number;
  double value;
};

void Check(std::initializer_list<Operation> operations) {
  for (const Operation& operation : operations) {
    SCOPED_TRACE(operation.name);
    double value = 0;
    EXPECT_EQ(NumberOf(operation.run, &value), operation.number);
    if (operation.number == 0) {
      EXPECT_DOUBLE_EQ(value, operation.value);
    }
  }
}

TEST(Failure, DivisionByZeroIs11AndZeroByZero6) {
  Check({{"6/4", [] { return Divide(6, 4); }, 0, 1.5},
         {"0/5", [] { return Divide(0, 5); }, 0, 0},
         {"1/0", [] { return Divide(1, 0); }, 11, 0},
         {"-1/0", [] { return Divide(-1, 0); }, 11, 0},
         {"1/-0", [] { return Divide(1, -0.0); }, 11, 0},
         {"0/0", [] { return Divide(0, 0); }, 6, 0},
         {"-0/0", [] { return Divide(-0.0, 0); }, 6, 0},
         {"max/0.5", [] { return Divide(kLargest, 0.5); }, 6, 0},
         {"tiny/huge", [] { return Divide(1e-300, 1e300); }, 0, 0}});
}

TEST(Failure, RootAndLogarithmOutOfRangeAre5) {
  Check({{"root 9", [] { return Root(9); }, 0, 3},
         {"root 0", [] { return Root(0); }, 0, 0},
         {"root -0", [] { return Root(-0.0); }, 0, 0},
         {"root -1e-300", [] { return Root(-1e-300); }, 5, 0},
         {"log 1", [] { return Logarithm(1); }, 0, 0},
         {"log 0", [] { return Logarithm(0); }, 5, 0},
         {"log -1", [] { return Logarithm(-1); }, 5, 0}});
}

TEST(Failure, PowersAndExponentials) {
  Check({{"e^0", [] { return Exponential(0); }, 0, 1},
         {"e^710", [] { return Exponential(710); }, 6, 0},
         {"e^-1000", [] { return Exponential(-1000); }, 0, 0},
         {"2^10", [] { return Power(2, 10); }, 0, 1024},
         {"0^0", [] { return Power(0, 0); }, 0, 1},
         {"0^2", [] { return Power(0, 2); }, 0, 0},
         {"0^-1", [] { return Power(0, -1); }, 5, 0},
         {"-2^3", [] { return Power(-2, 3); }, 0, -8},
         {"-2^0.5", [] { return Power(-2, 0.5); }, 5, 0},
         {"10^400", [] { return Power(10, 400); }, 6, 0},
         {"10^-400", [] { return Power(10, -400); }, 0, 0}});
}

TEST(Failure, FiniteStopsWhatLeftTheRange) {
  Check({{"1", [] { return Finite(1); }, 0, 1},
         {"inf", [] { return Finite(kInfinity); }, 6, 0},
         {"-inf", [] { return Finite(-kInfinity); }, 6, 0},
         {"nan", [] { return Finite(std::nan("")); }, 6, 0}});
}

}  // namespace
}  // namespace orv
