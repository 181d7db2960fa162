#include <cmath>
#include <gmock/gmock.h>

#include "support/input_scene.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;

// --- keys ------------------------------------------------------------------------------------------------------------

TEST_F(EditStateTest, KeyIShowsTheCornersOfACube) {
  const int step = scene.Cameras().ViewStep();
  EXPECT_EQ(Key(73), 0);
  EXPECT_TRUE(view.realIso);
  EXPECT_EQ(scene.Cameras().ViewStep(), step + 1);
  for (const double x : Position()) EXPECT_EQ(std::abs(x), 100);
  EXPECT_EQ(Key(73, ShiftBit::kShift), 0);
  EXPECT_FALSE(view.realIso);
  EXPECT_THAT(window.captions, ElementsAre("REAL_ISO", ""));
  EXPECT_EQ(control.RedrawRequests(), 2);
}

TEST_F(EditStateTest, ArrowsAndPageKeysTurnInTheirPlanes) {
  const double angle = std::asin(0.01);
  const auto expectTurn = [&](int key, std::size_t along, std::size_t across, double sign) {
    Stand({60, 70, 80});
    Vec3 expected = Position();
    const double rho = std::hypot(expected[along], expected[across]);
    const double at = std::atan2(expected[across], expected[along]) - sign * angle;
    expected[along] = rho * std::cos(at);
    expected[across] = rho * std::sin(at);
    EXPECT_EQ(Key(key), 0);
    ExpectPosition(expected);
  };
  expectTurn(37, 1, 2, 1);
  expectTurn(39, 1, 2, -1);
  expectTurn(38, 2, 0, 1);
  expectTurn(40, 2, 0, -1);
  expectTurn(33, 0, 1, 1);
  expectTurn(34, 0, 1, -1);
  EXPECT_EQ(control.RedrawRequests(), 6);
  EXPECT_EQ(Key(65), 65) << "any other key is not the view's";
  ExpectPosition(Position());
  EXPECT_EQ(control.RedrawRequests(), 6);
}

TEST_F(EditStateTest, TheCircleGoesOnBehindItsPoles) {
  Stand({60, 70, -80});
  Key(37);
  EXPECT_LT(Position()[2], -80 + 1) << "z stays below";
  EXPECT_NEAR(std::hypot(Position()[1], Position()[2]), std::hypot(70, 80), 1e-9);
  Stand({-60, 70, 80});
  Key(38);
  EXPECT_LT(Position()[0], -60) << "x keeps its sign";
  EXPECT_NEAR(std::hypot(Position()[0], Position()[2]), 100, 1e-9);
  EXPECT_LT(Position()[2], 80);
}

TEST_F(EditStateTest, UpAndDownOverThePoleChangeTheSignInSmallSteps) {
  for (const double x : {100.0, -100.0}) {
    for (const int key : {38, 40}) {
      const bool falls = (key == 40) == (x > 0);
      Stand({x, 20, falls ? 0.3 : -0.3});
      Key(key);
      EXPECT_EQ(std::signbit(Position()[2]), falls) << x << " " << key;
      EXPECT_LT(std::abs(Position()[2]), 1);
      EXPECT_NEAR(Position()[0], x, 0.1);
    }
  }
  // All round in both directions: never a wide step, never another distance.
  for (const int key : {37, 38, 39, 40, 33, 34}) {
    Stand({57, 64, 71});
    for (int n = 0; n < 700; ++n) {
      const Vec3 before = Position();
      Key(key);
      const Vec3 now = Position();
      ASSERT_LT(std::hypot(now[0] - before[0], now[1] - before[1], now[2] - before[2]), 2.5) << key << " " << n;
      ASSERT_NEAR(std::hypot(now[0], now[1], now[2]), std::hypot(57, 64, 71), 1.1) << key << " " << n;
    }
  }
}

TEST(EditStateSteps, AJumpBecomesTheOtherSideOrASmallStep) {
  const auto step = [](double old, double wanted) {
    double out = 0;
    noSteps(old, wanted, "x", out);
    return out;
  };
  EXPECT_EQ(step(70, 71), 71);
  EXPECT_EQ(step(70, 78), 78) << "a tenth and 1";
  EXPECT_EQ(step(-70, 69), -69) << "the same size on the other side";
  EXPECT_EQ(step(70, -69), 69);
  EXPECT_EQ(step(10, 80), 10.5);
  EXPECT_EQ(step(-10, 80), -10.5);
  EXPECT_EQ(step(0, 5), 0);
  EXPECT_EQ(step(0, 1), 1);
  EXPECT_TRUE(std::isnan(step(1, kNan)));
}

