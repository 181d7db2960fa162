#include "plume/redeposition.h"

#include <cmath>
#include <gtest/gtest.h>

#include "geometry/quantities.h"
#include "plume/sputter_model.h"
#include "plume/surface_cells.h"
#include "reference/plain_redeposition.h"

namespace orv::testing {
namespace {

using reference::PlainEmitter;
using reference::PlainReceiver;

const char* const kAbort = "Do you want to abort? See Hallam if the error cannot be solved ";

// A plate that the beam erodes, one that sees it, and a ball.
std::vector<std::array<std::string, 2>> ThreePrimitives() {
  return {{"HT", kTestThruster},
          {"silver", "Plate rect size 0.6 0.4 cells 4 3 R X 180 T 0 0 1"},
          {"gold", "Side rect size 0.5 0.5 cells 3 5 R Y 90 T -0.6 0 0.6"},
          {"silver", "Ball cyl size 0.1 0.4 1 cells 8 3 T 0.5 0.3 0.2"}};
}

struct ThreeModel : SputterModel {
  explicit ThreeModel(double plot = 90) : SputterModel(ThreePrimitives(), plot) { directives.RectoOnly = 1; }
};

// One redeposition step on its own, without the sweep.
class Bench {
 public:
  explicit Bench(SputterModel& sputterModel, int turning = 0)
      : model(sputterModel),
        context(model.Context()),
        block(model.prompt, {"sub", "title"}),
        progress(model.dialogs),
        redeposition(context, block, progress, turning) {
    SizeSputterStores(context);
    OpenExtrema(context.stores);
  }
  // All cells of the primitive erode at one speed, or as given.
  ErosionSpeeds Speeds(int p, double speed) const {
    ErosionSpeeds speeds{model.cells.CountI(p), model.cells.CountJ(p), {}};
    speeds.speed.assign(static_cast<std::size_t>(speeds.countI * speeds.countJ), speed);
    return speeds;
  }
  void From(int p, int step, const ErosionSpeeds& speeds) {
    LoadSurfaceMaterials(context, p, block, materials);
    redeposition.FromPrimitive(p, step, speeds, materials);
  }
  void From(int p, double speed = 1e-10) { From(p, 0, Speeds(p, speed)); }

  SputterModel& model;
  EffectContext context;
  FailureBlock block;
  ProgressPace progress;
  Redeposition redeposition;
  SurfaceMaterials materials;
};

// What a primitive emits and receives, for the plain form; G from quantity 19.
std::vector<PlainEmitter> Emitters(const SputterModel& model, int p, const std::string& material) {
  const auto& names = model.materials.MaterialNames;
  const int m = static_cast<int>(std::find(names.begin(), names.end(), material) - names.begin());
  const double volume = model.materials.MaterialTable(m, 3).number() / 1000 / model.constants.AvogadroNumber /
                        model.materials.MaterialTable(m, 2).number();
  std::vector<PlainEmitter> emitters;
  for (int i = 1; i <= model.cells.CountI(p); ++i) {
    for (int j = 1; j <= model.cells.CountJ(p); ++j) {
      const auto q = [&](int quantity) { return model.Q(p, i, j, quantity); };
      if (!(q(19) > 0)) continue;
      emitters.push_back({q(1), q(2), q(3), q(5), q(6), q(7), std::abs(q(4)) * q(19) / volume, q(62), volume});
    }
  }
  return emitters;
}
std::vector<PlainReceiver> Receivers(const SputterModel& model, int p) {
  std::vector<PlainReceiver> receivers;
  for (int i = 1; i <= model.cells.CountI(p); ++i) {
    for (int j = 1; j <= model.cells.CountJ(p); ++j) {
      const auto q = [&](int quantity) { return model.Q(p, i, j, quantity); };
      receivers.push_back({q(1), q(2), q(3), q(5), q(6), q(7), 1});
    }
  }
  return receivers;
}

void ExpectNear(const std::vector<double>& values, const std::vector<double>& expected) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t n = 0; n < values.size(); ++n) {
    ASSERT_EQ(values[n] == 0, expected[n] == 0) << n;
    ASSERT_NEAR(values[n], expected[n], 1e-12 * expected[n]) << n;
  }
}

