#include "plume/plume_models.h"

#include <gtest/gtest.h>

#include "plume/plume_setup.h"

namespace orv::testing {
namespace {

const std::vector<double> kAngles = {0, 0.5, 7, 15, 29.999, 30, 44, 60, 79, 89.5};

PlumeSetup Cosine(double model) {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 3.79, 230, 7.85, 7.34, 0.125, 90, 0, 0, 0, 90, 0, 0, 0, 0, model};
  return setup;
}
PlumeSetup WithEnergy(double model) {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 3.79, 230, 7.85, 7.34, 0.125, 90, 0.05, 126.1, 143.3, 90, 20, 60000, 250, 60, model};
  return setup;
}
PlumeSetup Exponential() {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 3.79, 230, 4.95, -4.006, 0.3, 90, 4.085, 0.02978, 312, 0.5, 24, 0.6485, 21, 60, 100};
  return setup;
}
PlumeSetup Tables() {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 3.79, 230, 0, 0, 0, 140, 0, 0, 0, 0, 0, 0, 0, 80, 1000};
  setup.density = {{0.001, 4.2}, {15, 1.9}, {30, 0.6}, {60, 0.1}, {140, 0.01}};
  setup.energy = {{10, 229}, {50, 206}, {90, 69}};
  setup.ratio = {{0.001, 0.96}, {30, 0.95}, {90, 0.9}};
  return setup;
}

using Law = PlumeValues (PlumeSetup::*)(double, double) const;

void ExpectLaw(const PlumeSetup& setup, Law law, bool states = true) {
  PlumeModel model;
  for (const double theta : kAngles) model.Add(theta, 0.3 + theta / 20);
  model.Run(setup);
  for (int j = 1; j <= static_cast<int>(kAngles.size()); ++j) {
    const double theta = kAngles[static_cast<std::size_t>(j - 1)];
    model.Expect(j, (setup.*law)(theta, 0.3 + theta / 20), states);
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeLaws, Model0) {
  ExpectLaw(Cosine(0), &PlumeSetup::Model0);
}
TEST(PlumeLaws, Model1) {
  ExpectLaw(WithEnergy(1), &PlumeSetup::Model1);
}
TEST(PlumeLaws, Model2) {
  ExpectLaw(WithEnergy(2), &PlumeSetup::Model2);
}
TEST(PlumeLaws, Model3) {
  ExpectLaw(Cosine(3), &PlumeSetup::Model3, false);
}
TEST(PlumeLaws, Model100) {
  ExpectLaw(Exponential(), &PlumeSetup::Model100);
}
TEST(PlumeLaws, Model1000) {
  ExpectLaw(Tables(), &PlumeSetup::Model1000);
}
TEST(PlumeLaws, AccurateConstants) {
  Directives directives;
  directives.Haccuracy = 1;
  for (PlumeSetup setup : {Cosine(0), Tables()}) {
    setup.constants = ConstantsOf(directives);
    EXPECT_EQ(setup.constants.ElementaryCharge, 1.60218e-19);
    ExpectLaw(setup, setup.C[17] == 0 ? &PlumeSetup::Model0 : &PlumeSetup::Model1000);
  }
}

// Charges and shares that no two places can confuse.
TEST(PlumeLaws, OtherChargesAndShares) {
  const std::vector<std::pair<PlumeSetup, Law>> laws = {
      {Cosine(0), &PlumeSetup::Model0}, {WithEnergy(1), &PlumeSetup::Model1},   {WithEnergy(2), &PlumeSetup::Model2},
      {Cosine(3), &PlumeSetup::Model3}, {Exponential(), &PlumeSetup::Model100}, {Tables(), &PlumeSetup::Model1000},
  };
  for (auto [setup, law] : laws) {
    SCOPED_TRACE(setup.C[17]);
    setup.charge1 = 1.5;
    setup.charge2 = 3.25;
    setup.molarMass = 39.948;
    setup.share1 = 0.6;
    setup.share2 = 0.3;
    ExpectLaw(setup, law, setup.C[17] != 3);
  }
}

TEST(PlumeLaws, OnlyModel1000WritesTheShareOfTheCell) {
  for (const PlumeSetup& setup : {Cosine(0), WithEnergy(1), WithEnergy(2), Cosine(3), Exponential()}) {
    PlumeModel model;
    model.Add(20, 1);
    model.Run(setup);
    model.ExpectMarks(1, {61});
  }
  PlumeModel model;
  model.Add(20, 1);
  model.Run(Tables());
  EXPECT_NEAR(model.Data(1, 61), Tables().Share1(20), 1e-12);
}

// --- numbers worked by hand ------------------------------------------------------------------------------------------

// Half current 2 A, N = 1 / sr, 300 eV, 131.3 g/mol, 2 m: J = 2 / 4, v = sqrt(2 * 300 * 1.6e-19 / 2.17998e-25).
TEST(PlumeByHand, Model0) {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 4, 300, 0, 1, 3.14159265358979, 90};
  PlumeModel model;
  model.Add(25, 2);
  model.Run(setup);
  EXPECT_NEAR(model.Data(1, 14), 1, 1e-12);
  EXPECT_NEAR(model.Data(1, 15), 0.5, 1e-12);
  EXPECT_EQ(model.Data(1, 16), 300);
  EXPECT_NEAR(model.Data(1, 17), 20985.03, 0.01);
  EXPECT_NEAR(model.Data(1, 33), 1.116867e14, 1e8);
  EXPECT_NEAR(model.Data(1, 34), 1.316241e13, 1e7);
  EXPECT_NEAR(model.Data(1, 13), 1.248491e14, 1e8);
}

