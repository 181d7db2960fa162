#include "plume/redeposition.h"

#include <cmath>
#include <gtest/gtest.h>

#include "plume/redeposition_model.h"
#include "plume/sputter_stores.h"
#include "plume/surface_cells.h"

namespace orv::testing {
namespace {

const char* const kAbort = "Do you want to abort? See Hallam if the error cannot be solved ";

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
    SingleStep step(model);
    step.From(2, 1e-10);
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
    SingleStep step(model);
    step.From(2, 1e-10);
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
    SingleStep step(model);
    step.From(2);
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
  SingleStep step(model);
  ErosionSpeeds speeds{10, 6, model.Values(2, 19)};
  step.From(2, 0, speeds);
  const std::vector<PlainReceiver> receivers = Receivers(model, 2);
  std::vector<double> rate(receivers.size());
  std::vector<float> stored(receivers.size());
  reference::PlainRedeposition(Emitters(model, 2, "silver"), receivers, rate, stored);
  ExpectNear(model.Values(2, 90), rate);
}

TEST(Redeposition, CellsWithoutErosionEmitNothing) {
  ThreeModel model;
  model.Build();
  SingleStep step(model);
  step.From(2, 0.0);
  step.From(2, -1e-10);
  EXPECT_EQ(model.Volume(3, 90), 0);
  EXPECT_EQ(model.Least(0, 1, 3), 1e+31F);
  EXPECT_EQ(model.stores.RedepositedMaterials(3, 0), "0");
  CloseExtrema(model.stores, 1, 5);
  EXPECT_EQ(model.Least(0, 1, 3), 0);
  // One cell alone does.
  ErosionSpeeds one = step.Speeds(2, 0);
  one.speed[5] = 1e-10;
  step.From(2, 0, one);
  EXPECT_GT(model.Volume(3, 90), 0);
}

TEST(Redeposition, SourcesAddUp) {
  ThreeModel model;
  model.Build();
  SingleStep step(model);
  step.From(2);
  const double once = model.Volume(3, 90);
  const float least = model.Least(0, 1, 3);
  const float most = model.Most(0, 1, 3);
  step.From(2);
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
  SingleStep step(model);
  step.From(2);
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
  SingleStep step(model);
  step.From(2);
  ASSERT_EQ(model.dialogs.boxes.size(), 2U);
  EXPECT_EQ(model.dialogs.boxes[0].text, "Problem in ImRedep1  see hallam");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Error");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Critical);
  EXPECT_EQ(model.dialogs.boxes[1].text, kAbort);
  EXPECT_EQ(model.Volume(3, 90) + model.Volume(3, 91), 0);  // no slot was found so far
  step.From(3);
  const double gold = model.Volume(2, 91);
  EXPECT_GT(gold, 0);
  step.From(2);
  EXPECT_GT(model.Volume(3, 91), 0);  // the slot of the primitive before
  model.dialogs.answers = {Answer::Abort};
  EXPECT_THROW(step.From(2), ProgramEnd);
}

TEST(Redeposition, AMissingSecondMaterialHasItsOwnMessage) {
  SputterModel model(
      {{"HT", kTestThruster}, {"silver | gold", "Sheet rect2sides size -0.2 0.2 -0.2 0.2 1 1 0.01 cells 2 4 T 0 0 1"}},
      90);
  model.Build();
  model.materials.MaterialsUsed = {"1", "silver"};
  SingleStep step(model);
  step.From(2);
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
  ASSERT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.boxes[0].text,
            "Truncation of redeposition live memory to32 elements  instead of 40 or 35 required by the current model");
  EXPECT_EQ(model.dialogs.boxes[0].title, "Wish good luck to see if any");
  EXPECT_EQ(model.dialogs.boxes[0].icon, Icon::Information);
}

TEST(Redeposition, OneNoticeNamesTheLargestCountsOfTheModel) {
  const auto told = [](const std::vector<std::string>& cells) {
    std::vector<std::array<std::string, 2>> rows = {{"HT", "T thr size 0.01 0.01 cells 50 50"}};
    for (const std::string& count : cells) {
      std::string specification = "P" + std::to_string(rows.size());
      specification += " rect size 0.6 0.4 cells " + count + " R X 180 T 0 0 1";
      rows.push_back({"silver", specification});
    }
    SputterModel model(rows, 90);
    model.Build();
    model.Run();
    std::vector<std::string> texts;
    for (const ScriptedDialogs::Box& box : model.dialogs.boxes) texts.push_back(box.text);
    return texts;
  };
  const std::string head = "Truncation of redeposition live memory to32 elements  instead of ";
  const std::string tail = " required by the current model";
  EXPECT_EQ(told({"32 32"}), std::vector<std::string>{}) << "the thruster receives nothing";
  EXPECT_EQ(told({"33 2", "2 50", "60 2"}), std::vector<std::string>{head + "60 or 50" + tail});
  EXPECT_EQ(told({"2 33", "5 4"}), std::vector<std::string>{head + "5 or 33" + tail});
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
    std::string specification = "P rect size 0.08 0.2 cells 1 1 R X 180 T 0.";
    specification += std::to_string(k) + " 0 1";
    rows.push_back({names[static_cast<std::size_t>(k)], specification});
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
  SingleStep step(model);
  step.From(2);
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
  SingleStep step(model);
  step.From(2);
  EXPECT_EQ(model.dialogs.Count("Overflow"), 1);
  for (const double value : model.Values(3, 90)) EXPECT_TRUE(std::isfinite(value));
}

TEST(Redeposition, ATargetOutOfAllReachGoesThroughTheStatements) {
  ThreeModel model;
  model.Build();
  model.At(3, 1, 1, 1) = -1e60;
  model.At(3, 2, 2, 5) = 4;  // a normal that is none
  SingleStep step(model);
  step.From(2);
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
  SingleStep step(model);
  step.From(2);
  const std::vector<double> expected = model.Values(3, 90);
  for (int p = 2; p <= 4; ++p) ClearQuantity(model.cells, p, 90);
  for (int i = 1; i <= 4; ++i) {
    for (int j = 1; j <= 3; ++j) model.At(2, i, j, 4) *= -1;
  }
  SingleStep again(model);
  again.From(2);
  EXPECT_EQ(model.Values(3, 90), expected);
}

}  // namespace
}  // namespace orv::testing