TEST(Redeposition, AgreesWithThePlainFormOnAWholeModel) {
  ThreeModel model;
  model.Build();
  model.Run();
  EXPECT_TRUE(model.dialogs.boxes.empty());
  // Slot 1 is silver, slot 2 gold: the order in which the model names them.
  for (int target = 2; target <= 4; ++target) {
    const std::vector<PlainReceiver> receivers = Receivers(model, target);
    std::vector<double> silver(receivers.size());
    std::vector<double> gold(receivers.size());
    std::vector<float> silverStored(receivers.size());
    std::vector<float> goldStored(receivers.size());
    for (const int source : {2, 4}) {
      if (source == target) continue;
      reference::PlainRedeposition(Emitters(model, source, "silver"), receivers, silver, silverStored);
    }
    if (target != 3) reference::PlainRedeposition(Emitters(model, 3, "gold"), receivers, gold, goldStored);
    ExpectNear(model.Values(target, 90), silver);
    ExpectNear(model.Values(target, 91), gold);
    std::size_t n = 0;
    float least = 1e+31F;
    float most = 0;
    for (int i = 1; i <= model.cells.CountI(target); ++i) {
      for (int j = 1; j <= model.cells.CountJ(target); ++j, ++n) {
        EXPECT_FLOAT_EQ(model.Stored(0, i, j, 1, target), silverStored[n]);
        EXPECT_FLOAT_EQ(model.Stored(0, i, j, 2, target), goldStored[n]);
        most = std::max(most, silverStored[n]);
        least = std::min(least, silverStored[n]);
      }
    }
    EXPECT_FLOAT_EQ(model.Most(0, 1, target), most);
    EXPECT_LE(model.Least(0, 1, target), least);
  }
  EXPECT_GT(model.Volume(3, 90), 0);
  EXPECT_EQ(model.stores.RedepositedMaterials(3, 0), "1");
  EXPECT_EQ(model.stores.RedepositedMaterials(3, 1), "silver");
}

TEST(Redeposition, PlotsBelow90HaveNone) {
  ThreeModel model(19);
  model.Build();
  model.Run();
  for (int p = 2; p <= 4; ++p) {
    for (int q = 90; q <= 104; ++q) EXPECT_EQ(model.Volume(p, q), 0);
    EXPECT_EQ(model.stores.RedepositedMaterials(p, 0), "0");
    EXPECT_EQ(model.Least(0, 1, p), 0);
  }
}

TEST(Redeposition, AClosedSphereReceivesWhatIsEroded) {
  double error = 1;
  for (const int n : {16, 32, 64}) {
    const std::string cells = std::to_string(n) + " " + std::to_string(n);
    SputterModel model({{"HT", kTestThruster},
                        {"silver", "Patch rect size 0.001 0.001 cells 1 1 T 0 0 1"},
                        {"gold", "Shell sph size 1 2 1 cells " + cells}},
                       90);
    model.Build();
    model.At(2, 1, 1, 62) = 1.37;
    Bench bench(model);
    bench.From(2, 1e-10);
    const double eroded = 1e-10 * 1e-6;
    const double relative = std::abs(model.Volume(3, 90) / eroded - 1);
    EXPECT_LT(relative, 0.6 * error);
    error = relative;
    // Only the half in front of the patch receives.
    for (int j = 1; j <= n; ++j) EXPECT_EQ(model.Q(3, 1, j, 90) > 0, model.Q(3, 1, j, 3) > 1) << j;
  }
  EXPECT_LT(error, 0.01);
}

