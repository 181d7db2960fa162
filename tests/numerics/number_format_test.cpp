#include "numerics/number_format.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "numerics/failure.h"

namespace orv {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

struct TwoNumbers {
  double in;
  double out;
};

TEST(NumberFormat, IntIsTheFloor) {
  for (const TwoNumbers& row : {TwoNumbers{2.7, 2}, {-2.1, -3}, {-2, -2}, {0, 0}, {1e300, 1e300}}) {
    SCOPED_TRACE(row.in);
    EXPECT_EQ(Int(row.in), row.out);
  }
}

TEST(NumberFormat, CIntRoundsHalvesToEven) {
  for (const TwoNumbers& row :
       {TwoNumbers{0.5, 0}, {1.5, 2}, {2.5, 2}, {3.5, 4}, {-0.5, 0}, {-1.5, -2}, {2.4999, 2}, {2.5001, 3}, {7, 7}}) {
    SCOPED_TRACE(row.in);
    EXPECT_EQ(CInt(row.in), row.out);
  }
}

TEST(NumberFormat, ModWorksOnRoundedNumbers) {
  struct Row {
    double a, b, expected;
  };
  for (const Row& row : {Row{7, 3, 1}, Row{-7, 3, -1}, Row{7, -3, 1}, Row{-4, 3, -1}, Row{5.5, 4, 2}, Row{6.5, 4, 2},
                         Row{10, 2.5, 0}, Row{10, 3.5, 2}}) {
    SCOPED_TRACE(std::to_string(row.a) + " Mod " + std::to_string(row.b));
    EXPECT_EQ(Mod(row.a, row.b), row.expected);
  }
  for (const double divisor : {0.0, 0.5, -0.4}) {
    SCOPED_TRACE(divisor);
    try {
      Mod(5, divisor);
      ADD_FAILURE();
    } catch (const RuntimeFailure& failure) {
      EXPECT_EQ(failure.number(), FailureNumber::DivisionByZero);
    }
  }
}

TEST(NumberFormat, SgnIsMinusOneZeroOrOne) {
  EXPECT_EQ(Sgn(-1e-300), -1);
  EXPECT_EQ(Sgn(0), 0);
  EXPECT_EQ(Sgn(-0.0), 0);
  EXPECT_EQ(Sgn(3), 1);
}

TEST(NumberFormat, GivesNumbersAsText) {
  struct Row {
    double value;
    const char* expected;
  };
  for (const Row& row :
       {Row{0, "0"}, Row{-0.0, "0"}, Row{0.1, "0.1"}, Row{-2.5, "-2.5"}, Row{100, "100"}, Row{1e-5, "1E-05"},
        Row{1.5e20, "1.5E+20"}, Row{-1.25e-7, "-1.25E-07"}, Row{0.1 + 0.2, "0.3"}, Row{1.0 / 3, "0.333333333333333"},
        Row{2.0 / 3, "0.666666666666667"}, Row{123456789012345, "123456789012345"}, Row{1e15, "1E+15"},
        Row{1e300, "1E+300"}, Row{0.9999999999999999, "1"}, Row{99.9999999999999999, "100"}}) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(NumberText(row.value), row.expected);
  }
}

TEST(NumberFormat, ExactTextReadsBackAsTheSameNumber) {
  for (const double value : {0.1, 1.0 / 3, -2.5e-300, 1.60218e-19, 6.02214e+23, 5e-324,
                             std::numeric_limits<double>::max(), 0.0, 123456789.123456789}) {
    const std::string text = ExactText(value);
    SCOPED_TRACE(text);
    EXPECT_EQ(std::strtod(text.c_str(), nullptr), value);
  }
}

TEST(NumberFormat, FillsMasks) {
  struct Row {
    double value;
    const char* mask;
    const char* expected;
  };
  for (const Row& row : {Row{0, "#", ""},
                         Row{13, "#", "13"},
                         Row{0.4, "#", ""},
                         Row{0.5, "#", "1"},
                         Row{12.5, "#", "13"},
                         Row{-13, "#", "-13"},
                         Row{0, "#0", "0"},
                         Row{1048576, "#0", "1048576"},
                         Row{5, "00", "05"},
                         Row{123, "00", "123"},
                         Row{0, "00.00", "00.00"},
                         Row{3, "00.00", "03.00"},
                         Row{20, "00.00", "20.00"},
                         Row{100, "00.00", "100.00"},
                         Row{2024, "0000", "2024"},
                         Row{1.5, "#.### ", "1.5 "},
                         Row{0.25, "#.### ", ".25 "},
                         Row{12, "#.### ", "12. "},
                         Row{0, "#.### ", ". "},
                         Row{-1.5, "#.### ", "-1.5 "},
                         Row{1234.56789, "#.### ", "1234.568 "},
                         Row{0, " 0. ", " 0. "},
                         Row{123.456, "##0.##", "123.46"},
                         Row{0.5, "##0.########              ", "0.5              "},
                         Row{12.345, "          ##0.##             ", "          12.35             "},
                         Row{0.07, "0.##", "0.07"},
                         Row{1, "0.###", "1."},
                         Row{1234567, "0", "1234567"}}) {
    SCOPED_TRACE(std::to_string(row.value) + " by \"" + row.mask + "\"");
    EXPECT_EQ(FormatNumber(row.value, row.mask), row.expected);
  }
}

