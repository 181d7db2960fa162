#include "view/camera.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace orv {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

double Dot(const Vec3& a, const Vec3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void ExpectNear(const Vec3& a, const Vec3& b, double tolerance = 1e-9) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(a[i], b[i], tolerance) << "component " << i;
}

void ExpectRightHanded(const Camera::Frame& axes) {
  ExpectNear({Dot(axes.right, axes.right), Dot(axes.up, axes.up), Dot(axes.back, axes.back)}, {1, 1, 1}, 1e-12);
  ExpectNear({Dot(axes.right, axes.up), Dot(axes.up, axes.back), Dot(axes.back, axes.right)}, {0, 0, 0}, 1e-12);
  const Vec3 cross{axes.right[1] * axes.up[2] - axes.right[2] * axes.up[1],
                   axes.right[2] * axes.up[0] - axes.right[0] * axes.up[2],
                   axes.right[0] * axes.up[1] - axes.right[1] * axes.up[0]};
  ExpectNear(cross, axes.back, 1e-12);
}

// A point of the scene in device coordinates -1 .. 1.
Vec3 OnDevice(const Camera& camera, const Vec3& p) {
  const auto v =
      Transform(Product(camera.ProjectionMatrix(), camera.ViewMatrix()), std::array<double, 4>{p[0], p[1], p[2], 1});
  return {v[0] / v[3], v[1] / v[3], v[2] / v[3]};
}

Camera Front() {
  Camera camera;
  camera.SetPosition({0, 0, 100});
  camera.SetSceneRange(10);
  camera.Viewport(400, 400);
  return camera;
}

TEST(Matrices, ProductAndImage) {
  Matrix4 move = IdentityMatrix();
  move[12] = 5;
  Matrix4 scale = IdentityMatrix();
  scale[0] = 2;
  EXPECT_EQ(Transform(Product(move, scale), {1, 1, 1, 1}), (std::array<double, 4>{7, 1, 1, 1}));
  EXPECT_EQ(Transform(Product(scale, move), {1, 1, 1, 1}), (std::array<double, 4>{12, 1, 1, 1}));
  EXPECT_EQ(Product(IdentityMatrix(), move), move);
}

TEST(Camera, ViewMatrixHasTheUnitVectorsAsRows) {
  Camera camera;
  camera.SetLookAt({1, 2, 3});
  camera.SetPosition({4, 6, 15});
  camera.SetUp({0, 0, 2});
  const Matrix4 m = camera.ViewMatrix();
  EXPECT_NEAR(Transform(m, {4, 6, 15, 1})[2], 0, 1e-12);
  const auto target = Transform(m, {1, 2, 3, 1});
  ExpectNear({target[0], target[1], target[2]}, {0, 0, -13}, 1e-12);  // 3, 4, 12: distance 13
  const auto above = Transform(m, {1, 2, 4, 1});
  EXPECT_NEAR(above[0], 0, 1e-12);
  EXPECT_GT(above[1], 0);
  ExpectRightHanded(camera.Axes());
}

// 2 / (r - l), -(r + l) / (r - l) and so on, the entries of glOrtho.
TEST(Camera, OrthographicMatrix) {
  Camera camera;
  camera.Viewport(100, 100);
  camera.SetPlanes(-20, 60);
  ASSERT_TRUE(camera.SetWindow({-3, 5, -2, 6}));
  const Matrix4 m = camera.ProjectionMatrix();
  const Matrix4 expected{2.0 / 8, 0, 0, 0, 0, 2.0 / 8, 0, 0, 0, 0, -2.0 / 80, 0, -2.0 / 8, -4.0 / 8, -40.0 / 80, 1};
  for (std::size_t i = 0; i < 16; ++i) EXPECT_NEAR(m[i], expected[i], 1e-15) << i;
}

TEST(Camera, LongerSideOfTheViewShowsMore) {
  Camera camera = Front();
  camera.Viewport(800, 400);
  ExpectNear(OnDevice(camera, {10, 10, 0}), {0.5, 1, OnDevice(camera, {0, 0, 0})[2]});
  camera.Viewport(400, 800);
  ExpectNear(OnDevice(camera, {10, 10, 0}), {1, 0.5, OnDevice(camera, {0, 0, 0})[2]});
  EXPECT_DOUBLE_EQ(camera.UnitsPerPixel(), 20.0 / 400);
  camera.Viewport(0, -5);
  EXPECT_EQ(camera.Width(), 1);
  EXPECT_EQ(camera.Height(), 1);
}

