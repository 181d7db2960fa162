#include <gtest/gtest.h>
#include <tbb/global_control.h>
#include <tbb/task_arena.h>

#include "plume/redeposition_model.h"
#include "plume/sputter_stores.h"

namespace orv::testing {
namespace {

const char* const kAbort = "Do you want to abort? See Hallam if the error cannot be solved ";

TEST(RedepositionTurn, EachStepOfATurnDepositsItsShare) {
  TurningModel model;
  model.Build();
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
  // Onto the floor by the wing, step by step: silver is the second material.
  std::vector<double> sum(6, 0);
  std::size_t landing = 0;
  for (int s = 1; s <= 8; ++s) {
    TurningModel step;
    step.Build();
    step.geometry.rotation.RotationAngle = 45 * (s - 1);
    const GeometryInput input{step.table, step.count, 0};
    a_SpaceApplicationGeometry(input, step.names, step.cells, step.geometry, step.reader);
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) {
        step.At(3, i, j, 19) = static_cast<double>(model.stores.RotationCellStore(s, i, j, 0));
        step.At(3, i, j, 62) = 0;
      }
    }
    // The exponents of the step are not kept: the plate alone tells, so they are taken from a standing run.
    SputterModel standing(
        {{"HT", kTestThruster},
         {"silver", "Wing rect size 0.6 0.4 cells 3 2 R X " + std::to_string(45 * (s - 1)) + " T 0.8 0 1"}});
    standing.directives.RectoOnly = 1;
    standing.Build();
    standing.Run();
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) step.At(3, i, j, 62) = standing.Q(2, i, j, 62);
    }
    const std::vector<PlainReceiver> receivers = Receivers(step, 4);
    std::vector<double> rate(6);
    std::vector<float> stored(6);
    reference::PlainRedeposition(Emitters(step, 3, "silver"), receivers, rate, stored);
    float least = 1e+31F;
    float most = 0;
    for (std::size_t n = 0; n < 6; ++n) {
      const int i = static_cast<int>(n) / 3 + 1;
      const int j = static_cast<int>(n) % 3 + 1;
      EXPECT_NEAR(model.Stored(s, i, j, 2, 4), rate[n], 2e-6 * rate[n]) << s << " " << n;
      sum[n] += rate[n];
      least = std::min(least, model.Stored(s, i, j, 2, 4));
      most = std::max(most, model.Stored(s, i, j, 2, 4));
      landing += rate[n] > 0 ? 1U : 0U;
    }
    if (most == 0) continue;
    EXPECT_EQ(model.Least(s, 2, 4), least);
    EXPECT_EQ(model.Most(s, 2, 4), most);
  }
  EXPECT_GT(landing, 10U);
  for (std::size_t n = 0; n < 6; ++n) {
    const int i = static_cast<int>(n) / 3 + 1;
    const int j = static_cast<int>(n) % 3 + 1;
    EXPECT_NEAR(model.Q(4, i, j, 91), sum[n], 2e-6 * sum[n]);
    EXPECT_NEAR(model.Stored(0, i, j, 2, 4), sum[n], 2e-6 * sum[n]);
  }
  // No minimum is left at its start.
  for (int s = -1; s <= 8; ++s) {
    for (int slot = 0; slot <= 15; ++slot) {
      for (int p = 0; p <= 40; ++p) EXPECT_LT(model.Least(s, slot, p), 1);
    }
  }
}

TEST(RedepositionTurn, ATurningTargetReceivesAtEachOfItsSteps) {
  TurningModel model;
  model.Build();
  model.Run();
  const std::vector<PlainEmitter> gold = Emitters(model, 2, "gold");
  ASSERT_EQ(gold.size(), 4U);
  std::vector<double> rate(6);
  for (int s = 1; s <= 8; ++s) {
    std::vector<PlainReceiver> receivers;
    for (int i = 1; i <= 3; ++i) {
      for (int j = 1; j <= 2; ++j) {
        const auto q = [&](int quantity) {
          return static_cast<double>(model.stores.RotationCellStore(s, i, j, quantity));
        };
        receivers.push_back({q(1), q(2), q(3), q(5), q(6), q(7), model.rotation.RotPercentTable(s, 2)});
      }
    }
    std::vector<double> ofStep(6);
    std::vector<float> stored(6);
    reference::PlainRedeposition(gold, receivers, ofStep, stored);
    for (std::size_t n = 0; n < 6; ++n) {
      rate[n] += ofStep[n];
      EXPECT_FLOAT_EQ(model.Stored(s, static_cast<int>(n) / 2 + 1, static_cast<int>(n) % 2 + 1, 1, 3), stored[n]);
    }
    EXPECT_EQ(model.Most(s, 1, 3), *std::max_element(stored.begin(), stored.end()));
  }
  ExpectNear(model.Values(3, 90), rate);
  for (std::size_t n = 0; n < 6; ++n) {
    EXPECT_NEAR(model.Stored(0, static_cast<int>(n) / 2 + 1, static_cast<int>(n) % 2 + 1, 1, 3), rate[n],
                1e-6 * rate[n]);
  }
  EXPECT_GT(model.Volume(3, 90), 0);
  EXPECT_TRUE(HasLanded(model.stores, 3, "gold"));
}