// j = 0.1 + 100 / (100 + 300) = 0.35 mA/cm2 = 3.5 A/m2 at 1 m; E = 20 + 60000 / (100 + 200) = 220 eV.
TEST(PlumeByHand, Model1) {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 4, 300, 0, 0, 0, 1, 0.1, 100, 300, 90, 20, 60000, 200, 60, 1};
  PlumeModel model;
  model.Add(10, 2);
  model.Run(setup);
  EXPECT_NEAR(model.Data(1, 14), 1.75, 1e-12);
  EXPECT_NEAR(model.Data(1, 15), 0.875, 1e-12);
  EXPECT_NEAR(model.Data(1, 16), 220, 1e-12);
  EXPECT_NEAR(model.Data(1, 13), 3.043180e14, 1e8);
  EXPECT_EQ(model.Data(1, 33), model.Data(1, 13));
  EXPECT_EQ(model.Data(1, 34), 0);
  EXPECT_NEAR(model.Data(1, 17), 20985.03, 0.01);  // still that of C4
}

// N halfway between 4 and 2; energy halfway between 300 and 100; R = 0.5, so f1 = 1 / (1 + 2^1.5) = 0.261204.
TEST(PlumeByHand, Model1000) {
  PlumeSetup setup = Tables();
  setup.C[3] = 4;
  setup.density = {{10, 4}, {20, 2}};
  setup.energy = {{10, 300}, {20, 100}};
  setup.ratio = {{5, 0.5}};
  PlumeModel model;
  model.Add(15, 1);
  model.Run(setup);
  EXPECT_NEAR(model.Data(1, 14), 3, 1e-12);
  EXPECT_NEAR(model.Data(1, 15), 6, 1e-12);
  EXPECT_NEAR(model.Data(1, 16), 200, 1e-12);
  EXPECT_NEAR(model.Data(1, 61), 0.261204, 5e-7);
  EXPECT_NEAR(model.Data(1, 17), 17134.2, 0.1);
}

// --- limits ----------------------------------------------------------------------------------------------------------

TEST(PlumeLimits, TheResultIsTheLimitOfTheModel) {
  for (const auto& [model, limit] :
       std::vector<std::pair<double, double>>{{0, 70}, {1, 80}, {2, 70}, {3, 70}, {100, 70}, {1000, 70}, {7, 70}}) {
    PlumeSetup setup = WithEnergy(model);
    setup.C[8] = 70;
    setup.C[12] = 80;
    PlumeModel plume;
    plume.Run(setup);
    EXPECT_EQ(plume.result.PlumeLimitAngle, limit) << "model " << model;
    EXPECT_EQ(plume.result.SpectrumAngle, -1);
  }
}

TEST(PlumeLimits, OutsideFiveQuantitiesAreZeroAndTheOthersStay) {
  for (PlumeSetup setup : {Cosine(0), WithEnergy(1), WithEnergy(2), Cosine(3), Exponential(), Tables()}) {
    setup.C[8] = 60;
    if (setup.C[17] != 100) setup.C[12] = 60;
    PlumeModel model;
    model.Add(60.0000001, 1);
    model.Add(150, 1);
    model.Run(setup);
    for (const int j : {1, 2}) {
      model.ExpectZeros(j);
      model.ExpectMarks(j, {33, 34, 61});
    }
    EXPECT_TRUE(model.dialogs.boxes.empty()) << "model " << setup.C[17];
  }
}