TEST(Camera, PlanesInEitherOrder) {
  Camera camera = Front();
  camera.SetPlanes(10000, -10000);
  EXPECT_EQ(camera.NearPlane(), -10000);
  EXPECT_EQ(camera.FarPlane(), 10000);
  EXPECT_LT(OnDevice(camera, {0, 0, 5})[2], OnDevice(camera, {0, 0, -5})[2]) << "nearer is the smaller depth";
  camera.SetPlanes(3, 3);
  camera.SetPlanes(kNaN, 3);
  camera.SetPlanes(1, kInf);
  EXPECT_EQ(camera.NearPlane(), -10000);
  EXPECT_EQ(camera.FarPlane(), 10000);
}

TEST(Camera, PerspectiveShowsTheSameWindowAtTheLookAtPoint) {
  Camera camera = Front();
  camera.Viewport(800, 400);
  const Vec3 flat = OnDevice(camera, {10, -4, 0});
  camera.SetProjection(kPerspective);
  const Vec3 deep = OnDevice(camera, {10, -4, 0});
  EXPECT_NEAR(deep[0], flat[0], 1e-12);
  EXPECT_NEAR(deep[1], flat[1], 1e-12);
  // 45 degrees between the rays of the lower and the upper edge: the eye is 10 / tan 22.5 degrees away, and a point
  // nearer by d is larger by eye / (eye - d).
  const double eye = 10 / std::tan(22.5 * std::acos(-1.0) / 180);
  EXPECT_NEAR(OnDevice(camera, {0, 5, 4})[1], 0.5 * eye / (eye - 4), 1e-12);
  EXPECT_NEAR(OnDevice(camera, {0, 5, -9})[1], 0.5 * eye / (eye + 9), 1e-12);
  EXPECT_LT(OnDevice(camera, {0, 0, 4})[2], OnDevice(camera, {0, 0, -9})[2]);
  for (const double z : {4.0, -9.0, -500.0}) EXPECT_LT(std::abs(OnDevice(camera, {0, 0, z})[2]), 1) << z;
}

TEST(Camera, PerspectiveOfAWindowOffTheCentre) {
  Camera camera = Front();
  camera.SetWindow({0, 20, -10, 10});
  camera.SetProjection(kPerspective);
  ExpectNear(OnDevice(camera, {20, 10, 0}), {1, 1, OnDevice(camera, {0, 0, 0})[2]});
  EXPECT_NEAR(OnDevice(camera, {0, 0, 0})[0], -1, 1e-12);
}

TEST(Camera, WindowsWithoutASizeAreRefused) {
  Camera camera;
  const OrthoWindow before = camera.Window();
  for (const OrthoWindow& bad :
       {OrthoWindow{1, 1, 0, 1}, OrthoWindow{0, 1, 2, 2}, OrthoWindow{1, -1, 0, 1}, OrthoWindow{kNaN, 1, 0, 1},
        OrthoWindow{0, 1, 0, kInf}, OrthoWindow{0, 1e-200, 0, 1}}) {
    EXPECT_FALSE(camera.SetWindow(bad));
  }
  for (const double range : {0.0, -3.0, kNaN, kInf}) camera.SetSceneRange(range);
  EXPECT_EQ(camera.Window(), before);
  camera.SetSceneRange(4);
  EXPECT_EQ(camera.Window(), (OrthoWindow{-4, 4, -4, 4}));
}

TEST(Camera, ZoomKeepsTheCentre) {
  Camera camera;
  camera.SetWindow({0, 8, -2, 2});
  camera.Zoom(0.5);
  EXPECT_EQ(camera.Window(), (OrthoWindow{2, 6, -1, 1}));
  for (const double bad : {0.0, -1.0, kNaN, kInf}) camera.Zoom(bad);
  EXPECT_EQ(camera.Window(), (OrthoWindow{2, 6, -1, 1}));
  for (int i = 0; i < 10000; ++i) camera.Zoom(0.95);
  for (const double entry : camera.ProjectionMatrix()) EXPECT_TRUE(std::isfinite(entry));
  for (int i = 0; i < 10000; ++i) camera.Zoom(1.05);
  for (const double entry : camera.ProjectionMatrix()) EXPECT_TRUE(std::isfinite(entry));
}

TEST(Camera, PanMovesBothPoints) {
  Camera camera;
  camera.SetPosition({0, 0, 50});
  camera.Pan(3, -2);
  ExpectNear(camera.Position(), {3, -2, 50});
  ExpectNear(camera.LookAt(), {3, -2, 0});
  camera.Pan(kNaN, 1);
  camera.Pan(1, kInf);
  ExpectNear(camera.Position(), {3, -2, 50});
}