TEST(Redeposition, ACosineLawOntoACoaxialDisc) {
  // Of all that leaves, 1 - cos^(beta + 1) goes into a cone.
  for (const double beta : {0.0, 0.5, 1.0, 1.31, 2.0, 4.7}) {
    SputterModel model({{"HT", kTestThruster},
                        {"silver", "Patch rect size 0.0001 0.0001 cells 1 1"},
                        {"gold", "Disc disc size 0.7 0 1 cells 64 64 T 0 0 0.5"}},
                       90);
    model.Build();
    if (model.Q(3, 1, 1, 7) > 0) {
      for (int i = 1; i <= 64; ++i) {
        for (int j = 1; j <= 64; ++j) {
          for (const int q : {5, 6, 7}) model.At(3, i, j, q) *= -1;
        }
      }
    }
    model.At(2, 1, 1, 62) = beta;
    Bench bench(model);
    bench.From(2, 1e-10);
    const double cosine = 0.5 / std::hypot(0.5, 0.7);
    const double expected = 1e-10 * 1e-8 * (1 - std::pow(cosine, beta + 1));
    EXPECT_NEAR(model.Volume(3, 90), expected, 0.005 * expected) << beta;
  }
}

TEST(Redeposition, OnlyConcavePrimitivesReceiveFromThemselves) {
  const std::array<std::string, 4> shapes = {"sph size 1 1.5 1 cells 12 8", "con size 0.5 1 1 cells 12 8",
                                             "cyl size 0.5 1 1 cells 12 8",
                                             "rect2sides size -1 1 -1 1 1 1 1 cells 4 8"};
  for (std::size_t n = 0; n < shapes.size(); ++n) {
    SputterModel model({{"HT", kTestThruster}, {"silver", "Shape " + shapes[n] + " T 0 0 1"}}, 90);
    model.Build();
    Bench bench(model);
    bench.From(2);
    const double code = model.Q(2, 0, 0, 10);
    EXPECT_EQ(model.Volume(2, 90) > 0, code == 4 || code == 5) << code;
  }
}

TEST(Redeposition, AConcavePrimitiveReceivesFromItsOwnCellsAsThePlainFormTells) {
  SputterModel model({{"HT", kTestThruster}, {"silver", "Bowl sph size 1 0.8 1 cells 10 6 T 0 0 1"}}, 90);
  model.Build();
  for (int i = 1; i <= 10; ++i) {
    for (int j = 1; j <= 6; ++j) {
      model.At(2, i, j, 19) = 1e-11 * i * j;
      model.At(2, i, j, 62) = 0.3 * i;
    }
  }
  Bench bench(model);
  ErosionSpeeds speeds{10, 6, model.Values(2, 19)};
  bench.From(2, 0, speeds);
  const std::vector<PlainReceiver> receivers = Receivers(model, 2);
  std::vector<double> rate(receivers.size());
  std::vector<float> stored(receivers.size());
  reference::PlainRedeposition(Emitters(model, 2, "silver"), receivers, rate, stored);
  ExpectNear(model.Values(2, 90), rate);
}

TEST(Redeposition, CellsWithoutErosionEmitNothing) {
  ThreeModel model;
  model.Build();
  Bench bench(model);
  bench.From(2, 0.0);
  bench.From(2, -1e-10);
  EXPECT_EQ(model.Volume(3, 90), 0);
  EXPECT_EQ(model.Least(0, 1, 3), 1e+31F);
  EXPECT_EQ(model.stores.RedepositedMaterials(3, 0), "0");
  CloseExtrema(model.stores, 1, 5);
  EXPECT_EQ(model.Least(0, 1, 3), 0);
  // One cell alone does.
  ErosionSpeeds one = bench.Speeds(2, 0);
  one.speed[5] = 1e-10;
  bench.From(2, 0, one);
  EXPECT_GT(model.Volume(3, 90), 0);
}

