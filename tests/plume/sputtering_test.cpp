#include "plume/sputtering.h"

#include <cmath>
#include <gtest/gtest.h>

#include "numerics/number_format.h"
#include "plume/sputter_model.h"
#include "reference/plain_sputter_yield.h"

namespace orv::testing {
namespace {

const char* const kAbort = "Do you want to abort? See Hallam if the error cannot be solved ";
const char* const kOnePrimitive = "Error fautea_SpaceApplicationEffectSPUTTERINGonePrimitive";
const char* const kEffect = "Error fautea_SpaceApplicationEffectSPUTTERING";

// A plate 1 m above the thruster, facing it.
const std::string kFacing = " R X 180 T 0 0 1";
SputterModel FacingPlate(const std::string& cells = "1 1", const std::string& material = "silver",
                         const std::string& tilt = " R X 180") {
  return SputterModel(
      {{"HT", kTestThruster}, {material, "Plate rect size 0.2 0.1 cells " + cells + tilt + " T 0 0 1"}});
}

// What one cell should show, by the plain forms of the yield.
struct ByHand {
  double speed = 0, yield = 0, beta = 0;
};
ByHand ExpectedOf(SputterModel& model, int p, int i, int j, const std::string& name, double incidenceDeg,
                  std::array<double, 2> shares = {0.8, 0.2}) {
  const auto& names = model.materials.MaterialNames;
  const int m = static_cast<int>(std::find(names.begin(), names.end(), name) - names.begin());
  const auto& table = model.materials.MaterialTable;
  YieldRecords records;
  records.YieldRows.Size({Bounds{1, 2}, Bounds{0, 6}, Bounds{1, 5}});
  for (int gas = 1; gas <= 2; ++gas) {
    const int first = 9 + 40 * (gas - 1);
    const double count = table(m, first - 1).number();
    records.YieldRowCount[static_cast<std::size_t>(gas)] = static_cast<int>(count);
    for (int k = 1; k <= std::abs(static_cast<int>(count)); ++k) {
      for (int f = 1; f <= 5; ++f) records.YieldRows(gas, k, f) = table(m, first + 5 * (k - 1) + f - 1);
    }
  }
  reference::PlainYieldAtEnergy at;
  ByHand expected;
  for (int species = 1; species <= 2; ++species) {
    const double share = shares[static_cast<std::size_t>(species) - 1];
    if (share == 0) continue;
    reference::PlainEnergyStage(model.Q(p, i, j, 16) * species, records, at, model.tables, model.reader);
    const double Y = reference::PlainYield(incidenceDeg, species, at, model.MaiOrigine, model.reader);
    const double flux = model.Q(p, i, j, 15) / (model.constants.ElementaryCharge * species) * Y * share *
                        std::cos(incidenceDeg * kPi15 / 180);
    expected.speed += flux * (table(m, 3).number() / 1000) / model.constants.AvogadroNumber / table(m, 2).number();
    expected.yield += Y;
    expected.beta += at.field[static_cast<std::size_t>(species)][4] * share;
  }
  return expected;
}
void ExpectCell(SputterModel& model, int p, int i, int j, const ByHand& expected) {
  EXPECT_NEAR(model.Q(p, i, j, 19), expected.speed, 1e-13 * expected.speed) << p << " " << i << " " << j;
  EXPECT_NEAR(model.Q(p, i, j, 59), expected.yield, 1e-13 * expected.yield) << p << " " << i << " " << j;
  EXPECT_NEAR(model.Q(p, i, j, 62), expected.beta, 1e-13 * expected.beta) << p << " " << i << " " << j;
}

TEST(Sputtering, NormalIncidenceByHand) {
  SputterModel model = FacingPlate();
  model.Build();
  model.Run();
  // Between the rows at 150 and 700 eV, by the root of the energy.
  const auto between = [](double E, double low, double high) {
    const double s1 = std::sqrt(150.0);
    return low + (high - low) / (std::sqrt(700.0) + 0.001 - s1) * (std::sqrt(E) - s1);
  };
  const double Y1 = between(300, 0.9, 3.1);
  const double Y2 = between(600, 0.9, 3.1);
  const double J = 1 / 3.14159265358979;
  const double e = model.constants.ElementaryCharge;
  const double flux = J / e * Y1 * 0.8 + J / (2 * e) * Y2 * 0.2;
  const double speed = flux * 0.10787 / model.constants.AvogadroNumber / 10490;
  const double beta = 0.8 * (0.7 + 0.6 / 550.001 * 150) + 0.2 * (0.7 + 0.6 / 550.001 * 450);
  EXPECT_NEAR(model.Q(2, 1, 1, 19), speed, 1e-12 * speed);
  EXPECT_NEAR(model.Q(2, 1, 1, 59), Y1 + Y2, 1e-12);
  EXPECT_NEAR(model.Q(2, 1, 1, 62), beta, 1e-12);
  EXPECT_EQ(model.Q(2, 1, 1, 31), 1);
  EXPECT_EQ(model.output.summary, "");
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Sputtering, ObliqueCellsInBothYieldForms) {
  for (const bool curves : {false, true}) {
    SputterModel model = FacingPlate("3 2", "silver", " R X 150 R Y 20");
    if (curves) model.SetCurves("silver", {"100 0.5|300 1.5|700 2.5", "10 1|50 1.6|90 0", "100 0.8|700 1.6"});
    model.Build();
    model.Run();
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) {
        ASSERT_GT(model.Q(2, i, j, 9), 10);
        ASSERT_LT(model.Q(2, i, j, 9), 80);
        ExpectCell(model, 2, i, j, ExpectedOf(model, 2, i, j, "silver", model.Q(2, i, j, 9)));
      }
    }
    EXPECT_TRUE(model.dialogs.boxes.empty());
  }
}