TEST(Camera, DollyStopsBeforeTheLookAtPoint) {
  Camera camera;
  camera.SetPosition({0, 0, 50});
  camera.Dolly(20);
  ExpectNear(camera.Position(), {0, 0, 30});
  camera.Dolly(-30);
  ExpectNear(camera.Position(), {0, 0, 60});
  camera.Dolly(1000);
  EXPECT_GT(camera.Position()[2], 0);
  EXPECT_LT(camera.Position()[2], 1);
  camera.Dolly(kNaN);
  camera.Dolly(-kInf);
  EXPECT_LT(camera.Position()[2], 1);
  EXPECT_EQ(camera.Window(), OrthoWindow{}) << "parallel rays do not show a distance";
}

TEST(Camera, DollyComesNearerInPerspective) {
  Camera camera = Front();
  camera.SetProjection(kPerspective);
  camera.Dolly(50);
  EXPECT_EQ(camera.Window(), (OrthoWindow{-5, 5, -5, 5}));
  EXPECT_NEAR(OnDevice(camera, {0, 5, 0})[1], 1, 1e-12);
}

TEST(Camera, PitchYawAndRollAreRightHandedTurns) {
  Camera camera = Front();
  camera.Yaw(180);  // 90 degrees
  ExpectNear(camera.Position(), {100, 0, 0});
  ExpectNear(camera.Axes().up, {0, 1, 0});
  camera.Yaw(-180);
  camera.Pitch(-180);
  ExpectNear(camera.Position(), {0, 100, 0});
  ExpectNear(camera.Axes().up, {0, 0, -1});
  camera.Pitch(180);
  ExpectNear(camera.Position(), {0, 0, 100});
  // The picture turns counter-clockwise: what was at the right goes to the top.
  camera.Roll(90);
  ExpectNear(OnDevice(camera, {5, 0, 0}), {0, 0.5, OnDevice(camera, {0, 0, 0})[2]});
  ExpectNear(camera.Position(), {0, 0, 100});
}

TEST(Camera, TurnsGoOnOverThePole) {
  Camera camera = Front();
  for (int i = 0; i < 72; ++i) {
    camera.Pitch(10);  // 5 degrees
    camera.Yaw(6);
    camera.Roll(2);
    ExpectRightHanded(camera.Axes());
    EXPECT_NEAR(std::sqrt(Dot(camera.Position(), camera.Position())), 100, 1e-9);
  }
  Camera over = Front();
  for (int i = 0; i < 72; ++i) over.Pitch(10);
  ExpectNear(over.Position(), {0, 0, 100});
  ExpectNear(over.Axes().up, {0, 1, 0});
}

TEST(Camera, CameraOnItsLookAtPointKeepsItsDirection) {
  Camera camera;
  camera.SetPosition({30, 0, 0});
  camera.SetUp({0, 0, 10});
  camera.SetPosition({0, 0, 0});
  ExpectNear(camera.Axes().back, {1, 0, 0});
  ExpectNear(camera.Axes().up, {0, 0, 1});
  ExpectRightHanded(camera.Axes());
  for (const double entry : camera.ViewMatrix()) EXPECT_TRUE(std::isfinite(entry));
  camera.SetProjection(kPerspective);
  for (const double entry : camera.ProjectionMatrix()) EXPECT_TRUE(std::isfinite(entry));
  camera.Dolly(5);
  ExpectNear(camera.Position(), {0, 0, 0});
  camera.Yaw(180);
  ExpectNear(camera.Axes().back, {0, 1, 0});
  camera.Dolly(-5);
  ExpectNear(camera.Position(), {0, 5, 0});
}

TEST(Camera, UpAlongTheLineOfSightIsReplaced) {
  for (const Vec3& up : {Vec3{0, 0, 1}, Vec3{0, 0, -3}, Vec3{0, 0, 0}, Vec3{0, 1e-12, 1}}) {
    Camera camera;
    camera.SetPosition({0, 0, 7});
    camera.SetUp(up);
    ExpectRightHanded(camera.Axes());
    ExpectNear(camera.Axes().back, {0, 0, 1});
  }
}

TEST(Camera, NumbersThatAreNoneChangeNothing) {
  Camera camera = Front();
  const Matrix4 before = camera.ViewMatrix();
  for (const double bad : {kNaN, kInf, -kInf, 1e300}) {
    camera.SetPosition({bad, 0, 0});
    camera.SetLookAt({0, bad, 0});
    camera.SetUp({0, 0, bad});
    camera.Pitch(bad);
    camera.Yaw(bad);
    camera.Roll(bad);
    camera.Pan(bad, 0);
  }
  EXPECT_EQ(camera.ViewMatrix(), before);
}

}  // namespace
}  // namespace orv