TEST(RedepositionTurn, ATurnIsTheWeightedSumOfStandingTargets) {
  TurningModel model;
  model.Build();
  model.Run();
  std::vector<double> sum(6);
  for (int s = 1; s <= 8; ++s) {
    SputterModel standing(
        {{"HT", kTestThruster},
         {"gold", "Plate rect size 0.3 0.3 cells 2 2 R X 180 T 0 0 1"},
         {"silver", "Wing rect size 0.6 0.4 cells 3 2 R X " + std::to_string(45 * (s - 1)) + " T 0.8 0 1"},
         {"carbon", "Floor rect size 0.4 0.4 cells 2 3 T 0.5 0 0.3"}},
        90);
    standing.directives.RectoOnly = 1;
    standing.Build();
    standing.Run();
    const std::vector<double> step = standing.Values(3, 90);
    for (std::size_t n = 0; n < 6; ++n) sum[n] += step[n] * model.rotation.RotPercentTable(s, 2);
  }
  const std::vector<double> turn = model.Values(3, 90);
  for (std::size_t n = 0; n < 6; ++n) EXPECT_NEAR(turn[n], sum[n], 1e-5 * sum[n]);
}

TEST(RedepositionTurn, AConcaveTurningPrimitiveIsNotProcessed) {
  SputterModel model({{"HT", kTestThruster},
                      {"silver", "Bowl sph size 0.4 0.3 1 cells 6 4 Automatic X T 0 0 1"},
                      {"gold", "Floor rect size 0.4 0.4 cells 2 3 T 0.5 0 0.3"}},
                     90);
  model.directives.RectoOnly = 1;
  model.Build();
  model.Run();
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "The rotating primitive is not convexe: Case not processed, see hallam");
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  EXPECT_EQ(model.Volume(2, 90), 0);
  EXPECT_GT(model.Volume(3, 90), 0);
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(model.Run(), ProgramEnd);
}

TEST(RedepositionTurn, ThreadsDoNotChangeABitOfARun) {
  const tbb::global_control seven(tbb::global_control::max_allowed_parallelism, 7);
  std::vector<std::vector<double>> expected;
  for (const int threads : {1, 2, 7}) {
    TurningModel model(100);
    model.table(4, 2) = "Floor rect size 0.4 0.4 cells 20 30 T 0.5 0 0.3";
    model.Build();
    tbb::task_arena(threads).execute([&] { model.Run(); });
    std::vector<std::vector<double>> values;
    for (int p = 2; p <= 4; ++p) {
      for (int q = 90; q <= 104; ++q) values.push_back(model.Values(p, q));
    }
    values.emplace_back(model.stores.RedepositionExtrema.values().begin(),
                        model.stores.RedepositionExtrema.values().end());
    if (threads == 1) expected = values;
    EXPECT_TRUE(values == expected) << threads;
    EXPECT_GT(model.Volume(4, 91), 0);
  }
}

TEST(RedepositionTurn, TheSumOfTheStepsIsTheAverageOfTheTurn) {
  TurningModel model(100);
  model.Build();
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
  EXPECT_GT(model.Volume(3, 90), 0);
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 2; ++j) {
      double sum = 0;
      for (int s = 1; s <= 8; ++s) sum += static_cast<double>(model.Stored(s, i, j, 1, 3));
      EXPECT_NEAR(model.Q(3, i, j, 90), sum, 1e-6 * sum);
    }
  }
}

}  // namespace
}  // namespace orv::testing