TEST(Sputtering, CheckCasesChangeTheLawOfIncidence) {
  for (const double check : {1.0, 2.0, 3.0}) {
    SputterModel model = FacingPlate("1 1", "silver", " R X 150");
    model.MaiOrigine = check;
    model.Build();
    model.Run();
    ExpectCell(model, 2, 1, 1, ExpectedOf(model, 2, 1, 1, "silver", model.Q(2, 1, 1, 9)));
  }
}

TEST(Sputtering, AnExtrapolationIsToldOnceARun) {
  SputterModel model = FacingPlate("3 3");
  model.SetYields("silver", 10490, 107.87, {{150, 0.9, 1.4, 50, 0.7}});
  model.Build();
  for (int run = 1; run <= 2; ++run) {
    model.Run();
    EXPECT_EQ(model.dialogs.Count("Extrapolation in energy"), run);
    ExpectCell(model, 2, 2, 2, ExpectedOf(model, 2, 2, 2, "silver", model.Q(2, 2, 2, 9)));
  }
}

TEST(Sputtering, ShadowAndPlumeLimit) {
  // A small screen shadows the middle of the plate; the beam ends at 20 degrees.
  SputterModel model({{"HT", kTestThruster},
                      {"silver", "Plate rect size 1 1 cells 5 5" + kFacing},
                      {"gold", "Screen rect size 0.1 0.1 cells 1 1 R X 180 T 0 0 0.5"}});
  model.thruster.ThrusterData(slot::FirstParameter + 5) = 20.0;
  model.Build();
  model.Run();
  EXPECT_GE(model.Q(2, 3, 3, 20), 0.25);
  EXPECT_EQ(model.Q(2, 3, 3, 19), 0);
  EXPECT_EQ(model.Q(2, 3, 3, 31), 0);  // left before the incidence
  EXPECT_GT(model.Q(2, 2, 3, 19), 0);
  EXPECT_GT(model.Q(2, 1, 1, 10), 20);
  EXPECT_EQ(model.Q(2, 1, 1, 19), 0);
  EXPECT_EQ(model.Q(2, 1, 1, 59), 0);
  EXPECT_GT(model.Q(3, 1, 1, 19), 0);
}

TEST(Sputtering, AShadowFlagBelowAQuarterDoesNotHide) {
  SputterModel model = FacingPlate("1 2");
  model.Build();
  model.At(2, 1, 1, 20) = 0.2499;
  model.At(2, 1, 2, 20) = 0.25;
  model.At(2, 1, 2, 59) = model.At(2, 1, 2, 62) = 9;
  model.Run();
  EXPECT_GT(model.Q(2, 1, 1, 19), 0);
  EXPECT_EQ(model.Q(2, 1, 2, 19), 0);
  EXPECT_EQ(model.Q(2, 1, 2, 59), 0);
  EXPECT_EQ(model.Q(2, 1, 2, 62), 0);
}

