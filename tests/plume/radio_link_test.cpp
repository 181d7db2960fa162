#include "plume/radio_link.h"

#include <gtest/gtest.h>

#include "numerics/text.h"
#include "support/scripted_dialogs.h"

namespace orv::testing {
namespace {

class RadioLinkTest : public ::testing::Test {
 protected:
  RadioLinkTest() : prompt(dialogs) {
    cells.CellData.Size(14, 5, 5, 120);
    cells.numberPrimWithVolumic = 4;
    names = {"", "T", "A", "Volume__2", "Volume__3"};
    for (int p = 3; p <= 4; ++p) {
      cells.CellData(p, 0, 0, 1) = 2;
      cells.CellData(p, 0, 0, 2) = 3;
      cells.CellData(p, 0, 0, 5) = 0.5;
    }
  }
  void Fill(int p, int i, double density, double area) {
    for (int j = 1; j <= 3; ++j) {
      cells.CellData(p, i, j, 13) = density;
      cells.CellData(p, i, j, 4) = area;
    }
  }
  RadioLink Run() { return PlasmaEffect(cells, names, 1, 3, 4, text, prompt); }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt;
  Cells cells;
  std::vector<std::string> names;
  std::string text;
};

TEST_F(RadioLinkTest, IntegralsByHand) {
  Fill(3, 1, 1e15, 0.1);
  Fill(3, 2, 3e15, 0.1);
  Fill(4, 1, 2e15, 0.2);
  Fill(4, 2, 0, 0.2);
  const RadioLink link = Run();
  // Each path has three steps of 0.5 m.
  EXPECT_DOUBLE_EQ(link.maxIntegral, 4.5e15);
  EXPECT_DOUBLE_EQ(link.minIntegral, 0);
  EXPECT_DOUBLE_EQ(link.area, 1.8);
  EXPECT_NEAR(link.meanIntegral, (0.3 * 1.5e15 + 0.3 * 4.5e15 + 0.6 * 3e15) / 1.8, 1);
  EXPECT_DOUBLE_EQ(link.maxSquare, 1.5 * 9e30);
  EXPECT_NEAR(link.meanDensity, (0.3 * 1e15 + 0.3 * 3e15 + 0.6 * 2e15) / 1.8, 1);
  // Running integrals along the path, restarted in each row.
  EXPECT_DOUBLE_EQ(cells.CellData(3, 1, 1, 24), 0.5e15);
  EXPECT_DOUBLE_EQ(cells.CellData(3, 1, 3, 24), 1.5e15);
  EXPECT_DOUBLE_EQ(cells.CellData(3, 2, 1, 24), 1.5e15);
  EXPECT_DOUBLE_EQ(cells.CellData(3, 2, 3, 25), 1.5 * 9e30);
}

TEST_F(RadioLinkTest, DispersionConstants) {
  EXPECT_NEAR(RadioLink::K1(1e16), 3.14159265358979 * 81 / 3e8 * 1e16, 1);
  EXPECT_NEAR(RadioLink::K2(1e31), 0.75 * 3.14159265358979 * 6561 / 3e8 * 1e31, 1e12);
  EXPECT_NEAR(RadioLink::PhaseShiftDeg(1e10, 0), 180 / 3.14159265358979, 1e-9);
}

TEST_F(RadioLinkTest, ALinkOutsideThePlumeHasNoEffect) {
  Fill(3, 1, 0, 0.1);
  const RadioLink link = Run();
  EXPECT_EQ(link.maxIntegral, 0);
  EXPECT_EQ(RadioLink::PhaseShiftDeg(RadioLink::K1(link.meanIntegral), RadioLink::K2(link.meanSquare)), 0);
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(RadioLinkTest, TheTextStaysInOneCell) {
  Fill(3, 1, 1e15, 0.1);
  Run();
  EXPECT_EQ(text.find(' '), std::string::npos);
  const std::string soft = SoftBlanks(text);
  EXPECT_EQ(soft.substr(0, 18), " Average #Volume =");
  EXPECT_NE(soft.find(" Average in the volume, max min    K1(rd.Hz) = "), std::string::npos) << soft;
  EXPECT_NE(soft.find(" K2(rd.Hz3) = "), std::string::npos);
  EXPECT_NE(soft.find(" Phase shift for Freq=10GHz "), std::string::npos);
  EXPECT_NE(soft.find(" deg ).              Average  integral(density.dl) "), std::string::npos);
  EXPECT_EQ(soft.substr(soft.size() - 6), " (m-2)");
}

}  // namespace
}  // namespace orv::testing
