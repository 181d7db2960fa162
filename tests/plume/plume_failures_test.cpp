#include <gtest/gtest.h>

#include "plume/plume_models.h"
#include "plume/plume_setup.h"

// What the plume does beside its laws: tables, bands, potentials, and statements that fail.
namespace orv::testing {
namespace {

const char* const kAbortText = "Do you want to abort? See Hallam if the error cannot be solved ";
const char* const kTitle = "Error fautea_SpaceApplicationThrusterPLUME";

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
PlumeSetup Tables() {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 3.79, 230, 0, 0, 0, 140, 0, 0, 0, 0, 0, 0, 0, 80, 1000};
  setup.density = {{10, 1}, {20, 2}, {30, 3}, {40, 4}, {50, 5}};
  setup.energy = {{10, 229}, {50, 206}, {90, 69}};
  setup.ratio = {{0.001, 0.96}, {30, 0.95}, {90, 0.9}};
  return setup;
}

// --- tables ----------------------------------------------------------------------------------------------------------

TEST(PlumeTables, AnEmptyRatioKeepsTheShares) {
  PlumeSetup setup = Tables();
  setup.ratio.clear();
  PlumeModel model;
  model.Add(25, 1.5);
  model.Run(setup);
  model.Expect(1, setup.Model1000(25, 1.5));
  EXPECT_EQ(model.Data(1, 61), setup.share1);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeTables, ATableThatStartsAtZeroHasAStepFirst) {
  PlumeSetup setup = Tables();
  setup.density = {{0, 9}, {20, 2}, {30, 3}};
  PlumeModel model;
  model.Add(10, 1);
  model.Add(25, 1);
  model.Run(setup);
  EXPECT_EQ(model.Data(1, 14), 2);
  EXPECT_EQ(model.Data(2, 14), 2.5);
}

TEST(PlumeTables, RowsNeedNoOrder) {
  PlumeSetup setup = Tables();
  setup.density = {{30, 3}, {10, 1}, {20, 2}};
  PlumeModel model;
  model.Add(15, 1);
  model.Run(setup);
  EXPECT_EQ(model.Data(1, 14), 1.5);
}

TEST(PlumeTables, OddEndsAreToldOnceForEachTable) {
  PlumeSetup setup = Tables();
  setup.density = {{10, 1}};
  setup.energy = {{10, 229}};
  setup.ratio = {{10, 0.9}};
  ThrusterVector data = setup.Data();
  data(slot::indexfinThrusterDensity) = 27.0;
  data(slot::indexfinThrusterEnergy) = 30.0;
  data(slot::indexfinThrusterXepDens) = 33.0;
  PlumeModel model;
  model.Run(data);
  ASSERT_EQ(model.dialogs.boxes.size(), 4U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "error table density thruster Model 1000 ");
  EXPECT_EQ(model.dialogs.boxes[1].text, "error table energy thruster Model 1000 ");
  EXPECT_EQ(model.dialogs.boxes[2].text, "error table IonPlus density ratio  thruster Model 1000 ");
  for (const std::size_t k : {0U, 1U, 2U}) {
    EXPECT_EQ(model.dialogs.boxes[k].icon, Icon::Critical);
    EXPECT_EQ(model.dialogs.boxes[k].buttons, Buttons::Ok);
  }
  EXPECT_EQ(model.dialogs.boxes[3].text, kAbortText);
  EXPECT_EQ(model.dialogs.boxes[3].buttons, Buttons::AbortRetryIgnore);
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(data), ProgramEnd);
}

TEST(PlumeTables, AnOddTableLosesItsLastValue) {
  PlumeSetup setup = Tables();
  setup.density = {{10, 1}, {20, 2}};
  setup.energy = {{10, 300}};
  setup.ratio = {};
  ThrusterVector data = setup.Data();
  data(slot::indexfinThrusterDensity) = 27.0;
  data(slot::indexfinThrusterEnergy) = 29.0;
  data(slot::indexfinThrusterXepDens) = 29.0;
  data(28) = 10.0;
  data(29) = 300.0;
  PlumeModel model;
  model.Add(18, 1);
  model.Run(data);
  EXPECT_EQ(model.dialogs.Count("error table density"), 1);
  EXPECT_EQ(model.dialogs.Count("error table energy"), 0);
  EXPECT_EQ(model.Data(1, 14), 1);
  EXPECT_EQ(model.Data(1, 16), 300);
}

// --- bands -----------------------------------------------------------------------------------------------------------

