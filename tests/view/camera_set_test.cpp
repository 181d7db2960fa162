#include "view/camera_set.h"

#include <cmath>
#include <gtest/gtest.h>

namespace orv {
namespace {

constexpr double kHalf = 0.70710678118654752440;

class CameraSetTest : public testing::Test {
 protected:
  void Set(const std::string& command, int axis = 2, int special = 0) {
    cycle_.CameraSet(command, axis, special, situation_, camera_, trackball_);
  }
  void ExpectPosition(const Vec3& expected) {
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(camera_.Position()[i], expected[i], 1e-9) << "component " << i;
  }

  CameraCycle cycle_;
  CameraSituation situation_{0, true, false, false};
  Camera camera_;
  Trackball trackball_;
};

TEST_F(CameraSetTest, IsoIsOneFixedView) {
  camera_.SetLookAt({1, 2, 3});
  camera_.SetProjection(kPerspective);
  Set(" Iso ");
  EXPECT_EQ(camera_.Position(), (Vec3{100, 100, 100}));
  EXPECT_EQ(camera_.LookAt(), (Vec3{0, 0, 0}));
  EXPECT_EQ(camera_.Up(), (Vec3{0, 0, 1}));
  EXPECT_EQ(camera_.NearPlane(), -10000);
  EXPECT_EQ(camera_.FarPlane(), 10000);
  EXPECT_EQ(camera_.FieldAngle(), 180);
  EXPECT_EQ(camera_.Projection(), kOrthographic);
  EXPECT_EQ(cycle_.ViewStep(), 0);
}

TEST_F(CameraSetTest, IsoNewTurnsAboutTheVerticalAxisFromBothSides) {
  const double c = 100 * kHalf;
  Set("ISOnew");  // step 1 of 8, side 1: d = 100
  ExpectPosition({c, 100, c});
  EXPECT_EQ(camera_.Up(), (Vec3{0, 1, 0}));
  EXPECT_EQ(camera_.NearPlane(), -10000);
  EXPECT_EQ(camera_.FarPlane(), 10000);
  Set("ISOnew");  // step 2, side 0: d = -100, a = 90 degrees
  ExpectPosition({-100, -100, 0});
  EXPECT_EQ(camera_.NearPlane(), -10000) << "swapped planes are taken in order";
  EXPECT_EQ(cycle_.ViewStep(), 2);
  EXPECT_EQ(cycle_.ViewStepPrevious(), 1);
  EXPECT_EQ(cycle_.ViewSide(), 0);
  for (int i = 0; i < 6; ++i) Set("ISOnew");
  EXPECT_EQ(cycle_.ViewStep(), 0);
  EXPECT_EQ(cycle_.ViewStepPrevious(), 7);
}

TEST_F(CameraSetTest, IsoNewOnEachAxis) {
  const double c = 100 * kHalf;
  Set("isonew", 1);
  ExpectPosition({100, c, c});
  EXPECT_EQ(camera_.Up(), (Vec3{1, 0, 0}));
  Set("isonew", 3);  // a = 90 degrees, d = -100
  ExpectPosition({0, -100, -100});
  EXPECT_EQ(camera_.Up(), (Vec3{0, 0, 1}));
}

TEST_F(CameraSetTest, WithoutAnAxisZIsVertical) {
  Set("isonew", 0);
  EXPECT_EQ(cycle_.ViewAxis(), 0);
  ExpectPosition({100 * kHalf, 100 * kHalf, 100});
  EXPECT_EQ(camera_.Up(), (Vec3{0, 0, 1}));
}

TEST_F(CameraSetTest, AxisTwoDoesNotReplaceAKeptOne) {
  Set("isonew", 2);
  EXPECT_EQ(cycle_.ViewAxis(), 2);
  Set("isonew", 3);
  EXPECT_EQ(cycle_.ViewAxis(), 3);
  Set("isonew", 2);
  EXPECT_EQ(cycle_.ViewAxis(), 3);
  Set("isonew", 0);
  EXPECT_EQ(cycle_.ViewAxis(), 3);
  Set("isonew", 2, 1);
  EXPECT_EQ(cycle_.ViewAxis(), 2);
}

TEST_F(CameraSetTest, FrozenOrEmptyViewKeepsItsStep) {
  Set("isonew");
  const Vec3 before = camera_.Position();
  situation_.frozen = true;
  Set("isonew");
  EXPECT_EQ(cycle_.ViewStep(), 1);
  EXPECT_EQ(cycle_.ViewSide(), 1);
  EXPECT_EQ(camera_.Position(), before);
  situation_ = {0, false, false, false};
  Set("isonew");
  EXPECT_EQ(cycle_.ViewStep(), 1);
}

TEST_F(CameraSetTest, RealIsoWalksTheCornersOfACube) {
  situation_.realIso = true;
  const double signs[4][2] = {{-1, 1}, {-1, -1}, {1, -1}, {1, 1}};
  for (int call = 0; call < 8; ++call) {
    Set("isonew", 3);
    const double d = call % 2 == 0 ? 100 : -100;
    ExpectPosition({100 * signs[call % 4][0], 100 * signs[call % 4][1], d});
  }
  Set("isonew", 1);
  ExpectPosition({100, -100, 100});
  Set("isonew", 2, 1);
  ExpectPosition({-100, -100, -100});
}

TEST_F(CameraSetTest, IsoNewPlusHasSixViewsFromTwoCorners) {
  const Vec3 ups[6] = {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}};
  for (int call = 1; call <= 7; ++call) {
    Set("ISONEWPLUS");
    const int step = call % 6;
    EXPECT_EQ(cycle_.ViewStep(), step);
    EXPECT_EQ(camera_.Up(), ups[step]);
    ExpectPosition({-100, step > 2 ? -100.0 : 100.0, 100});
  }
  situation_.frozen = true;
  Set("ISONEWPLUS");
  EXPECT_EQ(cycle_.ViewStep(), 2) << "it steps at each call";
}

TEST_F(CameraSetTest, TwelveProjections) {
  struct View {
    Vec3 from, up;
  };
  const View views[12] = {{{0, 1, 0}, {0, 0, 1}},  {{0, -1, 0}, {0, 0, 1}}, {{1, 0, 0}, {0, 1, 0}},
                          {{0, 1, 0}, {1, 0, 0}},  {{-1, 0, 0}, {0, 1, 0}}, {{0, 0, 1}, {0, 1, 0}},
                          {{0, -1, 0}, {0, 0, 1}}, {{0, 0, -1}, {0, 1, 0}}, {{1, 0, 0}, {0, 1, 0}},
                          {{-1, 0, 0}, {0, 1, 0}}, {{0, 0, 1}, {0, 1, 0}},  {{0, 0, -1}, {0, 1, 0}}};
  const auto expectView = [&](int step) {
    SCOPED_TRACE("view " + std::to_string(step));
    EXPECT_EQ(cycle_.Projection(), step);
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_NEAR(camera_.Axes().back[i], views[step].from[i], 1e-12);
      EXPECT_NEAR(camera_.Axes().up[i], views[step].up[i], 1e-12);
    }
    EXPECT_EQ(camera_.LookAt(), (Vec3{0, 0, 0}));
  };
  for (int call = 1; call <= 13; ++call) {
    Set("proj");
    expectView(call % 12);
  }
  Set("projinverse");
  Set("projinverse");
  expectView(11);
  for (int step = 0; step < 12; ++step) {
    cycle_.ShowProjection(step, camera_, trackball_);
    expectView(step);
  }
  cycle_.ShowProjection(-1, camera_, trackball_);
  expectView(11);
  cycle_.ShowProjection(24, camera_, trackball_);
  expectView(0);
}