TEST(Sputtering, PlumeTestByModel) {
  struct Case {
    double model, C8, C12, theta;
    bool inside;
  };
  const Case cases[] = {{0, 20, 60, 20, true},    {0, 20, 60, 20.1, false}, {1, 20, 60, 40, true},
                        {1, 20, 60, 60.1, false}, {2, 20, 60, 40, true},    {100, 20, 60, 40, false},
                        {1000, 20, 60, 40, true}, {1000, 70, 60, 65, true}, {3, 20, 60, 61, false}};
  for (const Case& c : cases) {
    SputterModel model = FacingPlate();
    model.Build();
    model.thruster.ThrusterData(slot::FirstParameter + 5) = c.C8;
    model.thruster.ThrusterData(slot::FirstParameter + 9) = c.C12;
    model.thruster.ThrusterData(slot::LastParameter) = c.model;
    model.At(2, 1, 1, 10) = c.theta;
    model.Run();
    EXPECT_EQ(model.Q(2, 1, 1, 19) > 0, c.inside) << c.model << " " << c.theta;
    // The incidence used is noted before the plume is asked.
    EXPECT_EQ(model.Q(2, 1, 1, 31), 1);
  }
}

TEST(Sputtering, RectoModes) {
  struct Case {
    double recto, incidence, used31, counts;
    bool rotating;
  };
  // counts: the incidence that erodes; above 90 nothing does.
  const Case cases[] = {{0, 30, 1, 30, false},   {0, 150, 30, 30, false},   {0, 150, 1, 150, true},
                        {1, 30, 30, 30, false},  {1, 150, 150, 150, false}, {2, 30, 150, 150, false},
                        {2, 150, 30, 30, false}, {2, 150, 30, 30, true},    {3, 150, 1, 150, false},
                        {0, 90, 1, 90, false}};
  for (const Case& c : cases) {
    SputterModel model = FacingPlate();
    model.IndexPlot = 13;
    model.directives.RectoOnly = c.recto;
    model.Build();
    if (c.rotating) model.geometry.rotation.RotatingPrimitive = 2;
    model.At(2, 1, 1, 9) = c.incidence;
    model.Run();
    EXPECT_EQ(model.Q(2, 1, 1, 31), c.used31) << c.recto << " " << c.incidence;
    if (c.counts > 90) {
      EXPECT_EQ(model.Q(2, 1, 1, 19), 0) << c.recto << " " << c.incidence;
      EXPECT_EQ(model.Q(2, 1, 1, 59), 0);
    } else {
      const ByHand expected = ExpectedOf(model, 2, 1, 1, "silver", c.counts);
      EXPECT_NEAR(model.Q(2, 1, 1, 19), expected.speed, 1e-12 * expected.speed + 1e-30) << c.recto;
    }
  }
}

TEST(Sputtering, TheIncidenceUsedStaysWhereItIsSet) {
  SputterModel model = FacingPlate();
  model.Build();
  model.At(2, 1, 1, 31) = 44;
  model.Run();
  EXPECT_EQ(model.Q(2, 1, 1, 31), 44);
}

TEST(Sputtering, ASpeciesWithoutCurrentIsSkipped) {
  SputterModel model = FacingPlate();
  model.SetThruster({1, 2}, {1, 0});
  model.thruster.ThrusterData(slot::SpeciesCount) = 2.0;
  model.Build();
  model.Run();
  ExpectCell(model, 2, 1, 1, ExpectedOf(model, 2, 1, 1, "silver", model.Q(2, 1, 1, 9), {1, 0}));
}

TEST(Sputtering, AnIonRatioTableGivesTheSharesByCell) {
  for (const double ratio : {0.7, 0.0}) {
    SputterModel model = FacingPlate();
    model.SetThruster({1, 2}, {1, 0});
    model.thruster.ThrusterData(slot::SpeciesCount) = 2.0;
    model.Build();
    model.thruster.ThrusterData(slot::indexfinThrusterEnergy) = 60.0;
    model.thruster.ThrusterData(slot::indexfinThrusterXepDens) = 64.0;
    model.At(2, 1, 1, 61) = ratio;
    model.Run();
    // A share of 0 is not skipped then: its yield counts.
    ByHand expected = ExpectedOf(model, 2, 1, 1, "silver", model.Q(2, 1, 1, 9), {ratio, 1 - ratio});
    if (ratio == 0) {
      expected.yield += ExpectedOf(model, 2, 1, 1, "silver", model.Q(2, 1, 1, 9), {1, 0}).yield;
    }
    ExpectCell(model, 2, 1, 1, expected);
  }
}

