#include "plume/sputter_turn.h"

#include <cmath>
#include <gtest/gtest.h>

#include "numerics/number_format.h"
#include "plume/rotation_step.h"
#include "plume/sputter_model.h"

namespace orv::testing {
namespace {

const char* const kAbort = "Do you want to abort? See Hallam if the error cannot be solved ";

// A wing that turns about its long side beside a standing plate.
SputterModel Wing(double plot = 19, const std::string& cells = "3 2", const std::string& second = "gold") {
  return SputterModel({{"HT", kTestThruster},
                       {second, "Deck rect size 0.4 0.4 cells 3 3 R X 180 T 0 0 1.5"},
                       {"silver", "Wing rect size 0.6 0.4 cells " + cells + " Automatic X T 0.8 0 1"}},
                      plot);
}

// Erosion of the wing when it stands at an angle.
std::vector<double> Standing(double angle, const std::string& cells = "3 2") {
  SputterModel model(
      {{"HT", kTestThruster},
       {"gold", "Deck rect size 0.4 0.4 cells 3 3 R X 180 T 0 0 1.5"},
       {"silver", "Wing rect size 0.6 0.4 cells " + cells + " R X " + NumberText(angle) + " T 0.8 0 1"}});
  model.directives.RectoOnly = 1;
  model.Build();
  return model.Run().Values(3, 19);
}

TEST(SputterTurn, IsTheWeightedSumOfStandingRuns) {
  const std::vector<double> weights = {0.1, 0.2, 0.05, 0.15, 0.3, 0.2};
  SputterModel model = Wing();
  model.directives.RectoOnly = 1;
  model.Turn(0, 60, weights);
  model.Build();
  ASSERT_EQ(model.geometry.rotation.RotatingPrimitive, 3);
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
  std::vector<double> sum(6, 0);
  for (std::size_t s = 0; s < weights.size(); ++s) {
    const std::vector<double> step = Standing(60 * static_cast<double>(s));
    double least = 1;
    double most = 0;
    for (std::size_t n = 0; n < sum.size(); ++n) {
      const int i = static_cast<int>(n) / 2 + 1;
      const int j = static_cast<int>(n) % 2 + 1;
      const double weighted = step[n] * weights[s];
      EXPECT_NEAR(model.stores.RotationCellStore(s + 1, i, j, 0), weighted, 1e-6 * weighted) << s << " " << n;
      sum[n] += weighted;
      least = std::min(least, weighted);
      most = std::max(most, weighted);
    }
    EXPECT_NEAR(model.stores.SputterRotationList(s + 1, 1), least, 1e-6 * least);
    EXPECT_NEAR(model.stores.SputterRotationList(s + 1, 2), most, 1e-6 * most);
    EXPECT_EQ(model.stores.RotationCellStore(s + 1, 0, 0, 0), 60.0F * static_cast<float>(s));
  }
  const std::vector<double> average = model.Values(3, 19);
  double largest = 0;
  for (std::size_t n = 0; n < sum.size(); ++n) {
    EXPECT_GT(sum[n], 0);
    EXPECT_NEAR(average[n], sum[n], 1e-6 * sum[n]);
    largest = std::max(largest, average[n]);
  }
  EXPECT_EQ(model.output.largestAverage, largest);
}

TEST(SputterTurn, AveragesAreTheSumsOfWhatTheStoreHolds) {
  SputterModel model = Wing();
  model.Build();
  model.Run();
  const auto& store = model.stores.RotationCellStore;
  EXPECT_EQ(store(0, 0, 0, 1), 3);
  EXPECT_EQ(store(0, 0, 0, 2), 2);
  EXPECT_EQ(store(0, 0, 0, 3), 4);
  double least = 1;
  double most = 0;
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 2; ++j) {
      double sum = 0;
      for (int s = 1; s <= 4; ++s) sum += static_cast<double>(store(s, i, j, 0));
      EXPECT_EQ(model.Q(3, i, j, 19), sum);
      EXPECT_EQ(store(0, i, j, 0), static_cast<float>(sum));
      least = std::min(least, sum);
      most = std::max(most, sum);
    }
  }
  EXPECT_EQ(model.stores.SputterRotationList(0, 1), least);
  EXPECT_EQ(model.stores.SputterRotationList(0, 2), most);
  EXPECT_EQ(model.output.smallestAverage, least);
  EXPECT_EQ(model.output.largestAverage, most);
  EXPECT_EQ(model.output.summary, "  (Average/Rotations  R " + NumberText(least) + " to " + NumberText(most) +
                                      " i.e. " + NumberText(most * (1000000.0 * 3600)) + " µm/h ) ");
}