TEST_F(EditStateTest, ACameraOnAnAxisOrAtTheOrigin) {
  Stand({0, 0, 0});
  for (const int key : {33, 34, 37, 38, 39, 40}) {
    EXPECT_EQ(Key(key), 0);
    EXPECT_EQ(Position(), (Vec3{0, 0, 0}));
  }
  Stand({100, 0, 0});
  Key(37);
  EXPECT_EQ(Position(), (Vec3{100, 0, 0})) << "on the axis of the turn";
  const double c = std::sqrt(1 - 1e-4);
  Stand({0, 100, 0});
  Key(37);
  ExpectPosition({0, 100 * c, 1});
  Stand({0, 0, 100});
  Key(37);
  ExpectPosition({0, 1, 100 * c});
  for (const int key : {38, 40}) {
    Stand({0, 0, 100});
    Key(key);
    ExpectPosition({1, 0, 100 * c});
    Stand({0, 0, 200});
    Key(key);
    ExpectPosition({0, 0, 200 * c});  // 2 would be a jump
  }
  Stand({0, 0, 100});
  Stand({kNan, 0, 0});
  ExpectPosition({0, 0, 100});
}

TEST_F(EditStateTest, NearThePoleUpAndDownTakeTheSideOfXAlone) {
  // cos b (1 - 0.01^2)^0.5 + 0.01 s, where s is x / 100, but 1 / 100 for an x up to 1.
  const double cStep = std::sqrt(1 - 1e-4);
  for (const double x : {0.5, -0.5, 1.0, -1.0, 1.5, -1.5}) {
    for (const int key : {38, 40}) {
      SCOPED_TRACE(std::to_string(x) + " " + std::to_string(key));
      const double z = std::sqrt(1e4 - x * x);
      const double reach = std::abs(x) > 1 ? x : std::copysign(1.0, x);
      const double n = std::min(1.0, z / 100 * cStep + (key == 38 ? 0.01 : -0.01) * reach / 100);
      Stand({x, 0, z});
      Key(key);
      double across = 0;
      noSteps(x, std::copysign(100 * std::sqrt(1 - n * n), x), "x", across);
      ExpectPosition({across, 0, 100 * n}, 1e-6);
    }
  }
}

TEST_F(EditStateTest, XYZPutTheCameraAtTheOrigin) {
  const std::vector<std::pair<int, Vec3>> keys = {{'z', {0, 0, 10}}, {'x', {1, 0, 0}}, {'y', {0, 1, 0}}};
  for (const auto& [key, up] : keys) {
    scene.CameraSet("iso", 2, 0);
    const Vec3 before = control.Camera().Axes().back;
    EXPECT_EQ(Press(key), 0);
    EXPECT_EQ(Position(), (Vec3{0, 0, 0}));
    EXPECT_EQ(control.Camera().Up(), up);
    const Camera::Frame axes = control.Camera().Axes();
    const double length = up[0] + up[1] + up[2];
    double along = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(axes.up[i], up[i] / length, 1e-12) << "the direction is perpendicular to it";
      along += axes.back[i] * before[i];
    }
    EXPECT_NEAR(along, std::sqrt(2.0 / 3), 1e-12) << "and else the one before";
  }
  EXPECT_EQ(control.RedrawRequests(), 3);
  for (const int other : {int{'X'}, int{'a'}, 0, 13}) EXPECT_EQ(Press(other), other);
  EXPECT_EQ(control.RedrawRequests(), 3);
}

TEST_F(EditStateTest, ADirectionAlongTheNewUpVectorTiltsForward) {
  Stand({0, 0, 100});
  control.Camera().SetUp({0, 1, 0});
  Press('z');
  const Camera::Frame down = control.Camera().Axes();
  EXPECT_NEAR(down.back[1], -1, 1e-12) << "what was above lies ahead";
  EXPECT_NEAR(down.up[2], 1, 1e-12);
  Press('y');  // from there, at the origin, along -y
  const Camera::Frame next = control.Camera().Axes();
  EXPECT_NEAR(next.up[1], 1, 1e-12);
  EXPECT_NEAR(next.back[2], 1, 1e-12);
  Press('y');
  EXPECT_NEAR(control.Camera().Axes().back[2], 1, 1e-12) << "pressed again nothing changes";
}

TEST_F(EditStateTest, TheWindowSeesItsKeysFirst) {
  const auto form = [&](int key, bool options) {
    input.FormKeyDown(key, 0, options);
    return key;
  };
  EXPECT_EQ(form(13, false), 13);
  EXPECT_EQ(window.closed, 0);
  EXPECT_EQ(form(13, true), 0);
  EXPECT_EQ(window.closed, 1);
  EXPECT_EQ(form(84, false), 0);
  EXPECT_TRUE(input.KeyFlag());
  EXPECT_EQ(form(84, true), 0);
  EXPECT_FALSE(input.KeyFlag());
  const int step = scene.Cameras().ViewStep();
  int key = 73;
  input.FormKeyDown(key, 0, true);
  input.KeyDown(key, 0);
  EXPECT_EQ(scene.Cameras().ViewStep(), step + 1) << "once though both see it";
  Stand({60, 70, 80});
  EXPECT_EQ(form(37, false), 0);
  EXPECT_NE(Position(), (Vec3{60, 70, 80}));
  EXPECT_EQ(form(66, true), 66);
  EXPECT_EQ(Key(84), 84) << "the view itself knows nothing of it";
}

}  // namespace
}  // namespace orv::testing