TEST(Sputtering, ScreensOfCylindersDoNotErode) {
  SputterModel model({{"HT", kTestThruster}, {"silver", "Tube cylshape size 0.1 0.4 1 cells 10 3 R X 90 T 0 0 1"}});
  model.Build();
  const int n = model.cells.CountI(2);
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= 3; ++j) {
      model.At(2, i, j, 20) = 0;
      model.At(2, i, j, 9) = 10;
    }
  }
  model.Run();
  for (int i = 1; i <= n; ++i) {
    for (int j = 1; j <= 3; ++j) EXPECT_EQ(model.Q(2, i, j, 19) > 0, i <= n - 2) << i;
  }
}

TEST(Sputtering, UnknownTypesAreTold) {
  SputterModel model = FacingPlate("2 2");
  model.Build();
  model.At(2, 0, 0, 10) = 17;
  model.Run();
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "Type not identified in Sputtering");
  EXPECT_EQ(model.dialogs.boxes[0].title, " Memo Information");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Information);
  EXPECT_EQ(model.dialogs.boxes[1].title, "Petite erreur");
  EXPECT_EQ(model.dialogs.log.front(), "Type not identified in Sputtering");
  EXPECT_GT(model.Q(2, 1, 1, 19), 0);
}

TEST(Sputtering, TheSecondFaceHasTheSecondMaterial) {
  SputterModel model({{"HT", kTestThruster},
                      {"silver | gold", "Sheet rect2sides size -0.1 0.1 -0.1 0.1 1 1 -0.01 cells 2 4 T 0 0 1"}});
  model.Build();
  ASSERT_EQ(model.Q(2, 0, 0, 10), 15);
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 4; ++j) {
      model.At(2, i, j, 20) = 0;
      model.At(2, i, j, 9) = 20;
    }
  }
  model.Run();
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 4; ++j) {
      ExpectCell(model, 2, i, j, ExpectedOf(model, 2, i, j, j <= 2 ? "silver" : "gold", 20));
    }
  }
}

TEST(Sputtering, CurvesOfOneFaceAndRowsOfTheOther) {
  SputterModel model({{"HT", kTestThruster},
                      {"silver | gold", "Sheet rect2sides size -0.1 0.1 -0.1 0.1 1 1 -0.01 cells 1 2 T 0 0 1"}});
  model.SetCurves("silver", {"100 0.5|300 1.5|700 2.5", "10 1|50 1.6|90 0", "100 0.8|700 1.6"});
  model.Build();
  for (int j = 1; j <= 2; ++j) {
    model.At(2, 1, j, 20) = 0;
    model.At(2, 1, j, 9) = 20;
  }
  model.Run();
  ExpectCell(model, 2, 1, 1, ExpectedOf(model, 2, 1, 1, "silver", 20));
  ExpectCell(model, 2, 1, 2, ExpectedOf(model, 2, 1, 2, "gold", 20));
}

TEST(Sputtering, ASecondNameOnAnotherPrimitiveIsNotUsed) {
  SputterModel model = FacingPlate("1 4", "silver | gold");
  model.Build();
  model.Run();
  for (int j = 1; j <= 4; ++j) {
    ExpectCell(model, 2, 1, j, ExpectedOf(model, 2, 1, j, "silver", model.Q(2, 1, j, 9)));
  }
}

TEST(Sputtering, AMissingMaterialLeavesThatOfThePrimitiveBefore) {
  SputterModel model({{"HT", kTestThruster},
                      {"gold", "First rect size 0.1 0.1 cells 1 1 R X 180 T 0.2 0 1"},
                      {"unobtainium", "Second rect size 0.1 0.1 cells 1 1 R X 180 T -0.2 0 1"}});
  model.Build();
  model.Run();
  ExpectCell(model, 3, 1, 1, ExpectedOf(model, 3, 1, 1, "gold", model.Q(3, 1, 1, 9)));
  EXPECT_EQ(
      model.dialogs.boxes[0].text,
      "Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | unobtainium");
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  // Its row is outside of the table.
  EXPECT_EQ(model.dialogs.boxes[2].text, std::string(kEffect) + " ");
  EXPECT_EQ(model.dialogs.boxes[2].title, kEffect);
  EXPECT_EQ(model.dialogs.boxes[3].text, "Subscript out of range");
  EXPECT_EQ(model.dialogs.boxes[3].title, kEffect);
}