TEST(NumberFormat, RoundsHalvesAwayFromZero) {
  struct Row {
    double value;
    const char* mask;
    const char* expected;
  };
  for (const Row& row :
       {Row{0.5, "0", "1"}, Row{1.5, "0", "2"}, Row{2.5, "0", "3"}, Row{-2.5, "0", "-3"}, Row{0.25, "0.0", "0.3"},
        Row{-0.25, "0.0", "-0.3"}, Row{0.005, "0.00", "0.01"}, Row{1.005, "0.00", "1.01"}, Row{2.675, "0.00", "2.68"},
        Row{0.285, "0.00", "0.29"}, Row{0.0125, "#.### ", ".013 "}, Row{9.995, "0.00", "10.00"},
        Row{999.5, "#", "1000"}, Row{0.4999, "0", "0"}, Row{2.4999999, "0", "2"}}) {
    SCOPED_TRACE(std::to_string(row.value) + " by \"" + row.mask + "\"");
    EXPECT_EQ(FormatNumber(row.value, row.mask), row.expected);
  }
}

TEST(NumberFormat, FillsAllPlacesBeforeThePointWhenThereIsAnExponent) {
  struct Row {
    double value;
    const char* mask;
    const char* expected;
  };
  for (const Row& row :
       {Row{12345, "0.00E+00", "1.23E+04"}, Row{12345, "##0.#E+00", "123.5E+02"}, Row{0.00012, "##0.#E+00", "120.E-06"},
        Row{1, "##0.###E+00", "100.E-02"}, Row{0, "0.###E+00", "0.E+00"}, Row{9.996, "0.00E+00", "1.00E+01"},
        Row{-12345, "0.00E+00", "-1.23E+04"}, Row{1.5e-120, "0.00E+00", "1.50E-120"},
        Row{1.5e120, "#0.0E+00", "15.0E+119"}}) {
    SCOPED_TRACE(std::to_string(row.value) + " by \"" + row.mask + "\"");
    EXPECT_EQ(FormatNumber(row.value, row.mask), row.expected);
  }
}

// "#" is a digit when it is needed, in an exponent too.
TEST(NumberFormat, DoesNotPadAnExponentOfHashes) {
  EXPECT_EQ(FormatNumber(12345, "##0.###E+##   "), "123.45E+2   ");
  EXPECT_EQ(FormatNumber(1.5e-12, "0.0E+##"), "1.5E-12");
}

TEST(NumberFormat, TakesTheSecondMaskForNegativeNumbers) {
  EXPECT_EQ(FormatNumber(1.25, " #0.## ; -#0.## "), " 1.25 ");
  EXPECT_EQ(FormatNumber(-1.25, " #0.## ; -#0.## "), " -1.25 ");
  EXPECT_EQ(FormatNumber(-7, "0;(0)"), "(7)");
}