TEST(Redeposition, SourcesAddUp) {
  ThreeModel model;
  model.Build();
  Bench bench(model);
  bench.From(2);
  const double once = model.Volume(3, 90);
  const float least = model.Least(0, 1, 3);
  const float most = model.Most(0, 1, 3);
  bench.From(2);
  EXPECT_NEAR(model.Volume(3, 90), 2 * once, 1e-12 * once);
  // The minimum is the smallest met behind any source, the maximum the largest.
  EXPECT_EQ(model.Least(0, 1, 3), least);
  EXPECT_NEAR(model.Most(0, 1, 3), 2 * most, 1e-6 * most);
}

TEST(Redeposition, EachFaceEmitsItsOwnMaterial) {
  const std::string sheet = "Sheet rect2sides size -0.2 0.2 -0.2 0.2 1 1 0.01 cells 2 4 T 0 0 1";
  SputterModel model({{"HT", kTestThruster},
                      {"silver | gold", sheet},
                      {"carbon", "Below rect size 1 1 cells 2 2 T 0 0 0.5"},
                      {"carbon", "Above rect size 1 1 cells 2 2 R X 180 T 0 0 1.5"}},
                     90);
  model.Build();
  Bench bench(model);
  bench.From(2);
  EXPECT_GT(model.Volume(3, 90), 0);  // the first face looks down
  EXPECT_EQ(model.Volume(3, 91), 0);
  EXPECT_EQ(model.Volume(4, 90), 0);
  EXPECT_GT(model.Volume(4, 91), 0);
  EXPECT_TRUE(HasLanded(model.stores, 3, "silver"));
  EXPECT_FALSE(HasLanded(model.stores, 3, "gold"));
  EXPECT_TRUE(HasLanded(model.stores, 4, "gold"));
  // Both materials count for their own face: the volumes are what the areas lose.
  const double eroded = 1e-10 * 0.16;
  EXPECT_LT(model.Volume(3, 90), eroded);
  EXPECT_NEAR(model.Volume(3, 90), model.Volume(4, 91), 0.05 * eroded);
}

TEST(Redeposition, MaterialsAreSoughtByTheirExactNames) {
  ThreeModel model;
  model.Build();
  model.materials.MaterialsUsed = {"2", "Silver", "gold"};
  Bench bench(model);
  bench.From(2);
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "Problem in ImRedep1  see hallam");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Error");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  EXPECT_EQ(model.Volume(3, 90) + model.Volume(3, 91), 0);  // no slot was found so far
  bench.From(3);
  const double gold = model.Volume(2, 91);
  EXPECT_GT(gold, 0);
  bench.From(2);
  EXPECT_GT(model.Volume(3, 91), 0);  // the slot of the primitive before
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(bench.From(2), ProgramEnd);
}

TEST(Redeposition, AMissingSecondMaterialHasItsOwnMessage) {
  SputterModel model(
      {{"HT", kTestThruster}, {"silver | gold", "Sheet rect2sides size -0.2 0.2 -0.2 0.2 1 1 0.01 cells 2 4 T 0 0 1"}},
      90);
  model.Build();
  model.materials.MaterialsUsed = {"1", "silver"};
  Bench bench(model);
  bench.From(2);
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "Problem in ImRedep2  see hallam");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Error");
}

TEST(Redeposition, StoresHoldTheFirst32Cells) {
  SputterModel model({{"HT", kTestThruster},
                      {"silver", "Plate rect size 0.6 0.4 cells 2 2 R X 180 T 0 0 1"},
                      {"gold", "Wide rect size 1 1 cells 40 35 T 1.2 0 0.5"}},
                     90);
  model.directives.RectoOnly = 1;
  model.Build();
  model.Run();
  for (int i = 1; i <= 40; ++i) {
    for (int j = 1; j <= 35; ++j) EXPECT_GT(model.Q(3, i, j, 90), 0);
  }
  EXPECT_GT(model.Stored(0, 32, 32, 1, 3), 0);
  EXPECT_FLOAT_EQ(model.Stored(0, 32, 32, 1, 3), static_cast<float>(model.Q(3, 32, 32, 90)));
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Truncation of redeposition live memory to32 elements  instead of 40 required by the current model");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Wish good luck to see if any");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Information);
  EXPECT_EQ(model.dialogs.boxes[1].text,
            "Truncation of redeposition live memory to32 elements  instead of 35 required by the current model");
}