TEST(Sputtering, NamesOfMaterialsFoldCase) {
  SputterModel model = FacingPlate("1 1", "SILVER");
  model.Build();
  model.Run();
  ExpectCell(model, 2, 1, 1, ExpectedOf(model, 2, 1, 1, "silver", model.Q(2, 1, 1, 9)));
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(Sputtering, ASpeedThatFailsIsThatOfTheCellBefore) {
  // No density: the division fails for every cell and the speed stays 0.
  SputterModel model = FacingPlate("1 2");
  model.SetYields("silver", 0, 107.87, {{150, 0.9, 1.4, 50, 0.7}, {700, 3.1, 5.2, 58, 1.3}});
  model.Build();
  model.dialogs.answers = {Answer::Retry, Answer::Ignore};
  model.Run();
  EXPECT_EQ(model.Q(2, 1, 1, 19), 0);
  EXPECT_GT(model.Q(2, 1, 1, 59), 0);
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);  // Retry asks again, Ignore is remembered
  EXPECT_EQ(model.dialogs.boxes[0].text, "Division by zero");
  EXPECT_EQ(model.dialogs.boxes[0].title, kOnePrimitive);
  EXPECT_EQ(model.dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
}

TEST(Sputtering, AYieldThatFailsIsThatOfTheCellBefore) {
  // The angular curve of the second material is too long: its cells keep the yield of the cell before them.
  SputterModel model({{"HT", kTestThruster},
                      {"silver | gold", "Sheet rect2sides size -0.1 0.1 -0.1 0.1 1 1 -0.01 cells 1 2 T 0 0 1"}});
  std::string angles;
  for (int k = 1; k <= 37; ++k) angles += std::to_string(k) + " 1|";
  model.SetCurves("gold", {"100 2", angles, "100 1"});
  model.Build();
  for (int j = 1; j <= 2; ++j) {
    model.At(2, 1, j, 20) = 0;
    model.At(2, 1, j, 9) = 20;
  }
  model.Run();
  // The first face ends with the yield of the second species.
  const double Y2 = model.Q(2, 1, 1, 59) - ExpectedOf(model, 2, 1, 1, "silver", 20, {0.8, 0}).yield;
  EXPECT_NEAR(model.Q(2, 1, 2, 59), 2 * Y2, 1e-12);
  EXPECT_EQ(model.dialogs.boxes[0].text, std::string(kOnePrimitive) + " ");
  EXPECT_EQ(model.dialogs.boxes[1].text, "Subscript out of range");
}

TEST(Sputtering, ASecondGasWithoutRowsIsToldThoughNoIonUsesIt) {
  SputterModel model = FacingPlate("2 2");
  model.SetThruster({1, 2}, {1, 0});
  model.SetYields("silver", 10490, 107.87, {{150, 0.9, 1.4, 50, 0.7}, {700, 3.1, 5.2, 58, 1.3}}, {});
  model.Build();
  model.Run();
  EXPECT_EQ(model.dialogs.Count("Extrapolation in energy"), 1);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
  for (int i = 1; i <= 2; ++i) {
    for (int j = 1; j <= 2; ++j) EXPECT_GT(model.Q(2, i, j, 19), 0);
  }
}

TEST(Sputtering, ANormalYieldOfZeroIsTold) {
  SputterModel model = FacingPlate();
  model.SetYields("silver", 10490, 107.87, {{300, 0, 1.4, 50, 0.7}, {600, 0, 5.2, 58, 1.3}});
  model.Build();
  model.Run();
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
  EXPECT_EQ(model.Q(2, 1, 1, 19), 0);
  EXPECT_EQ(model.Q(2, 1, 1, 59), 0);
}

TEST(Sputtering, AbortEndsTheProgram) {
  SputterModel model = FacingPlate();
  model.SetYields("silver", 0, 107.87, {{150, 0.9, 1.4, 50, 0.7}, {700, 3.1, 5.2, 58, 1.3}});
  model.Build();
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(), ProgramEnd);
}

TEST(Sputtering, WithoutAThrusterNothingErodes) {
  SputterModel model = FacingPlate("2 2");
  model.Build();
  model.thruster.ThrusterPrimitive = 0;
  model.thruster.ThrusterData = EmptyThrusterData();
  model.Run();
  EXPECT_EQ(model.Volume(2, 19), 0);
}

TEST(Sputtering, TheThrusterItselfIsLeftOut) {
  SputterModel model = FacingPlate();
  model.Build();
  model.At(1, 1, 1, 19) = 5;
  model.Run();
  EXPECT_EQ(model.Q(1, 1, 1, 19), 5);
}

TEST(Sputtering, ASecondRunStartsAnew) {
  SputterModel model = FacingPlate("2 2");
  model.Build();
  model.Run();
  const std::vector<double> first = model.Values(2, 19);
  model.Run();
  EXPECT_EQ(model.Values(2, 19), first);
}

}  // namespace
}  // namespace orv::testing