TEST(PlumeLimits, ExactlyAtC8IsInside) {
  for (PlumeSetup setup : {Cosine(0), Cosine(3), WithEnergy(2), Exponential(), Tables()}) {
    setup.C[8] = 60;
    PlumeModel model;
    model.Add(60, 1);
    model.Run(setup);
    const double m = setup.C[17];
    model.Expect(1,
                 m == 0     ? setup.Model0(60, 1)
                 : m == 3   ? setup.Model3(60, 1)
                 : m == 2   ? setup.Model2(60, 1)
                 : m == 100 ? setup.Model100(60, 1)
                            : setup.Model1000(60, 1),
                 m != 3);
  }
}

TEST(PlumeLimits, Model0KnowsOnlyC8) {
  PlumeSetup setup = Cosine(0);
  setup.C[8] = 30;
  PlumeModel model;
  model.Add(30.001, 1);
  model.Run(setup);
  model.ExpectZeros(1);
  model.ExpectMarks(1, {33, 34});
}

TEST(PlumeLimits, Model1AtExactlyC12HasNeitherCurrentNorEnergy) {
  PlumeSetup setup = WithEnergy(1);
  setup.C[8] = 20;
  setup.C[12] = 60;
  PlumeModel model;
  model.Add(59.9, 1);  // beyond C8, which does not count
  model.Add(60, 1);
  model.Add(60.1, 1);
  model.Run(setup);
  model.Expect(1, setup.Model1(59.9, 1));
  PlumeValues atLimit;
  atLimit.v = setup.Speed(1, 230);
  model.Expect(2, atLimit);
  model.ExpectZeros(3);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeLimits, Model2BetweenC8AndC12KeepsTheLastEnergy) {
  PlumeSetup setup = WithEnergy(2);
  setup.C[8] = 50;
  setup.C[12] = 70;
  PlumeModel model;
  model.Add(20, 1);
  model.Add(60, 1);
  model.Add(70, 2);
  model.Add(70.5, 1);
  model.Run(setup);
  const PlumeValues first = setup.Model2(20, 1);
  model.Expect(1, first);
  for (const int j : {2, 3}) {
    for (const int q : {13, 14, 15}) EXPECT_EQ(model.Data(j, q), 0) << q;
    EXPECT_NEAR(model.Data(j, 16), first.E, 1e-12 * first.E);
    EXPECT_NEAR(model.Data(j, 17), first.v, 1e-12 * first.v);
  }
  model.ExpectZeros(4);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeLimits, Model3BetweenC8AndC12HasItsConstantEnergy) {
  PlumeSetup setup = Cosine(3);
  setup.C[8] = 50;
  setup.C[12] = 70;
  PlumeModel model;
  model.Add(60, 1);
  model.Run(setup);
  PlumeValues x;
  x.E = 230;
  x.v = setup.Speed(1, 230);
  model.Expect(1, x, false);
}

TEST(PlumeLimits, Model100TestsC8InPlaceOfC12) {
  PlumeSetup setup = Exponential();
  setup.C[8] = 0.2;
  setup.C[12] = 0.5;
  PlumeModel model;
  model.Add(0.1, 1);
  model.Add(0.4, 1);
  model.Run(setup);
  model.Expect(1, setup.Model100(0.1, 1));
  model.ExpectZeros(2);
}

TEST(PlumeLimits, Model1000TakesTheNumberOfItsColumn12) {
  PlumeSetup setup = Tables();
  setup.C[8] = 50;
  setup.C[12] = 60.9;
  PlumeModel model;
  model.Add(60.9, 1);
  model.Add(61, 1);
  model.Run(setup);
  model.Expect(1, setup.Model1000(60.9, 1));
  model.ExpectZeros(2);
}

TEST(PlumeLimits, TheEnergyStaysFromC16On) {
  for (PlumeSetup setup : {WithEnergy(1), WithEnergy(2), Exponential(), Tables()}) {
    setup.C[16] = 40;
    PlumeModel model;
    for (const double theta : {39.0, 40.0, 41.0, 80.0}) model.Add(theta, 1);
    model.Run(setup);
    const double at40 = setup.C[17] == 100    ? setup.ExponentialE(40)
                        : setup.C[17] == 1000 ? PlumeSetup::Line(setup.energy, 40)
                                              : setup.InverseSquareE(40);
    EXPECT_GT(std::abs(model.Data(1, 16) - at40), 1e-3);
    for (const int j : {2, 3, 4}) EXPECT_NEAR(model.Data(j, 16), at40, 1e-12 * at40) << "model " << setup.C[17];
  }
}