// The density law of a band as rows, by hand; what emits is read off the cells.
TEST(PlumeBands, OnlyOneBandEmits) {
  struct Case {
    int band;
    double angle;
    std::vector<std::pair<double, double>> rows;
  };
  const std::vector<Case> cases = {
      {0, 50, {{10, 0}, {20, 0}, {30, 0}, {49.999, 0}, {50, 5}}},
      {1, 40, {{10, 0}, {20, 0}, {39.999, 0}, {40, 4}, {50, 5}}},
      {2, 30, {{10, 0}, {29.999, 0}, {30, 3}, {40, 4}, {40.001, 0}}},
      {3, 20, {{19.999, 0}, {20, 2}, {30, 3}, {30.001, 0}, {50, 0}}},
      {4, 10, {{10, 1}, {20, 2}, {20.001, 0}, {40, 0}, {50, 0}}},
      {5, -1, {{10, 1}, {10.001, 0}, {30, 0}, {40, 0}, {50, 0}}},
      {18, -1, {{10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.band);
    PlumeModel model(1, 80);
    for (double theta = 1; theta < 60; theta += 1.13) model.Add(theta, 1);
    for (const auto& [x, y] : c.rows) model.Add(x - 0.0004, 1);
    model.input.SpectrumBand = c.band;
    model.Run(Tables());
    EXPECT_EQ(model.result.SpectrumAngle, c.angle);
    for (int j = 1; j <= static_cast<int>(model.cells.CountJ(1)); ++j) {
      std::vector<std::pair<double, double>> sorted = c.rows;
      std::sort(sorted.begin(), sorted.end());
      const double expected = PlumeSetup::Line(sorted, model.Data(j, 10));
      EXPECT_NEAR(model.Data(j, 14), expected, 1e-9) << "at " << model.Data(j, 10) << " deg";
    }
    EXPECT_TRUE(model.dialogs.boxes.empty());
  }
}

TEST(PlumeBands, TheFullPlumeHasNoAngle) {
  PlumeModel model;
  model.result.SpectrumAngle = 7;
  model.Run(Tables());
  EXPECT_EQ(model.result.SpectrumAngle, -1);
}

TEST(PlumeBands, OtherModelsAreRefused) {
  PlumeModel model;
  model.input.SpectrumBand = 1;
  model.Run(Cosine(0));
  ASSERT_GE(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Spectrum limit: the thruster model shall be 1000. Please modify the input with a thruster MODEL 1000. The "
            "program will abort");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbortText);
  EXPECT_EQ(model.result.SpectrumAngle, -1);
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(Cosine(0)), ProgramEnd);
}

TEST(PlumeBands, OnePointIsRefused) {
  PlumeSetup setup = Tables();
  setup.density.resize(1);
  PlumeModel model;
  model.Add(20, 1);
  model.input.SpectrumBand = 1;
  model.Run(setup);
  ASSERT_GE(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Spectrum limit: the thruster model shall use \"table-in-cell\" tables for density, energy, ratioXe+. "
            "Please modify the input with a thruster defined by tables. The program will abort");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbortText);
  setup.density.push_back({20, 2});
  model.dialogs.boxes.clear();
  model.Run(setup);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeBands, TheCheckOfBandsComesBeforeThatOfTables) {
  PlumeSetup setup = Tables();
  setup.density.resize(1);
  ThrusterVector data = setup.Data();
  data(slot::indexfinThrusterXepDens) = data(slot::indexfinThrusterXepDens).number() - 1;
  PlumeModel model;
  model.input.SpectrumBand = 1;
  model.Run(data);
  ASSERT_GE(model.dialogs.boxes.size(), 3U);
  EXPECT_EQ(model.dialogs.boxes[0].text.substr(0, 15), "Spectrum limit:");
  EXPECT_EQ(model.dialogs.boxes[2].text, "error table IonPlus density ratio  thruster Model 1000 ");
}

TEST(PlumeBands, AnyNumberEnds) {
  for (const int band : {-2, -5, -1000, 6, 7, 1000000}) {
    PlumeModel model;
    model.Add(25, 1);
    model.input.SpectrumBand = band;
    model.Run(Tables());
    EXPECT_EQ(model.result.SpectrumAngle, -1) << band;
    EXPECT_TRUE(model.dialogs.boxes.empty());
  }
}

// --- potentials ------------------------------------------------------------------------------------------------------

