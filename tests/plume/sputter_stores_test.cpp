#include "plume/sputter_stores.h"

#include <gtest/gtest.h>

#include "plume/redeposition_model.h"

namespace orv::testing {
namespace {

TEST(SputterStores, CleaningAndNetOfStandingPrimitives) {
  ThreeModel model(95);
  model.Build();
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
  EXPECT_EQ(model.RedepositionOn, 1);
  // What the beam would do to the side plate if it were of silver.
  SputterModel silver(
      {ThreePrimitives()[0], ThreePrimitives()[1], {"silver", ThreePrimitives()[2][1]}, ThreePrimitives()[3]}, 19);
  silver.directives.RectoOnly = 1;
  silver.Build();
  silver.Run();
  EXPECT_EQ(model.Values(3, 95), silver.Values(3, 19));
  EXPECT_EQ(model.Values(3, 59), silver.Values(3, 59));  // set again by the cleaning
  EXPECT_EQ(model.Values(3, 62), silver.Values(3, 62));
  EXPECT_GT(model.Volume(3, 95), 0);
  EXPECT_EQ(model.Volume(3, 96), 0);  // no gold lands on it
  for (int p = 2; p <= 4; ++p) {
    for (int slot = 1; slot <= 2; ++slot) {
      float least = 1e+31F;
      float most = 0;
      for (int i = 1; i <= model.cells.CountI(p); ++i) {
        for (int j = 1; j <= model.cells.CountJ(p); ++j) {
          const double net = std::max(model.Q(p, i, j, 89 + slot) - model.Q(p, i, j, 94 + slot), 0.0);
          EXPECT_EQ(model.Q(p, i, j, 99 + slot), net);
          const float cleaned = static_cast<float>(model.Q(p, i, j, 94 + slot));
          EXPECT_EQ(model.Stored(0, i, j, slot + 5, p), cleaned);
          EXPECT_EQ(model.Stored(0, i, j, slot + 10, p), std::max(model.Stored(0, i, j, slot, p) - cleaned, 0.0F));
          least = std::min(least, cleaned);
          most = std::max(most, cleaned);
        }
      }
      EXPECT_EQ(model.Least(0, slot + 5, p), least) << p << " " << slot;
      EXPECT_EQ(model.Most(0, slot + 5, p), most);
    }
  }
}

TEST(SputterStores, NetIsWhatStaysWhereTheBeamDoesNotReach) {
  // The floor looks up, away from the thruster: with recto nothing cleans it.
  SputterModel model({{"HT", kTestThruster},
                      {"silver", "Plate rect size 0.6 0.4 cells 2 2 R X 180 T 0 0 1"},
                      {"gold", "Floor rect size 0.4 0.4 cells 2 2 T 0.5 0 0.3"}},
                     100);
  model.directives.RectoOnly = 1;
  model.Build();
  model.Run();
  EXPECT_GT(model.Volume(3, 90), 0);
  EXPECT_EQ(model.Volume(3, 95), 0);
  EXPECT_EQ(model.Values(3, 100), model.Values(3, 90));
  EXPECT_EQ(model.Least(0, 11, 3), model.Least(0, 1, 3));
  EXPECT_EQ(model.Most(0, 11, 3), model.Most(0, 1, 3));
}

TEST(SputterStores, CleaningOfATurnStepByStep) {
  TurningModel model(95);
  model.Build();
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
  // Gold landed on the silver wing: it is cleaned as if the wing were of gold.
  TurningModel gold(19);
  gold.table(3, 1) = "gold";
  gold.Build();
  gold.Run();
  for (int i = 1; i <= 3; ++i) {
    for (int j = 1; j <= 2; ++j) {
      double sum = 0;
      for (int s = 1; s <= 8; ++s) {
        const float cleaned = model.Stored(s, i, j, 6, 3);
        const float expected = gold.stores.RotationCellStore(s, i, j, 0);
        EXPECT_NEAR(cleaned, expected, 1e-5 * static_cast<double>(expected)) << s;
        EXPECT_EQ(model.Stored(s, i, j, 11, 3), std::max(model.Stored(s, i, j, 1, 3) - cleaned, 0.0F));
        sum += static_cast<double>(cleaned);
      }
      EXPECT_NEAR(model.Q(3, i, j, 95), sum, 1e-6 * sum);
      EXPECT_EQ(model.Stored(0, i, j, 6, 3), static_cast<float>(model.Q(3, i, j, 95)));
    }
  }
  EXPECT_GT(model.Volume(3, 95), 0);
  // The floor stands: its rate is spread over the steps by their share of the time.
  for (int s = 1; s <= 8; ++s) {
    float least = 1e+31F;
    float most = 0;
    for (int i = 1; i <= 2; ++i) {
      for (int j = 1; j <= 3; ++j) {
        const float cleaned = static_cast<float>(model.Q(4, i, j, 96) * model.rotation.RotPercentTable(s, 2));
        EXPECT_EQ(model.Stored(s, i, j, 7, 4), cleaned);
        const float net = std::max(model.Stored(s, i, j, 2, 4) - cleaned, 0.0F);
        EXPECT_EQ(model.Stored(s, i, j, 12, 4), net);
        least = std::min(least, net);
        most = std::max(most, net);
      }
    }
    EXPECT_EQ(model.Least(s, 12, 4), least);
    EXPECT_EQ(model.Most(s, 12, 4), most);
  }
  // The wing is back at the angle 0, exactly.
  EXPECT_NEAR(model.Q(3, 1, 1, 7), 1, 1e-12);
  EXPECT_NEAR(model.Q(3, 1, 1, 3), 1, 1e-12);
}

TEST(SputterStores, Bounds) {
  ThreeModel model;
  model.rotation.RotationSteps = 7;
  EffectContext context = model.Context();
  SizeSputterStores(context);
  const auto expect = [](const Bounds& bounds, std::ptrdiff_t lower, std::ptrdiff_t upper) {
    EXPECT_EQ(bounds.lower, lower);
    EXPECT_EQ(bounds.upper, upper);
  };
  const EffectStores& stores = model.stores;
  for (std::size_t d = 0; d < 4; ++d) {
    expect(stores.RotationCellStore.bounds(d), 0, std::array{7, 72, 72, 120}[d]);
    expect(stores.RedepositionExtrema.bounds(d), std::array{-1, 1, 0, 0}[d], std::array{7, 2, 15, 40}[d]);
  }
  for (std::size_t d = 0; d < 5; ++d) {
    expect(stores.RedepositionStore.bounds(d), 0, std::array{7, 32, 32, 15, 40}[d]);
    expect(stores.AutoRotatedStore.bounds(d), 0, std::array{7, 72, 72, 3, 20}[d]);
  }
  expect(stores.SputterRotationList.bounds(0), -1, 7);
  expect(stores.SputterRotationList.bounds(1), 1, 2);
  expect(stores.RedepositedMaterials.bounds(0), 0, 40);
  expect(stores.RedepositedMaterials.bounds(1), 0, 15);
}

TEST(SputterStores, LandingsAreNotedOnce) {
  ThreeModel model;
  EffectContext context = model.Context();
  SizeSputterStores(context);
  EXPECT_FALSE(HasLanded(model.stores, 3, "gold"));
  NoteLanding(model.stores, 3, "gold");
  NoteLanding(model.stores, 3, "silver");
  NoteLanding(model.stores, 3, "gold");
  EXPECT_EQ(model.stores.RedepositedMaterials(3, 0), "2");
  EXPECT_TRUE(HasLanded(model.stores, 3, "silver"));
  EXPECT_FALSE(HasLanded(model.stores, 3, "Silver"));
  EXPECT_FALSE(HasLanded(model.stores, 2, "gold"));
  EXPECT_FALSE(HasLanded(model.stores, 41, "gold"));
}

}  // namespace
}  // namespace orv::testing