std::vector<std::array<std::string, 2>> ManyPrimitives(int primitives) {
  std::vector<std::array<std::string, 2>> rows = {{"HT", kTestThruster},
                                                  {"silver", "Plate rect size 0.6 0.4 cells 2 2 R X 180 T 0 0 1"}};
  while (static_cast<int>(rows.size()) < primitives) {
    rows.push_back({"gold", "P" + std::to_string(rows.size()) + " rect size 0.1 0.1 cells 1 1 T 1 0 0.2"});
  }
  return rows;
}

TEST(Redeposition, StoresHoldFortyPrimitives) {
  SputterModel forty(ManyPrimitives(40), 90);
  forty.directives.RectoOnly = 1;
  forty.Build();
  forty.Run();
  EXPECT_TRUE(forty.dialogs.boxes.empty());
  EXPECT_GT(forty.Stored(0, 1, 1, 1, 40), 0);

  SputterModel model(ManyPrimitives(42), 90);
  model.directives.RectoOnly = 1;
  model.Build();
  model.Run();
  ASSERT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Truncation of redeposition live memory to40 primitives  instead of 42 required by the current model");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Wish good luck to see if any");
  EXPECT_GT(model.Q(42, 1, 1, 90), 0);
  EXPECT_EQ(model.Q(42, 1, 1, 90), model.Q(40, 1, 1, 90));
}

std::vector<std::array<std::string, 2>> ManyMaterials(int count) {
  const std::array<std::string, 6> names = {"silver", "gold", "carbon", "kapton", "glass", "steel"};
  std::vector<std::array<std::string, 2>> rows = {{"HT", kTestThruster}};
  for (int k = 0; k < count; ++k) {
    const std::string x = std::to_string(k);
    rows.push_back(
        {names[static_cast<std::size_t>(k)], "P" + x + " rect size 0.08 0.2 cells 1 1 R X 180 T 0." + x + " 0 1"});
  }
  rows.push_back({"silver", "Floor rect size 1 1 cells 2 2 T 1.6 0 0.5"});
  return rows;
}