TEST(PlumePotential, SlowsTheIons) {
  for (const PlumeSetup& setup : {Cosine(0), Cosine(3), WithEnergy(2), Tables()}) {
    SCOPED_TRACE(setup.C[17]);
    PlumeModel model;
    const double volts[3] = {50, 1e6, -40};
    for (int j = 1; j <= 3; ++j) {
      model.Add(20, 1);
      model.Set(1, 1, j, 63) = volts[j - 1];
    }
    model.Run(setup);
    const double E = model.Data(1, 16) + 50;
    const double v = model.Data(1, 17) / std::sqrt((E - 50) / E);
    EXPECT_NEAR(v, setup.Speed(1, E), 1) << "before the potential acts";

    PlumeModel corrected;
    corrected.Set(1, 0, 0, 63) = 1;
    for (int j = 1; j <= 3; ++j) {
      corrected.Add(20, 1);
      corrected.Set(1, 1, j, 63) = volts[j - 1];
    }
    corrected.Run(setup);
    const double energy = model.Data(1, 16);
    const double speed = model.Data(1, 17);
    EXPECT_NEAR(corrected.Data(1, 16), energy - 50, 1e-10);
    EXPECT_NEAR(corrected.Data(1, 17), speed * std::sqrt((energy - 50) / energy), 1e-9 * speed);
    EXPECT_EQ(corrected.Data(2, 16), 0);
    EXPECT_EQ(corrected.Data(2, 17), 0);
    EXPECT_NEAR(corrected.Data(3, 16), energy + 40, 1e-10);
    EXPECT_NEAR(corrected.Data(3, 17), speed * std::sqrt((energy + 40) / energy), 1e-9 * speed);
    for (int j = 1; j <= 3; ++j) {
      for (const int q : {13, 14, 15}) EXPECT_EQ(corrected.Data(j, q), model.Data(j, q));
    }
    EXPECT_TRUE(corrected.dialogs.boxes.empty());
  }
}

TEST(PlumePotential, OnlyTheHeaderValue1TurnsItOn) {
  for (const double mark : {0.0, 2.0, -1.0, 0.5}) {
    PlumeModel model;
    model.Add(20, 1);
    model.Set(1, 0, 0, 63) = mark;
    model.Set(1, 1, 1, 63) = 50;
    model.Run(Cosine(0));
    EXPECT_EQ(model.Data(1, 16), 230) << mark;
  }
}

TEST(PlumePotential, NoPotentialTakesTheEnergyOfTheCellsBehind) {
  for (const double number : {0.0, 3.0}) {
    const PlumeSetup setup = Cosine(number);
    PlumeModel model(2);
    model.Set(1, 0, 0, 63) = 1;
    model.Add(20, 1);
    model.Add(20, 1);
    model.Add(20, 1, 2);
    model.Set(1, 1, 1, 63) = 30;
    model.Run(setup);
    EXPECT_EQ(model.Data(1, 16), 200);
    EXPECT_EQ(model.Data(2, 16), 0);
    EXPECT_NEAR(model.Data(2, 17), setup.Speed(1, 230), 1e-7);
    EXPECT_EQ(model.Data(1, 16, 2), 0);
    EXPECT_NEAR(model.Data(1, 17, 2), setup.Speed(1, 230), 1e-7);
    const double n = number == 0 ? setup.Model0(20, 1).n : setup.Model3(20, 1).n;
    EXPECT_NEAR(model.Data(1, 13, 2), n, 1e-12 * n);
    EXPECT_TRUE(model.dialogs.boxes.empty());
  }
}

TEST(PlumePotential, AnEnergyOfTheCellComesBack) {
  for (const PlumeSetup& setup : {WithEnergy(1), WithEnergy(2), Tables()}) {
    PlumeModel model;
    model.Set(1, 0, 0, 63) = 1;
    model.Add(20, 1);
    model.Add(25, 1);
    model.Set(1, 1, 2, 63) = 10;
    model.Run(setup);
    EXPECT_EQ(model.Data(1, 16), 0) << setup.C[17];
    EXPECT_GT(model.Data(2, 16), 50) << setup.C[17];
  }
}

// --- energies of 0 and other failures --------------------------------------------------------------------------------

