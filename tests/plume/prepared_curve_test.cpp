#include "plume/prepared_curve.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

class PreparedCurveTest : public ::testing::Test {
 protected:
  void ExpectSame(const XYTable& table, const std::vector<double>& places) {
    const PreparedCurve curve(table);
    EXPECT_EQ(curve.count(), table.count());
    for (const double x : places) {
      const double expected = Interpolate(table, x, prompt);
      const double value = curve.At(x, prompt);
      EXPECT_EQ(value, expected) << x;
    }
  }
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
};

TEST_F(PreparedCurveTest, AgreesWithTheScanOfAllRows) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> whole(0, 12);
  std::uniform_real_distribution<double> broken(0, 12);
  for (int run = 0; run < 300; ++run) {
    XYTable table;
    std::vector<double> places = {0, 0.5, 3, 12, 13, 1e9, 1e-300};
    const int rows = 1 + whole(random);
    for (int row = 0; row < rows; ++row) {
      const double x = run % 3 == 0 ? broken(random) : whole(random);
      table.Add(run % 7 == 0 ? x - 2 : x, broken(random) - 4);
      places.push_back(x);
      places.push_back(x - 2);
      places.push_back(std::nextafter(x, 100));
      places.push_back(broken(random));
    }
    ExpectSame(table, places);
  }
}

TEST_F(PreparedCurveTest, StepsFlatEndsAndTheRowAtZero) {
  XYTable table;
  table.Add(0, 5);
  table.Add(10, 1);
  table.Add(10, 3);
  table.Add(20, 7);
  const PreparedCurve curve(table);
  EXPECT_EQ(curve.At(5, prompt), 1);   // the row at 0 is none
  EXPECT_EQ(curve.At(10, prompt), 1);  // the first of the step
  EXPECT_EQ(curve.At(15, prompt), 4);
  EXPECT_EQ(curve.At(30, prompt), 7);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(PreparedCurveTest, AnEmptyCurveIsTold) {
  EXPECT_EQ(PreparedCurve(XYTable()).At(5, prompt), 0);
  ASSERT_EQ(dialogs.boxes.size(), 2U);
  EXPECT_EQ(dialogs.boxes[0].text, "Warning Interpolation This should never occur Except big wrong database");
}

}  // namespace
}  // namespace orv::testing