TEST(NumberFormat, SignificantTextKeepsTheDigitsAskedFor) {
  struct Row {
    double value;
    int digits;
    const char* expected;
  };
  for (const Row& row : {Row{0, 3, " 0. "},
                         Row{-0.0, 3, " 0. "},
                         Row{1, 3, " 1. "},
                         Row{-1, 3, " -1. "},
                         Row{1.234567, 3, " 1.23 "},
                         Row{-1.236, 3, " -1.24 "},
                         Row{12.3456, 3, " 12.3 "},
                         Row{123.456, 3, " 123. "},
                         Row{1234.56, 3, " 1230. "},
                         Row{12345.6, 3, " 12300. "},
                         Row{123456, 3, " 123.E+03 "},
                         Row{1234567, 3, " 1.23E+06 "},
                         Row{12345678, 3, " 12.3E+06 "},
                         Row{0.5, 3, " 0.5 "},
                         Row{0.123456, 3, " 0.123 "},
                         Row{0.0123456, 3, " 0.0123 "},
                         Row{0.00123456, 3, " 1.23E-03 "},
                         Row{0.000123456, 3, " 123.E-06 "},
                         Row{0.0000123456, 3, " 12.3E-06 "},
                         Row{-0.00123456, 3, " -1.23E-03 "},
                         Row{1.5e-30, 3, " 1.5E-30 "},
                         Row{1.5e100, 3, " 15.E+99 "},
                         Row{2.5e120, 3, " 2.5E+120 "},
                         Row{999.6, 3, " 1000. "},
                         Row{9.996, 3, " 10. "},
                         Row{0.9996, 3, " 1. "},
                         Row{2.5, 1, " 3. "},
                         Row{55, 1, " 60. "},
                         Row{0.05, 2, " 0.05 "},
                         Row{0.00123456, 4, " 0.001235 "},
                         Row{0.000123456, 4, " 123.5E-06 "},
                         Row{1234567, 4, " 1235000. "},
                         Row{12345678, 4, " 12.35E+06 "},
                         Row{0.1, 15, " 0.1 "}}) {
    SCOPED_TRACE(NumberText(row.value) + " with " + std::to_string(row.digits) + " digits");
    EXPECT_EQ(SignificantText(row.value, row.digits), row.expected);
  }
}

// The level tables of the view send a number through its text and back.
TEST(NumberFormat, SignificantTextReadsBackAsTheRoundedNumber) {
  for (double value = 1.2345678e-20; value < 1e20; value *= 7.3) {
    const std::string text = SignificantText(value, 3);
    SCOPED_TRACE(text);
    EXPECT_NEAR(std::strtod(text.c_str(), nullptr) / value, 1, 0.005001);
  }
}

TEST(NumberFormat, SurvivesAbsurdNumbers) {
  for (const double value : {kInfinity, -kInfinity, std::nan(""), kLargest, 5e-324, -5e-324}) {
    SCOPED_TRACE(value);
    EXPECT_FALSE(NumberText(value).empty());
    EXPECT_FALSE(ExactText(value).empty());
    for (const char* mask : {"", "#", "0.00E+00", ";", "0;", ";;;", "E+00", ".", "E+", "abc", "#.#.#", "0E-0E+0"}) {
      SCOPED_TRACE(mask);
      EXPECT_NO_THROW(FormatNumber(value, mask));
      EXPECT_NO_THROW(FormatNumber(-1234.5, mask));
    }
  }
  EXPECT_EQ(FormatNumber(1e300, "#0").size(), 301U);
  EXPECT_EQ(FormatNumber(1, std::string(20000, '0')).size(), 20000U);
}

// In a process of its own: a conversion out of range stops an instrumented program.
TEST(NumberFormat, SignificantTextSurvivesAbsurdNumbers) {
  for (const double value : {kInfinity, std::nan(""), -kLargest, 5e-324}) {
    for (const int digits : {0, 3, 400}) {
      SCOPED_TRACE(NumberText(value) + " with " + std::to_string(digits) + " digits");
      const auto run = [&] {
        SignificantText(value, digits);
        std::exit(0);
      };
      EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
    }
  }
}

// Smallest and largest numbers keep their size.
TEST(NumberFormat, SignificantTextReachesTheEndsOfTheRange) {
  EXPECT_EQ(SignificantText(1.7e308, 3), " 170.E+306 ");
  EXPECT_EQ(SignificantText(-2.5e-307, 3), " -250.E-309 ");
}

// A program that took the user's locale over must not change a single number.
TEST(NumberFormat, WritesAPointInEveryLocale) {
  const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
  // The first of these that is installed; a machine without any checks the plain locale.
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8", "de_DE", "fr_FR"}) {
    if (std::setlocale(LC_NUMERIC, name) != nullptr && *std::localeconv()->decimal_point == ',') {
      break;
    }
  }
  const std::string exact = ExactText(1.5);
  const std::string number = NumberText(1.5);
  const std::string formatted = FormatNumber(1.5, "0.00");
  const std::string significant = SignificantText(1.5, 3);
  std::setlocale(LC_NUMERIC, saved.c_str());
  EXPECT_EQ(exact, "1.5");
  EXPECT_EQ(number, "1.5");
  EXPECT_EQ(formatted, "1.50");
  EXPECT_EQ(significant, " 1.5 ");
}

}  // namespace
}  // namespace orv