TEST(PlumeFailures, NoEnergyInModel2LeavesThePreviousDensity) {
  PlumeSetup setup = WithEnergy(2);
  setup.C[12] = 50;
  PlumeModel model;
  model.Add(20, 1);
  model.Add(60, 2);  // inside by C8; beyond C12 the energy is 0
  model.Add(65, 1);
  model.Run(setup);
  const PlumeValues first = setup.Model2(20, 1);
  for (const auto& [j, theta, r] : std::vector<std::tuple<int, double, double>>{{2, 60, 2}, {3, 65, 1}}) {
    const double N = setup.CosineN(theta);
    EXPECT_NEAR(model.Data(j, 14), N, 1e-12 * N);
    EXPECT_NEAR(model.Data(j, 15), N * setup.Ih() / (r * r), 1e-12 * N);
    EXPECT_EQ(model.Data(j, 16), 0);
    EXPECT_EQ(model.Data(j, 17), 0);
    EXPECT_EQ(model.Data(j, 13), 0);
    EXPECT_NEAR(model.Data(j, 33), first.n1, 1e-12 * first.n1);
    EXPECT_NEAR(model.Data(j, 34), -first.n1, 1e-12 * first.n1);
  }
  ASSERT_EQ(model.dialogs.boxes.size(), 1U);  // ignored, then silent
  EXPECT_EQ(model.dialogs.boxes[0].text, "Division by zero");
  EXPECT_EQ(model.dialogs.boxes[0].title, kTitle);
  EXPECT_EQ(model.dialogs.boxes[0].buttons, Buttons::AbortRetryIgnore);
}

TEST(PlumeFailures, NoEnergyInModel100) {
  PlumeSetup setup;
  setup.C = {0, 0, 0, 3.79, 230, 4.95, -4.006, 0.3, 90, 4.085, 0.02978, 0, 0.5, 0, 0.6485, 0, 60, 100};
  PlumeModel model;
  model.Add(20, 1);
  model.dialogs.answers = {Answer::Retry, Answer::Retry};
  model.Run(setup);
  EXPECT_EQ(model.Data(1, 16), 0);
  EXPECT_EQ(model.Data(1, 17), 0);
  EXPECT_EQ(model.Data(1, 13), 0);
  EXPECT_EQ(model.Data(1, 33), 0);
  EXPECT_EQ(model.Data(1, 34), 0);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 2);  // both densities; Retry does not silence
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(setup), ProgramEnd);
}

TEST(PlumeFailures, NoEnergyInModel1And1000IsProtected) {
  PlumeSetup one = WithEnergy(1);
  one.C[13] = 0;
  one.C[14] = 0;
  PlumeModel model;
  model.Add(20, 1);
  model.Run(one);
  EXPECT_NEAR(model.Data(1, 13), one.Model1(20, 1).J / 1.6e-19 / 1e-05, 1e-12 * model.Data(1, 13));
  EXPECT_EQ(model.Data(1, 16), 0);
  EXPECT_TRUE(model.dialogs.boxes.empty());

  PlumeSetup tables = Tables();
  tables.energy = {{10, 0}};
  tables.ratio = {{10, 1}};  // no second species
  PlumeModel second;
  second.Add(20, 1);
  second.Run(tables);
  EXPECT_EQ(second.Data(1, 61), 1);
  EXPECT_EQ(second.Data(1, 13), 0);
  EXPECT_EQ(second.Data(1, 33), 0);
  EXPECT_EQ(second.Data(1, 34), 0);
  EXPECT_EQ(second.Data(1, 15), 2 * tables.Ih());
  EXPECT_TRUE(second.dialogs.boxes.empty());
}

TEST(PlumeFailures, Model1000WithoutEnergyStillFailsForItsSecondSpecies) {
  PlumeSetup tables = Tables();
  tables.energy = {{10, 0}};
  PlumeModel model;
  model.Add(20, 1);
  model.Run(tables);
  EXPECT_EQ(model.Data(1, 33), 0);
  EXPECT_EQ(model.Data(1, 13), 0);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
}

TEST(PlumeFailures, OneSpeciesHasNoDensity) {
  PlumeSetup setup = Cosine(0);
  ThrusterVector data = setup.Data();
  data(slot::Charge2) = GeneralValue();
  data(slot::CurrentFraction1) = 1.0;
  data(slot::CurrentFraction2) = 0.0;
  PlumeModel model;
  model.Add(20, 1);
  model.Run(data);
  setup.share1 = 1;
  const PlumeValues x = setup.Model0(20, 1);
  EXPECT_EQ(model.Data(1, 13), 0);
  EXPECT_NEAR(model.Data(1, 15), x.J, 1e-12 * x.J);
  EXPECT_NEAR(model.Data(1, 33), x.n1, 1e-12 * x.n1);
  EXPECT_NEAR(model.Data(1, 34), -x.n1, 1e-12 * x.n1);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
}