TEST(Redeposition, FiveMaterialsPassAndSixAskToAbort) {
  SputterModel five(ManyMaterials(5), 90);
  five.directives.RectoOnly = 1;
  five.Build();
  five.Run();
  EXPECT_TRUE(five.dialogs.boxes.empty());
  for (int q = 90; q <= 94; ++q) EXPECT_GT(five.Volume(7, q), 0) << q;
  EXPECT_EQ(five.stores.RedepositedMaterials(7, 0), "5");
  EXPECT_EQ(five.stores.RedepositedMaterials(7, 5), "glass");

  SputterModel six(ManyMaterials(6), 90);
  six.directives.RectoOnly = 1;
  six.Build();
  six.Run();
  ASSERT_EQ(six.dialogs.boxes.size(), 2U);
  EXPECT_EQ(six.dialogs.boxes[0].text, "too many material for the redeposition, update needed, see Hallam");
  EXPECT_EQ(six.dialogs.boxes[0].title, "Can be critical");
  EXPECT_EQ(six.dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(six.dialogs.boxes[1].text, kAbort);
  EXPECT_GT(six.Volume(8, 95), 0);  // the sixth material reaches the quantity, not the stores
  EXPECT_EQ(six.Stored(0, 1, 1, 6, 8), 0);
  EXPECT_FALSE(HasLanded(six.stores, 8, "steel"));
  six.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(six.Run(), ProgramEnd);
}

// A wing that turns above a plate which the beam erodes.
struct TurningModel : SputterModel {
  explicit TurningModel(double plot = 90)
      : SputterModel({{"HT", kTestThruster},
                      {"gold", "Plate rect size 0.3 0.3 cells 2 2 R X 180 T 0 0 1"},
                      {"silver", "Wing rect size 0.6 0.4 cells 3 2 Automatic X T 0.8 0 1"},
                      {"carbon", "Floor rect size 0.4 0.4 cells 2 3 T 0.5 0 0.3"}},
                     plot) {
    directives.RectoOnly = 1;
    Turn(0, 45, {0.1, 0.1, 0.2, 0.1, 0.15, 0.15, 0.1, 0.1});
  }
};

TEST(Redeposition, EachStepOfATurnDepositsItsShare) {
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

TEST(Redeposition, ATurningTargetReceivesAtEachOfItsSteps) {
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

TEST(Redeposition, ATurnIsTheWeightedSumOfStandingTargets) {
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

TEST(Redeposition, AConcaveTurningPrimitiveIsNotProcessed) {
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

TEST(Redeposition, SteepEmissionGoesThroughTheStatements) {
  // Exponents that the fast form leaves out stand between others.
  ThreeModel model;
  model.Build();
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) {
      model.At(2, i, j, 19) = 1e-10;
      model.At(2, i, j, 62) = (i + j) % 2 == 0 ? 25.5 : 1.5;
    }
  }
  Bench bench(model);
  bench.From(2);
  for (const int target : {3, 4}) {
    const std::vector<PlainReceiver> receivers = Receivers(model, target);
    std::vector<double> rate(receivers.size());
    std::vector<float> stored(receivers.size());
    reference::PlainRedeposition(Emitters(model, 2, "silver"), receivers, rate, stored);
    ExpectNear(model.Values(target, 90), rate);
    EXPECT_FLOAT_EQ(model.Stored(0, 1, 1, 1, target), stored[0]);
  }
}

TEST(Redeposition, APowerOutOfRangeIsTold) {
  ThreeModel model;
  model.Build();
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) model.At(2, i, j, 62) = -5000;
  }
  Bench bench(model);
  bench.From(2);
  EXPECT_EQ(model.dialogs.Count("Overflow"), 1);
  for (const double value : model.Values(3, 90)) EXPECT_TRUE(std::isfinite(value));
}

TEST(Redeposition, ATargetOutOfAllReachGoesThroughTheStatements) {
  ThreeModel model;
  model.Build();
  model.At(3, 1, 1, 1) = -1e60;
  model.At(3, 2, 2, 5) = 4;  // a normal that is none
  Bench bench(model);
  bench.From(2);
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) model.At(2, i, j, 19) = 1e-10;
  }
  const std::vector<PlainReceiver> receivers = Receivers(model, 3);
  std::vector<double> rate(receivers.size());
  std::vector<float> stored(receivers.size());
  reference::PlainRedeposition(Emitters(model, 2, "silver"), receivers, rate, stored);
  ExpectNear(model.Values(3, 90), rate);
  EXPECT_GT(model.Q(3, 2, 2, 90), 0);
}

TEST(Redeposition, AreasCountWithoutTheirSign) {
  ThreeModel model;
  model.Build();
  Bench bench(model);
  bench.From(2);
  const std::vector<double> expected = model.Values(3, 90);
  for (int p = 2; p <= 4; ++p) ClearQuantity(model.cells, p, 90);
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) model.At(2, i, j, 4) *= -1;
  }
  Bench again(model);
  again.From(2);
  EXPECT_EQ(model.Values(3, 90), expected);
}

TEST(Redeposition, CleaningAndNetOfStandingPrimitives) {
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

TEST(Redeposition, NetIsWhatStaysWhereTheBeamDoesNotReach) {
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

TEST(Redeposition, CleaningOfATurnStepByStep) {
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

TEST(Redeposition, TheSumOfTheStepsIsTheAverageOfTheTurn) {
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