TEST(SputterTurn, EachStepKeepsTheQuantitiesOfItsCells) {
  SputterModel model = Wing();
  model.Turn(10, 90, {0.25, 0.25, 0.25, 0.25}, 5);
  model.Build();
  model.Run();
  // The third step stands at 190 degrees and 5 degrees of shift.
  SputterModel standing = Wing();
  standing.Build();
  EffectContext context = standing.Context();
  RenewRotationStep(context, 195, StepScope::RotatingPrimitive);
  for (const int q : {1, 2, 3, 4, 5, 6, 7, 9, 10, 15, 16, 20, 61}) {
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) {
        EXPECT_EQ(model.stores.RotationCellStore(3, i, j, q), static_cast<float>(standing.Q(3, i, j, q))) << q;
      }
    }
  }
  EXPECT_EQ(model.stores.RotationCellStore(3, 0, 0, 0), 190);
  for (int axis = 1; axis <= 3; ++axis) {
    EXPECT_EQ(model.stores.AutoRotatedStore(3, 2, 1, axis, 1), static_cast<float>(standing.Q(3, 2, 1, axis)));
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(SputterTurn, EndsAtTheAngleZero) {
  SputterModel model = Wing();
  model.Build();
  std::vector<std::vector<double>> before;
  const auto quantities = {1, 2, 3, 5, 6, 7, 8, 9, 10, 20, 60};
  for (const int p : {2, 3}) {
    for (const int q : quantities) before.push_back(model.Values(p, q));
  }
  model.Turn(0, 90, {0.25, 0.25, 0.25, 0.25}, 33);
  model.Run();
  auto expected = before.begin();
  for (const int p : {2, 3}) {
    for (const int q : quantities) {
      const std::vector<double> now = model.Values(p, q);
      for (std::size_t n = 0; n < now.size(); ++n) EXPECT_NEAR(now[n], (*expected)[n], 1e-9) << p << " " << q;
      ++expected;
    }
  }
}

TEST(SputterTurn, AllPrimitivesThatTurnAreKept) {
  SputterModel model({{"HT", kTestThruster},
                      {"silver", "Left rect size 0.6 0.4 cells 2 2 Automatic X T -0.8 0 1"},
                      {"silver", "Right rect size 0.6 0.4 cells 3 1 Automatic X T 0.8 0 1"}});
  model.Build();
  ASSERT_EQ(model.geometry.RotatedCount(), 2);
  model.Run();
  // At the second step both stand upright.
  EXPECT_NEAR(model.stores.AutoRotatedStore(2, 1, 1, 2, 1), 0, 1e-6);
  EXPECT_NEAR(std::abs(model.stores.AutoRotatedStore(2, 1, 1, 3, 1) - 1), 0.1, 1e-6);
  EXPECT_NEAR(model.stores.AutoRotatedStore(2, 3, 1, 1, 2), 0.6, 1e-6);
  EXPECT_EQ(model.stores.AutoRotatedStore(2, 3, 1, 0, 2), 0);
}

TEST(SputterTurn, OtherPlotsDoNotTurn) {
  SputterModel turned = Wing(13);
  turned.Build();
  turned.Run();
  EXPECT_EQ(turned.stores.RotationCellStore(1, 1, 1, 1), 0);
  EXPECT_EQ(turned.output.summary, "");
  SputterModel standing = Wing(19);
  standing.Build();
  standing.geometry.rotation.RotatingPrimitive = 0;
  standing.Run();
  EXPECT_EQ(standing.output.summary, "");
}

TEST(SputterTurn, TheRotatingPrimitiveIsSweptFirst) {
  // The material of the standing deck is missing: it takes that of the primitive swept before it, the wing.
  SputterModel model = Wing(19, "3 2", "unobtainium");
  model.Build();
  model.Run();
  EXPECT_EQ(
      model.dialogs.boxes[0].text,
      "Database wrong: material not found. Note in case of 2 materials, please separate with a pipe | unobtainium");
  SputterModel silver = Wing(19, "3 2", "silver");
  silver.Build();
  silver.Run();
  EXPECT_EQ(model.Values(2, 19), silver.Values(2, 19));
  EXPECT_GT(model.Volume(2, 19), 0);
}

TEST(SputterTurn, MoreThan72CellsAreTruncated) {
  SputterModel model = Wing(19, "73 74");
  model.Turn(180, 360, {1});
  model.Build();
  model.Run();
  ASSERT_EQ(model.dialogs.boxes.size(), 4U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "The number of  elements  on X of the rotating primitive is= 73, which is higher than the limit = 72. "
            "Results will be truncated................... See Maravo for update. ");
  EXPECT_EQ(model.dialogs.boxes[0].title, " Update required");
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  EXPECT_EQ(model.dialogs.boxes[2].text,
            "The number of  elements  on Y of the rotating primitive is= 74, which is higher than the limit = 72. "
            "Results will be truncated................... See Maravo for update");
  EXPECT_EQ(model.dialogs.boxes[2].title, " Update required");
  EXPECT_EQ(model.dialogs.boxes[3].text, kAbort);
  EXPECT_EQ(model.stores.RotationCellStore(0, 0, 0, 1), 72);
  EXPECT_EQ(model.stores.RotationCellStore(0, 0, 0, 2), 72);
  EXPECT_GT(model.Q(3, 73, 74, 59), 0);
  EXPECT_GT(model.Q(3, 72, 72, 19), 0);
  EXPECT_EQ(model.Q(3, 73, 72, 19), 0);
  EXPECT_EQ(model.Q(3, 72, 73, 19), 0);
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(), ProgramEnd);
}