TEST(PlumeFailures, ACurrentLawThatFailsKeepsTheCurrentOfTheCellBefore) {
  PlumeSetup setup = WithEnergy(1);
  setup.C[11] = 0;
  PlumeModel model;
  model.Add(20, 1);
  model.Add(0, 1);  // C10 / 0
  model.Run(setup);
  EXPECT_NEAR(model.Data(1, 15), setup.Model1(20, 1).J, 1e-12 * model.Data(1, 15));
  EXPECT_NEAR(model.Data(2, 15), setup.Model1(20, 1).J, 1e-12 * model.Data(1, 15));
  EXPECT_NEAR(model.Data(2, 14), setup.Model1(20, 1).N, 1e-12 * model.Data(1, 14));
  EXPECT_NEAR(model.Data(2, 16), setup.InverseSquareE(0), 1e-10);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
}

TEST(PlumeFailures, AnEnergyLawThatFailsKeepsTheEnergyOfTheCellBefore) {
  PlumeSetup setup = WithEnergy(1);
  setup.C[15] = 0;
  PlumeModel model;
  model.Add(20, 1);
  model.Add(0, 1);  // C14 / 0
  model.Run(setup);
  EXPECT_EQ(model.Data(2, 16), model.Data(1, 16));
  PlumeSetup second = WithEnergy(2);
  second.C[15] = 0;
  PlumeModel cleared;
  cleared.Add(20, 1);
  cleared.Add(0, 1);
  cleared.Run(second);
  EXPECT_EQ(cleared.Data(2, 16), 0);  // there it is 0 before the law
  PlumeSetup exponential;
  exponential.C = {0, 0, 0, 3.79, 230, 4.95, -4.006, 0.3, 90, 4.085, 0.02978, 312, 0, 24, 0.6485, 21, 60, 100};
  PlumeModel third;
  third.Add(20, 1);
  third.Run(exponential);
  EXPECT_EQ(third.Data(1, 16), 230);  // the law divides by C12: still the energy of C4
}

TEST(PlumeFailures, ASilentFailureGoesOn) {
  PlumeModel model;
  PlumeSetup setup = Cosine(0);
  setup.C[8] = 180;
  model.Add(120, 1);  // a negative cosine to a broken power
  model.Run(setup);
  for (const int q : {13, 14, 15}) EXPECT_EQ(model.Data(1, q), 0) << q;
  EXPECT_EQ(model.Data(1, 16), 230);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeFailures, ANegativeEnergyKeepsTheVelocities) {
  PlumeSetup setup = WithEnergy(2);
  setup.C[13] = -1000;
  PlumeModel model;
  model.Add(20, 1);
  model.Run(setup);
  EXPECT_LT(model.Data(1, 16), 0);
  EXPECT_NEAR(model.Data(1, 17), setup.Speed(1, 230), 1e-7);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(PlumeFailures, ACellAtTheSourceHasNoCurrent) {
  PlumeModel model;
  model.Add(20, 0);
  model.Add(20, 1);
  model.Run(Cosine(0));
  EXPECT_EQ(model.Data(1, 13), 0);
  EXPECT_EQ(model.Data(1, 15), 0);
  EXPECT_NEAR(model.Data(1, 14), Cosine(0).CosineN(20), 1e-12);
  model.Expect(2, Cosine(0).Model0(20, 1));
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
}

TEST(PlumeFailures, ASubscriptGoesThroughTheSmallError) {
  PlumeModel model(1, 2);
  model.Add(20, 1);
  model.Add(20, 1);
  model.Set(1, 0, 0, 2) = 3;  // one cell more than the arrays hold
  model.Run(Cosine(0));
  model.Expect(1, Cosine(0).Model0(20, 1));
  model.Expect(2, Cosine(0).Model0(20, 1));
  ASSERT_GE(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text.substr(0, 12), "faute x16 \r\n");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Petite erreur");
  EXPECT_EQ(model.dialogs.boxes[1].text, "Subscript out of range");
  EXPECT_EQ(model.dialogs.boxes[1].title, kTitle);
  EXPECT_EQ(model.dialogs.Count("Subscript out of range"), 1);
}

TEST(PlumeFailures, AbsurdThrustersEnd) {
  for (const double number : {0.0, 1.0, 2.0, 3.0, 100.0, 1000.0}) {
    for (const double value : {0.0, 1e300, -1e300, 1e-300}) {
      PlumeSetup setup = Tables();
      setup.C.fill(value);
      setup.C[8] = 90;
      setup.C[17] = number;
      for (auto* table : {&setup.density, &setup.energy, &setup.ratio}) {
        for (auto& row : *table) row = {value, value};
      }
      setup.charge1 = value;
      setup.molarMass = value;
      PlumeModel model;
      model.Add(20, 1);
      model.Add(0, 0);
      EXPECT_NO_THROW(model.Run(setup)) << number << " " << value;
    }
  }
}

}  // namespace
}  // namespace orv::testing