// --- numbers of models -----------------------------------------------------------------------------------------------

void ExpectUnknown(double number, const std::string& label) {
  SCOPED_TRACE(number);
  PlumeSetup setup = WithEnergy(number);
  setup.C[12] = 95;
  PlumeModel model;
  model.Add(20, 1);
  model.Add(160, 1);
  model.Add(90, 1);
  model.Run(setup);
  for (const int j : {1, 2, 3}) model.ExpectZeros(j);
  model.ExpectMarks(1, {33, 34, 61});
  ASSERT_EQ(model.dialogs.boxes.size(), 4U);  // two boxes for each cell inside
  for (const std::size_t k : {0U, 2U}) {
    EXPECT_EQ(model.dialogs.boxes[k].text, "Model type not existing. If you need a new Model please contact Maravo.");
    EXPECT_EQ(model.dialogs.boxes[k].title.substr(0, 8), "Contact ");
    EXPECT_EQ(model.dialogs.boxes[k].icon, Icon::Information);
    EXPECT_EQ(model.dialogs.boxes[k + 1].text.substr(0, label.size() + 2), label + "\r\n");
    EXPECT_EQ(model.dialogs.boxes[k + 1].title, "Petite erreur");
  }
  EXPECT_EQ(model.dialogs.log, (std::vector<std::string>{label, label}));
}

TEST(PlumeNumbers, UnknownOnesAreTold) {
  for (const double number : {-1.0, 2.5, 0.5, 1.5, -1000.0}) ExpectUnknown(number, "faute x14 ");
  for (const double number : {7.0, 3.5, 99.0, 101.0, 999.0, 1001.0, 1e9}) ExpectUnknown(number, "faute x15 ");
}

TEST(PlumeNumbers, AbortEndsTheProgram) {
  PlumeModel model;
  model.Add(20, 1);
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(WithEnergy(7)), ProgramEnd);
}

// --- which cells -----------------------------------------------------------------------------------------------------

TEST(PlumeCells, TheThrusterIsLeftOut) {
  PlumeModel model(3);
  for (const int p : {1, 2, 3}) model.Add(20, 1, p);
  model.input.ThrusterPrimitive = 2;
  model.Run(Cosine(0));
  model.Expect(1, Cosine(0).Model0(20, 1), true, 1);
  model.ExpectMarks(1, {13, 14, 15, 16, 17, 33, 34}, 2);
  model.Expect(1, Cosine(0).Model0(20, 1), true, 3);
}

TEST(PlumeCells, OnePrimitiveAlone) {
  PlumeModel model(3);
  for (const int p : {1, 2, 3}) model.Add(20, 1, p);
  model.input.ThrusterPrimitive = 1;
  model.input.OnePrimitive = 3;
  model.Run(Cosine(0));
  model.ExpectMarks(1, {13, 17}, 1);
  model.ExpectMarks(1, {13, 17}, 2);
  model.Expect(1, Cosine(0).Model0(20, 1), true, 3);
  model.input.OnePrimitive = 1;
  model.Run(Cosine(0));
  model.ExpectMarks(1, {13, 17}, 1);
}

TEST(PlumeCells, OneCellAlone) {
  PlumeModel model;
  for (int k = 0; k < 3; ++k) model.Add(20, 1);
  const OneCell cell{1, 1, 2};
  model.input.cell = &cell;
  model.Run(Cosine(0));
  model.ExpectMarks(1, {13, 17});
  model.Expect(2, Cosine(0).Model0(20, 1));
  model.ExpectMarks(3, {13, 17});
  EXPECT_EQ(model.result.PlumeLimitAngle, 90);
}

TEST(PlumeCells, RowsAndColumnsOfEachPrimitive) {
  PlumeModel model(1);
  model.Set(1, 0, 0, 1) = 3;
  model.Set(1, 0, 0, 2) = 2;
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) {
      model.Set(1, i, j, 8) = i;
      model.Set(1, i, j, 10) = 10 * j;
    }
  }
  model.Run(Cosine(3));
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) {
      const double expected = i <= 3 && j <= 2 ? Cosine(3).Model3(10 * j, i).n : 0;
      EXPECT_NEAR(model.Set(1, i, j, 13), expected, 1e-12 * expected) << i << " " << j;
    }
  }
}

}  // namespace
}  // namespace orv::testing
