#include "geometry/screened_cylinders.h"

#include <cmath>
#include <gtest/gtest.h>

#include "geometry/geometry_model.h"
#include "numerics/angles.h"

namespace orv::testing {
namespace {

const double kTurn = 2 * kPi;

struct Plate {
  double x, y, width, halfX, halfY;
  Vector3 normal;
};

// Column i of a primitive of height 2 in two rows is the plate.
void ExpectPlate(const GeometryModel& model, int k, int i, const Plate& plate, double scale = 1) {
  for (int j = 1; j <= 2; ++j) {
    const double z = j - 0.5;
    const double tolerance = 1e-12 * scale;
    ExpectPoint(model.Centre(k, i, j), plate.x, plate.y, z, tolerance);
    ExpectPoint(model.Normal(k, i, j), plate.normal, 0);
    EXPECT_NEAR(model.Data(k, i, j, 4), plate.width, tolerance);
    EXPECT_EQ(model.Data(k, i, j, 8), 10000);
    ExpectPoint(model.CornerPoint(k, i, j, 1), plate.x - plate.halfX, plate.y - plate.halfY, z - 0.5, tolerance);
    ExpectPoint(model.CornerPoint(k, i, j, 2), plate.x + plate.halfX, plate.y + plate.halfY, z - 0.5, tolerance);
    ExpectPoint(model.CornerPoint(k, i, j, 3), plate.x + plate.halfX, plate.y + plate.halfY, z + 0.5, tolerance);
    ExpectPoint(model.CornerPoint(k, i, j, 4), plate.x - plate.halfX, plate.y - plate.halfY, z + 0.5, tolerance);
  }
}

// The first `count` columns are a plain cylinder of radius R with `count` columns a turn.
void ExpectRound(const GeometryModel& model, int k, int count, double R) {
  for (int i = 1; i <= count; ++i) {
    const double a = (i - 0.5) * kTurn / count;
    const double chord = R * std::cos(kPi / count);
    ExpectPoint(model.Centre(k, i, 1), chord * std::cos(a), chord * std::sin(a), 0.5);
    ExpectPoint(model.Normal(k, i, 1), std::cos(a), std::sin(a), 0);
    EXPECT_NEAR(model.Data(k, i, 1, 4), 2 * std::sin(kPi / count) * R, 1e-12);
    ExpectPoint(model.CornerPoint(k, i, 2, 3), R * std::cos(i * kTurn / count), R * std::sin(i * kTurn / count), 2);
  }
}

void ExpectHeader(const GeometryModel& model, int k, double n, double degrees, double R, double code) {
  const double header[11] = {0, n, 2, 0, degrees, 2 * R, degrees / 2, 0.5, 2, 1, code};
  for (int column = 1; column <= 10; ++column) EXPECT_NEAR(model.Header(k, column), header[column], 1e-9) << column;
  EXPECT_EQ(model.cells.BorderCorners(k, 0, 0), n);
}

const Vector3 kAlongY(0, 1, 0);

TEST(ScreenPair, TwoScreensStandBesideTheCylinder) {
  GeometryModel model({"A cylshape size 0.5 2 1 cells 10 2", "B cylscreen size 0.5 2 1 cells 10 2"});
  model.Build();
  for (int k = 1; k <= 2; ++k) {
    ExpectHeader(model, k, 10, 45, 0.5, 8);
    ExpectRound(model, k, 8, 0.5);
    ExpectPlate(model, k, 9, {5, -1, 10, 5, 0, kAlongY});
    ExpectPlate(model, k, 10, {-5, -1, 10, 5, 0, kAlongY});
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(ScreenPair, TheWideOnesAreLevelWithTheAxis) {
  GeometryModel model({"A cylshapeb size 0.5 2 1 cells 10 2", "B cylscreenB size 0.5 2 1 cells 10 2"});
  model.Build();
  for (int k = 1; k <= 2; ++k) {
    ExpectHeader(model, k, 10, 45, 0.5, 9);
    ExpectPlate(model, k, 9, {100, 0, 200, 100, 0, kAlongY});
    ExpectPlate(model, k, 10, {-100, 0, 200, 100, 0, kAlongY});
  }
}

TEST(ScreenPair, OneColumnBecomesThree) {
  GeometryModel model({"A cylshape size 0.5 2 0.25 cells 1 2"});
  model.Build();
  EXPECT_EQ(model.Header(1, 1), 3);
  EXPECT_NEAR(model.Header(1, 4), 90, 1e-9);
  EXPECT_NE(model.Data(1, 3, 2, 4), 0);
  EXPECT_EQ(model.Data(1, 4, 1, 4), 0);
}

TEST(ScreenPair, WithoutARoundColumnTheStepBeforeStands) {
  GeometryModel model({"Tube cyl size 1 1 1 cells 8 2", "A cylshape size 0.5 2 1 cells 2 2"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  EXPECT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
  ExpectHeader(model, 2, 2, 45, 0.5, 8);
  ExpectPlate(model, 2, 1, {5, -1, 10, 5, 0, kAlongY});
}

TEST(ScreenPair, StripsIncludeTheFlatColumns) {
  GeometryModel model({"A cylshape size 0.5 2 1 cells 6 2"});
  model.Build();
  ExpectPoint(model.StripPoint(1, 6, 1), model.CornerPoint(1, 6, 1, 1), 0);
  ExpectPoint(model.StripPoint(1, 6, 3), model.CornerPoint(1, 6, 2, 3), 0);
  ExpectPoint(model.StripPoint(1, 2, 4), model.CornerPoint(1, 2, 2, 4), 0);
}

TEST(ScreenPair, OptionsOfThePlotActAsOnACylinder) {
  GeometryModel model({"A cylshape size 0.5 2 1 cells 6 2"}, 15);
  model.Build();
  const double a = kTurn / 8;
  ExpectPoint(model.Centre(1, 1, 1), 0.5 * std::cos(a), 0.5 * std::sin(a), 0.5);
  EXPECT_NEAR(model.Data(1, 1, 1, 4), kTurn / 4 * 0.5, 1e-12);
  GeometryModel high({"A cylshape size 0.5 2 1 cells 6 2"}, 40);
  high.Build();
  EXPECT_EQ(high.Header(1, 5), 1);
  EXPECT_EQ(high.Header(1, 23), 0.5);
}

TEST(SixCylinders, StandAtTheirFixedPlaces) {
  GeometryModel model({"A cylshapeX6 size 0.5 2 1 cells 29 2", "B cylscreenx6 size 0.5 2 1 cells 29 2"});
  model.Build();
  const double axes[6] = {0, 1.5, 2.65, 4.045, 5.44, 8.24};
  for (int k = 1; k <= 2; ++k) {
    ExpectHeader(model, k, 26, 90, 0.5, 10);
    for (int i = 1; i <= 24; ++i) {
      const int group = (i - 1) / 4;
      const double a = ((i - 1) % 4 + 0.5) * kTurn / 4;
      const double chord = 0.5 * std::cos(kTurn / 8);
      ExpectPoint(model.Centre(k, i, 1), chord * std::cos(a) + axes[group], chord * std::sin(a), 0.5);
      ExpectPoint(model.Normal(k, i, 1), std::cos(a), std::sin(a), 0);
      const double edge = ((i - 1) % 4 + 1) * kTurn / 4;
      ExpectPoint(model.CornerPoint(k, i, 1, 2), 0.5 * std::cos(edge) + axes[group], 0.5 * std::sin(edge), 0);
      EXPECT_NEAR(model.Data(k, i, 1, 4), 2 * std::sin(kTurn / 8) * 0.5, 1e-12);
    }
    const double left = -200;
    const double W = (8.24 - left) / 2;
    ExpectPlate(model, k, 25, {W / 2 + left, 0, W, W / 2, 0, kAlongY}, 1000);
    ExpectPlate(model, k, 26, {W / 2 + left + W, 0, W, W / 2, 0, kAlongY}, 1000);
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(SixCylinders, TakeTheirPlacesFromTheSpecification) {
  GeometryModel model({"A cylshapeX6b size 0.5 2 1  -6 1 2 3 4 5 7 cells 8 2"});
  model.Build();
  EXPECT_EQ(model.Header(1, 1), 8);
  EXPECT_EQ(model.Header(1, 10), 11);
  // One column a turn: its chord has no length and its middle is at half the turn.
  ExpectPoint(model.CornerPoint(1, 4, 1, 1), 4.5, 0, 0);
  // The first cylinder's normal holds the place of its axis, and the others copy it.
  const double first = (0.5 * std::cos(kPi) + 1) / 0.5;
  EXPECT_NEAR(model.Data(1, 1, 1, 5), first, 1e-12);
  EXPECT_EQ(model.Data(1, 6, 2, 5), model.Data(1, 1, 2, 5));
  const double W = (7 - -6) / 2.0;
  ExpectPlate(model, 1, 7, {W / 2 - 6, 0, W, W / 2, 0, kAlongY});
  ExpectPlate(model, 1, 8, {W / 2 - 6 + W, 0, W, W / 2, 0, kAlongY});
}

TEST(SixCylinders, TooFewColumnsBecomeEight) {
  GeometryModel model({"Panel rect 1 1 20 2", "A cylscreenX6 size 0.5 2 1 cells 3 2"});
  model.Build();
  EXPECT_EQ(model.Header(2, 1), 8);
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(FourPlates, StandAroundTheCylinder) {
  GeometryModel model({"A cylshape4 size 0.5 2 1 cells 12 2", "B cylscreen4 size 0.5 2 1 cells 12 2"});
  model.Build();
  for (int k = 1; k <= 2; ++k) {
    ExpectHeader(model, k, 12, 45, 0.5, 12);
    ExpectRound(model, k, 8, 0.5);
    ExpectPlate(model, k, 9, {3.5, -0.5, 7, 3.5, 0, kAlongY});
    ExpectPlate(model, k, 10, {0, -1, 15, 7.5, 0, kAlongY});
    ExpectPlate(model, k, 11, {-4.25, 1, 7.5, 3.75, 0, kAlongY});
    ExpectPlate(model, k, 12, {-0.5, 0, 2, 0, 1, Vector3(1, 0, 0)});
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(FourPlates, TheOtherFormSetsThemFurtherOff) {
  GeometryModel model({"A cylshape4b size 0.5 2 1 cells 12 2", "B cylscreen4B size 0.5 2 1 cells 3 2"});
  model.Build();
  ExpectHeader(model, 1, 12, 45, 0.5, 13);
  ExpectPlate(model, 1, 9, {-0.75, -0.5, 1, 0.25, 0, kAlongY});
  ExpectPlate(model, 1, 10, {0, -1, 15, 7.5, 0, kAlongY});
  ExpectPlate(model, 1, 11, {-7, 1, 7.5, 3.75, 0, kAlongY});
  ExpectPlate(model, 1, 12, {-4, 0, 2, 0, 1, Vector3(1, 0, 0)});
  EXPECT_EQ(model.Header(2, 1), 5);
  EXPECT_EQ(model.Header(2, 10), 13);
}

TEST(BuilderTable, EightPlatesScaleWithTheRadius) {
  GeometryModel model({"A cylshape44 size 0.225 2 1 cells 12 2", "B cylscreen44 size 0.225 2 1 cells 12 2"});
  model.Build();
  const Plate rows[8] = {{-0.0001815, -0.000105, 0.000138, 0.000069, 0, Vector3(0, 1, 0)},
                         {-0.0001125, -0.0000525, 0.000105, 0, 0.0000525, Vector3(-1, 0, 0)},
                         {0.0001125, -0.0001525, 0.000305, 0, 0.0001525, Vector3(1, 0, 0)},
                         {0.000331, -0.000305, 0.000437, 0.0002185, 0, Vector3(0, 1, 0)},
                         {-0.0202505, 0.0000205, 0.04, 0.02, 0, Vector3(0, 1, 0)},
                         {-0.0002505, -0.00004225, 0.0001255, 0, 0.00006275, Vector3(1, 0, 0)},
                         {0.0005495, -0.00014225, 0.0003255, 0, 0.00016275, Vector3(-1, 0, 0)},
                         {0.0203995, 0.0000205, 0.04, 0.02, 0, Vector3(0, 1, 0)}};
  for (int k = 1; k <= 2; ++k) {
    ExpectHeader(model, k, 12, 90, 0.225, 14);
    ExpectRound(model, k, 4, 0.225);
    for (int t = 1; t <= 8; ++t) {
      const Plate& row = rows[t - 1];
      const Plate scaled{row.x * 2000, row.y * 2000, row.width * 2000, row.halfX * 2000, row.halfY * 2000, row.normal};
      ExpectPlate(model, k, 4 + t, scaled, 100);
    }
  }
  EXPECT_TRUE(model.dialogs.boxes.empty());
}

TEST(BuilderTable, IsTheSameUnderEveryLocale) {
  const std::vector<std::string> lines = {"A cylshape44 size 2 2 1 cells 12 2"};
  GeometryModel point(lines);
  GeometryModel dotOfThousands(lines, 0, Locale{",", "."});
  point.Build();
  dotOfThousands.Build();
  for (int i = 1; i <= 12; ++i) {
    EXPECT_EQ(dotOfThousands.Centre(1, i, 2).element, point.Centre(1, i, 2).element) << i;
    EXPECT_EQ(dotOfThousands.Data(1, i, 2, 4), point.Data(1, i, 2, 4)) << i;
  }
  EXPECT_TRUE(dotOfThousands.dialogs.log.empty());
}

TEST(BuilderTable, TooFewColumnsBecomeNineAndEightFail) {
  GeometryModel model(
      {"Panel rect 1 1 9 2", "A cylshape44 size 0.225 2 1 cells 7 2", "B cylshape44 size 1 2 1 cells 8 2"});
  model.dialogs.answers = {Answer::Ignore};
  model.Build();
  EXPECT_EQ(model.Header(2, 1), 9);
  EXPECT_EQ(model.Header(3, 1), 8);
  EXPECT_EQ(model.dialogs.boxes.size(), 1U);
  EXPECT_EQ(model.dialogs.Count("Division by zero"), 1);
}

TEST(Screened, ColumnsOutsideTheArraysFailAndTheOthersAreAsEver) {
  GeometryModel whole({"A cylscreenX6 size 0.5 2 1 cells 3 2 T 1 2 3 R Z 30"});
  whole.Size(8, 5);
  whole.Build();
  GeometryModel cut({"A cylscreenX6 size 0.5 2 1 cells 3 2 T 1 2 3 R Z 30"});  // sized for 5 columns
  cut.dialogs.answers = std::deque<Answer>(150, Answer::Retry);
  cut.Build();
  EXPECT_EQ(cut.Header(1, 1), 8);
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 2; ++j) {
      for (int q = 1; q <= 30; ++q)
        EXPECT_EQ(cut.Data(1, i, j, q), whole.Data(1, i, j, q)) << i << " " << j << " " << q;
      for (int n = 1; n <= 12; ++n) EXPECT_EQ(cut.cells.CellCorners(1, i, j, n), whole.cells.CellCorners(1, i, j, n));
    }
  }
  EXPECT_TRUE(whole.dialogs.boxes.empty());
  EXPECT_EQ(cut.dialogs.Count("Subscript out of range"), 151) << "the last one is ignored";
  EXPECT_EQ(cut.dialogs.Count("error fautea_SpaceApplicationGeometry"), 151);
}

}  // namespace
}  // namespace orv::testing