TEST_F(CameraSetTest, NothingChangesWhileAPlotIsAwaited) {
  situation_.firstDraw = 1;
  const Matrix4 before = camera_.ViewMatrix();
  for (const char* command : {"iso", "isonew", "isonewplus", "proj", "projinverse"}) Set(command, 3, 1);
  EXPECT_EQ(camera_.ViewMatrix(), before);
  EXPECT_EQ(cycle_.ViewStep(), 0);
  EXPECT_EQ(cycle_.ViewSide(), 0);
  EXPECT_EQ(cycle_.ViewAxis(), 0);
  EXPECT_EQ(cycle_.Projection(), 0);
}

TEST_F(CameraSetTest, UnknownCommandsChangeNothing) {
  const Matrix4 before = camera_.ViewMatrix();
  for (const char* command : {"", "top", "iso new", "projection"}) Set(command, 3, 1);
  EXPECT_EQ(camera_.ViewMatrix(), before);
  EXPECT_EQ(cycle_.ViewAxis(), 0);
}

TEST_F(CameraSetTest, EveryViewTakesTheTurnBackAndLeavesTheWindow) {
  const Matrix4 identity = trackball_.Matrix();
  trackball_.Enable(true);
  camera_.SetSceneRange(3);
  for (const char* command : {"iso", "isonew", "isonewplus", "proj", "projinverse"}) {
    trackball_.Down(0, 0);
    trackball_.Move(0.3, 0);
    trackball_.Up(0.3, 0);
    ASSERT_NE(trackball_.Matrix(), identity);
    Set(command);
    EXPECT_EQ(trackball_.Matrix(), identity) << command;
    EXPECT_FALSE(trackball_.SpinOn());
  }
  EXPECT_EQ(camera_.Window(), (OrthoWindow{-3, 3, -3, 3}));
}

}  // namespace
}  // namespace orv