TEST(SputterTurn, SeventyTwoCellsPass) {
  SputterModel model = Wing(19, "72 1");
  model.UniformTurn(1, 360);
  model.Build();
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(SputterTurn, AnAngleThatTheTableDoesNotHaveIsTold) {
  SputterModel model = Wing();
  model.Build();
  model.rotation.RotPercentTable(3, 1) = 181;
  model.Run();
  ASSERT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.boxes[0].title, "Petite erreur");
  EXPECT_EQ(model.dialogs.log.front(), "Error Rot% in Sputtering");
}

TEST(SputterTurn, AWrongNumberOfStepsIsTold) {
  SputterModel model = Wing();
  model.Build();
  model.rotation.RotationSteps = 5;
  model.Run();
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "Error nb rotation steps");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
}

TEST(SputterTurn, StepsBeyondTheStoresFailAndTheTurnGoesOn) {
  SputterModel model = Wing();
  model.Build();
  model.rotation.RotationSteps = 2;
  model.Run();
  EXPECT_EQ(model.dialogs.Count("Subscript out of range"), 1);  // Ignore is remembered
  EXPECT_EQ(model.dialogs.Count("Error nb rotation steps"), 1);
  SputterModel whole = Wing();
  whole.Build();
  whole.Run();
  EXPECT_EQ(model.Values(3, 19), whole.Values(3, 19));
}

TEST(SputterTurn, ABrokenStepMakesNoTurn) {
  for (const double step : {0.0, -10.0}) {
    SputterModel model = Wing();
    model.Build();
    model.directives.RotationStep = step;
    model.Run();
    EXPECT_EQ(model.Volume(3, 19), 0);
    EXPECT_EQ(model.dialogs.Count("Error nb rotation steps"), 1);
  }
}

TEST(SputterTurn, ProgressIsReportedAndACancellationPassesThrough) {
  struct Cancelled {};
  class Cancelling : public ScriptedDialogs {
   public:
    void Progress(const std::string& phase, double share) override {
      EXPECT_GE(share, 0);
      EXPECT_LE(share, 1);
      seen = phase;
      throw Cancelled{};
    }
    std::string seen;
  } dialogs;
  SputterModel model = Wing();
  model.Build();
  ErrorPrompt prompt(dialogs);
  CellText reader(prompt, Locale{});
  const EffectContext own = model.Context();
  EffectContext context{own.ModelCells,
                        own.NumberOfPrimitives,
                        own.directives,
                        own.constants,
                        own.IndexPlot,
                        own.PlotOptionC,
                        own.MaiOrigine,
                        own.RedepositionOn,
                        own.CleaningOn,
                        own.AutomaticRotationActive,
                        own.SputterRotationActive,
                        own.HeatFluxScale,
                        own.cells,
                        own.geometry,
                        own.PrimitiveNames,
                        own.ResultLabels,
                        own.thruster,
                        own.materials,
                        own.rayTracing,
                        own.rotation,
                        own.stores,
                        own.tables,
                        reader};
  SputterOutput output;
  EXPECT_THROW(aSpaceApplicationEffectSPUTTERING(context, {}, output), Cancelled);
  EXPECT_FALSE(dialogs.seen.empty());
}

// A thruster given by tables, for the bands of its plume.
void UseTables(SputterModel& model) {
  auto& data = model.thruster.ThrusterData;
  data(slot::LastParameter) = 1000.0;
  data(slot::FirstParameter + 13) = 90.0;
  const std::vector<double> points = {1, 0.3, 20, 0.25, 40, 0.2, 60, 0.1, 80, 0.05, /* energy */ 1, 300, 90, 200};
  for (std::size_t k = 0; k < points.size(); ++k) data(25 + k) = points[k];
  data(slot::indexfinThruster) = 24.0;
  data(slot::indexfinThrusterDensity) = 34.0;
  data(slot::indexfinThrusterEnergy) = 38.0;
  data(slot::indexfinThrusterXepDens) = 38.0;
}

TEST(SputterTurn, ABandOfThePlumeErodesItsShare) {
  double largest = 0;
  for (const int band : {1, 2, 3}) {
    SputterModel model = Wing();
    UseTables(model);
    model.Build();
    model.Run(band);
    EXPECT_EQ(model.output.SpectrumAngle, 80 - 20 * band);
    // The wing is seen at 29 to 48 degrees.
    largest = std::max(largest, model.output.largestAverage);
    EXPECT_EQ(model.output.largestAverage > 0, band != 1);
    EXPECT_TRUE(model.dialogs.boxes.empty());
  }
  SputterModel full = Wing();
  UseTables(full);
  full.Build();
  full.Run();
  EXPECT_EQ(full.output.SpectrumAngle, -1);
  EXPECT_GT(largest, 0);
  EXPECT_LE(largest, full.output.largestAverage);
}

TEST(SputterTurn, NoticesOfASpectrumComeWithItsFirstBand) {
  SputterModel model = Wing();
  UseTables(model);
  model.SetYields("silver", 10490, 107.87, {{150, 0.9, 1.4, 50, 0.7}});
  model.SetYields("gold", 10490, 107.87, {{150, 0.9, 1.4, 50, 0.7}});
  model.Build();
  for (int band = 1; band <= 3; ++band) {
    model.Run(band);
    EXPECT_EQ(model.dialogs.Count("Extrapolation in energy"), 1) << band;
  }
}

}  // namespace
}  // namespace orv::testing
