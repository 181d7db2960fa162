#include <cmath>
#include <gmock/gmock.h>
#include <numbers>

#include "support/input_scene.h"

namespace orv::testing {
namespace {

using ::testing::ElementsAre;

// --- states ----------------------------------------------------------------------------------------------------------

TEST_F(EditStateTest, EveryStateHasItsKeyAndItsPointer) {
  const std::vector<std::tuple<int, std::string, int>> expected = {
      {1, "select", 0},  {2, "move", 210},   {3, "rotate", 211}, {4, "arcrotate", 203},
      {5, "scale", 212}, {6, "zoom", 200},   {7, "dolly", 202},  {8, "pan", 201},
      {9, "orbit", 207}, {10, "pitch", 204}, {11, "yaw", 205},   {12, "roll", 206}};
  for (const auto& [state, key, cursor] : expected) {
    ASSERT_NE(FindEditState(key), nullptr) << key;
    EXPECT_EQ(FindEditState(key)->state, state);
    input.SetEditState(state);
    EXPECT_EQ(input.EditState(), state);
    EXPECT_EQ(control.Cursors().back(), cursor) << key;
  }
  const std::size_t cursors = control.Cursors().size();
  for (const auto& [state, key] : {std::pair{16, "stop"}, {17, "frozenstart"}}) {
    ASSERT_NE(FindEditState(std::string_view(key)), nullptr);
    EXPECT_EQ(FindEditState(std::string_view(key))->state, state);
    input.SetEditState(state);
    EXPECT_EQ(input.EditState(), state);
  }
  EXPECT_EQ(control.Cursors().size(), cursors) << "they leave the pointer";
  for (const int unknown : {0, -1, 18, 1000}) {
    input.SetEditState(unknown);
    EXPECT_EQ(input.EditState(), 17);
  }
  EXPECT_EQ(FindEditState("valisxyz"), nullptr);
}

TEST_F(EditStateTest, ThePointerIsThePictureWhereThereIsOne) {
  input.SetCursor(11);
  input.SetCursor(0, 204);
  EXPECT_THAT(control.Cursors(), ElementsAre(11, 204));
}

TEST_F(EditStateTest, ZminusTriplesTheWindowAndZplusDividesIt) {
  input.SetEditState(8);
  input.SetEditState(FindEditState("zminus")->state);
  EXPECT_EQ(Window(), (OrthoWindow{-30, 30, -30, 30}));
  EXPECT_EQ(input.EditState(), 8) << "the state ends";
  input.SetEditState(FindEditState("zplus")->state);
  EXPECT_NEAR(Window().left, -10, 1e-12);
  EXPECT_NEAR(Window().top, 10, 1e-12);
  EXPECT_EQ(input.EditState(), 8);
  EXPECT_EQ(control.RedrawRequests(), 2);
}

TEST_F(EditStateTest, LightbackTogglesWhiteAndTheColourOfTheOptions) {
  const std::array<double, 3> white{255, 255, 255};
  auto& background = view.options.ColourOfBackGround;
  background = {1, 2, 3};
  input.SetEditState(kLightBackState);
  EXPECT_EQ(background, white);
  input.SetEditState(kLightBackState);
  EXPECT_EQ(background, (std::array<double, 3>{1, 2, 3}));
  EXPECT_EQ(control.RedrawRequests(), 2);
  input.SetEditState(kLightBackState);
  background = {4, 5, 6};  // the options were changed meanwhile
  input.SetEditState(kLightBackState);
  EXPECT_EQ(background, white);
  input.SetEditState(kLightBackState);
  EXPECT_EQ(background, (std::array<double, 3>{4, 5, 6}));
  background = white;  // white by the options: the colour that it replaced last comes
  input.SetEditState(kLightBackState);
  EXPECT_EQ(background, (std::array<double, 3>{4, 5, 6}));
}

TEST_F(EditStateTest, LightbackExchangesTheBackgroundThatTheWindowKeeps) {
  struct Keeper : ViewWindow {
    void KeepBackground(const std::array<double, 3>& colour) override { kept = colour; }
    std::array<double, 3> StoredBackground() const override { return kept; }
    std::array<double, 3> kept{7, 8, 9};
  } keeper;
  ViewInput other(scene, &keeper);
  auto& background = view.options.ColourOfBackGround;
  background = {255, 255, 255};
  other.SetEditState(kLightBackState);
  EXPECT_EQ(background, (std::array<double, 3>{7, 8, 9}));
  background = {1, 2, 3};
  other.SetEditState(kLightBackState);
  EXPECT_EQ(keeper.kept, (std::array<double, 3>{1, 2, 3}));
}

TEST_F(EditStateTest, GridsAreASwitchOfTheView) {
  EXPECT_FALSE(input.Grids());
  input.SetGrids(true);
  EXPECT_TRUE(input.Grids());
  EXPECT_TRUE(view.grid);
  EXPECT_EQ(control.RedrawRequests(), 1);
}

// --- drags -----------------------------------------------------------------------------------------------------------

TEST_F(EditStateTest, PositionsAreKeptInDeviceCoordinates) {
  input.MouseDown(kLeft, 0, 100, 300);
  EXPECT_DOUBLE_EQ(input.LastNormX(), -0.5);
  EXPECT_DOUBLE_EQ(input.LastNormY(), -0.5);
  input.MouseMove(kLeft, 0, 400, 0);
  EXPECT_DOUBLE_EQ(input.LastNormX(), 1);
  EXPECT_DOUBLE_EQ(input.LastNormY(), 1);
}

TEST_F(EditStateTest, PanMovesCameraAndTargetByTheWindow) {
  const double s = 20;  // root of 4 * 10^2
  for (const int state : {1, 8, 17}) {
    scene.CameraSet("iso", 2, 0);
    input.SetEditState(state);
    const Camera::Frame axes = control.Camera().Axes();
    DragOnce(kLeft, 40, 20);
    const Vec3& target = control.Camera().LookAt();
    for (std::size_t i = 0; i < 3; ++i) {
      const double expected = 40 * 0.0025 * s * axes.right[i] - 20 * 0.0025 * s * axes.up[i];
      EXPECT_NEAR(target[i], expected, 1e-9) << "state " << state;
      EXPECT_NEAR(Position()[i], 100 + expected, 1e-9);
    }
    EXPECT_FALSE(SceneTurned());
  }
}

// Whatever the trackball's turn, a drag to the right moves the picture as it does without one.
TEST_F(EditStateTest, PanFollowsTheScreenBehindATurn) {
  scene.CameraSet("iso", 2, 0);
  input.SetEditState(1);
  const auto onScreen = [&] {
    const Matrix4 seen = control.ModelviewMatrix();
    return std::array<double, 2>{seen[12], seen[13]};
  };
  for (const double way : {0.0, 0.5, 0.9}) {
    control.Trackball().Clear();
    control.Trackball().Enable(true);
    control.Trackball().Down(0, 0);
    control.Trackball().Move(way, way / 3);
    control.Trackball().Up(way, way / 3);
    control.Trackball().Stop();
    const auto before = onScreen();
    DragOnce(kLeft, 40, 20);
    const auto after = onScreen();
    EXPECT_NEAR(after[0] - before[0], -40 * 0.0025 * 20, 1e-6) << way;
    EXPECT_NEAR(after[1] - before[1], 20 * 0.0025 * 20, 1e-6) << way;
  }
}

TEST_F(EditStateTest, ZoomStepsTheOrthographicWindow) {
  input.SetEditState(kZoomState);
  Drag(kLeft, 0, -5);
  EXPECT_NEAR(Window().right, 9.5, 1e-12) << "upwards comes nearer";
  input.MouseMove(kLeft, 0, 210, 195);
  EXPECT_NEAR(Window().right, 9.5, 1e-12) << "level: no step";
  input.MouseMove(kLeft, 0, 200, 196);
  EXPECT_NEAR(Window().right, 9.5 * 1.05, 1e-12);
}

TEST_F(EditStateTest, ZoomOfAPerspectiveGoesByTheScale) {
  control.Camera().SetProjection(kPerspective);
  control.Camera().SetWindow({-8, 12, -10, 10});
  const double k = static_cast<double>(scene.Scale().InverseScale) / 5;
  ASSERT_NEAR(k, 0.02, 1e-9);
  input.SetEditState(kZoomState);
  Drag(kLeft, 0, -5);
  EXPECT_NEAR(Window().left, -8 + 20 * k, 1e-9);
  EXPECT_NEAR(Window().right, 12 - 20 * k, 1e-9);
  EXPECT_NEAR(Window().bottom, -10 + 20 * k, 1e-9);
  EXPECT_NEAR(Window().top, 10 - 20 * k, 1e-9);
  const double e = Window().right - Window().left;
  input.MouseMove(kLeft, 0, 200, 203);
  EXPECT_NEAR(Window().right - Window().left, e * (1 + 2 * k), 1e-9);
}

TEST_F(EditStateTest, ZoomStopsWhenTheWindowWouldInvert) {
  lists.Clear();
  lists.PointList(1, 0) = 0.001F;  // a free scale makes 0.01 of it: k = 100 / 5
  lists.NumberPoints = 0;
  control.Paint(scene);
  control.Camera().SetProjection(kPerspective);
  const double k = static_cast<double>(scene.Scale().InverseScale) / 5;
  ASSERT_GT(k, 0.5);
  const OrthoWindow before = Window();
  input.SetEditState(kZoomState);
  Drag(kLeft, 0, -5);
  EXPECT_EQ(Window(), before);
  input.MouseMove(kLeft, 0, 200, 205);
  EXPECT_NEAR(Window().right - Window().left, (before.right - before.left) * (1 + 2 * k), 1e-6);
}

TEST_F(EditStateTest, ZoomOfAnOrthographicWindowNeverEnds) {
  input.SetEditState(kZoomState);
  input.MouseDown(kLeft, 0, 200, 200);
  for (int n = 1; n < 3000; ++n) input.MouseMove(kLeft, 0, 200, 200 - 3.0 * n);
  EXPECT_GT(Window().right, Window().left);
  EXPECT_LT(Window().right - Window().left, 1e-20);
}

TEST_F(EditStateTest, DollyStepsByTheScale) {
  Stand({0, 0, 100});
  input.SetEditState(7);
  const double step = static_cast<double>(scene.Scale().InverseScale) / 5;
  Drag(kLeft, 0, -5);
  ExpectPosition({0, 0, 100 + step});
  input.MouseMove(kLeft, 0, 200, 200);
  ExpectPosition({0, 0, 100});
  input.MouseMove(kLeft, 0, 210, 200);
  ExpectPosition({0, 0, 100});
}

TEST_F(EditStateTest, PitchAndYawTurnByPixels) {
  Camera pitched = control.Camera();
  pitched.Pitch(-10);  // last y - y
  Camera yawed = control.Camera();
  yawed.Yaw(7);  // last x - x
  const Camera start = control.Camera();
  input.SetEditState(10);
  DragOnce(kLeft, 30, 10);
  ExpectPosition(pitched.Position());
  control.Camera() = start;
  input.SetEditState(11);
  DragOnce(kLeft, -7, 30);
  ExpectPosition(yawed.Position());
}

TEST_F(EditStateTest, RollTurnsByTheAngleAboutTheMiddle) {
  const auto up = [&] { return control.Camera().Axes().up; };
  const auto rolled = [&](double angle) {
    Camera camera = control.Camera();
    camera.Roll(angle);
    return camera.Axes().up;
  };
  const auto expectUp = [&](const Vec3& expected) {
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(up()[i], expected[i], 1e-9);
  };
  input.SetEditState(12);
  // On the right half upwards, 30 degrees: counter-clockwise.
  Vec3 expected = rolled(30);
  input.MouseDown(kLeft, 0, 300, 200);
  input.MouseMove(kLeft, 0, 200 + 100 * std::cos(std::numbers::pi / 6), 150);
  Release(kLeft);
  expectUp(expected);
  // On the left half upwards as well: the sign is reversed there.
  expected = rolled(30);
  input.MouseDown(kLeft, 0, 100, 200);
  input.MouseMove(kLeft, 0, 200 - 100 * std::cos(std::numbers::pi / 6), 150);
  Release(kLeft);
  expectUp(expected);
  // Out of the middle no angle is known.
  expected = up();
  DragOnce(kLeft, 50, 50);
  expectUp(expected);
}

TEST_F(EditStateTest, TheRightButtonPansInZoomAndZoomsElsewhere) {
  input.SetEditState(kZoomState);
  DragOnce(kRight, 40, -40);
  EXPECT_NE(control.Camera().LookAt(), (Vec3{0, 0, 0}));
  EXPECT_NEAR(Window().right, 10, 1e-12);
  int zooms = 0;
  for (const EditStateEntry* entry = FindEditState(2); entry != nullptr; entry = FindEditState(entry->state + 1)) {
    if (entry->state == kZoomState || entry->momentary) continue;
    input.SetEditState(entry->state);
    control.Camera().SetWindow({-10, 10, -10, 10});
    const Vec3 target = control.Camera().LookAt();
    DragOnce(kRight, 40, -40);
    EXPECT_NEAR(Window().right, 9.5, 1e-12) << entry->key;
    EXPECT_EQ(control.Camera().LookAt(), target);
    ++zooms;
  }
  EXPECT_EQ(zooms, 12);
  EXPECT_FALSE(SceneTurned());
}

TEST_F(EditStateTest, OneDragDoesOneThing) {
  const auto turns = [&](int state, int Button, int Shift) {
    control.Trackball().Clear();
    input.SetEditState(state);
    const OrthoWindow before = Window();
    const Vec3 position = Position();
    DragOnce(Button, 40, 30, Shift);
    const bool turned = SceneTurned();
    if (turned) {
      EXPECT_EQ(Window(), before);
      EXPECT_EQ(Position(), position);
    }
    return turned;
  };
  for (const int state : {2, 3, 4, 5, 9, 16}) EXPECT_TRUE(turns(state, kLeft, 0)) << state;
  for (const int state : {1, 6, 7, 8, 10, 11, 12, 17}) EXPECT_FALSE(turns(state, kLeft, 0)) << state;
  EXPECT_TRUE(turns(1, kRight, 0));
  for (const int state : {2, 6, 8, 9, 12}) EXPECT_FALSE(turns(state, kRight, 0)) << state;
  for (const int state : {1, 6, 8, 9, 12, 17}) {
    EXPECT_TRUE(turns(state, kMiddle, 0)) << state;
    EXPECT_TRUE(turns(state, kLeft, ShiftBit::kControl)) << state;
    EXPECT_FALSE(turns(state, kRight, ShiftBit::kControl) && state != 1) << state;
  }
}

TEST_F(EditStateTest, ASecondButtonDoesNotDisturbADrag) {
  input.SetEditState(8);
  Drag(kLeft, 40, 0);
  const Vec3 target = control.Camera().LookAt();
  input.MouseDown(kRight, 0, 240, 200);
  input.MouseMove(kLeft | kRight, 0, 240, 160);
  EXPECT_NEAR(Window().right, 10, 1e-12) << "no zoom";
  EXPECT_NE(control.Camera().LookAt(), target) << "still a pan";
  EXPECT_FALSE(input.MouseUp(kRight, 0, 240, 160));
  input.MouseMove(kLeft, 0, 240, 120);
  EXPECT_NEAR(Window().right, 10, 1e-12);
}

TEST_F(EditStateTest, AReleaseThatNobodyToldEndsTheDrag) {
  input.SetEditState(8);
  Drag(kLeft, 40, 0);
  input.MouseMove(0, 0, 300, 300);
  const Vec3 target = control.Camera().LookAt();
  input.MouseMove(0, 0, 350, 300);
  EXPECT_EQ(control.Camera().LookAt(), target);
  input.MouseMove(kRight, 0, 350, 300);  // nor was this press told
  input.MouseMove(kRight, 0, 350, 290);
  EXPECT_NEAR(Window().right, 9.5, 1e-12);
  input.MouseDown(kRight, 0, 100, 100);
  input.MouseMove(kRight, 0, 100, 110);
  EXPECT_NEAR(Window().right, 9.5 * 1.05, 1e-12) << "from the new press on";
}

TEST_F(EditStateTest, AMoveWithoutAButtonAsksForNoPaint) {
  input.MouseMove(0, 0, 10, 10);
  input.MouseMove(0, 0, 90, 10);
  EXPECT_EQ(control.RedrawRequests(), 0);
  DragOnce(kLeft, 40, 0);
  EXPECT_EQ(control.RedrawRequests(), 1);
}

TEST_F(EditStateTest, AClickMovesNothing) {
  input.SetEditState(8);
  input.MouseDown(kLeft, 0, 200, 200);
  input.MouseMove(kLeft, 0, 202, 201);
  input.MouseMove(kLeft, 0, 199, 202);
  EXPECT_EQ(control.Camera().LookAt(), (Vec3{0, 0, 0}));
  EXPECT_TRUE(input.MouseUp(kLeft, 0, 202, 202));
  EXPECT_EQ(control.RedrawRequests(), 0);
  Drag(kLeft, 3, 0);
  EXPECT_FALSE(input.MouseUp(kLeft, 0, 200, 200)) << "there and back is no click";
  input.MouseDown(kLeft, 0, 200, 200);
  EXPECT_FALSE(input.MouseUp(kLeft, 0, 200, 203)) << "moved though no move was told";
  input.MouseDown(kRight, 0, 200, 200);
  EXPECT_FALSE(input.MouseUp(kRight, 0, 200, 200)) << "a right click picks nothing";
  EXPECT_FALSE(input.MouseUp(kLeft, 0, 200, 200)) << "a release without a press";
}

TEST_F(EditStateTest, TheWayOfAClickIsNotLostToADrag) {
  input.SetEditState(8);
  input.MouseDown(kLeft, 0, 200, 200);
  input.MouseMove(kLeft, 0, 202, 200);
  input.MouseMove(kLeft, 0, 204, 200);
  const Camera::Frame axes = control.Camera().Axes();
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(control.Camera().LookAt()[i], 4 * 0.0025 * 20 * axes.right[i], 1e-9);
  }
}

TEST_F(EditStateTest, PlacesThatAreNoNumbersAreLeftOut) {
  for (int state = 1; state <= 12; ++state) {
    input.SetEditState(state);
    const Camera before = control.Camera();
    input.MouseDown(kLeft, 0, kNan, 200);
    input.MouseDown(kLeft, 0, 200, 200);
    input.MouseMove(kLeft, 0, kNan, kNan);
    input.MouseMove(kLeft, 0, std::numeric_limits<double>::infinity(), 0);
    EXPECT_EQ(control.Camera().Position(), before.Position());
    EXPECT_EQ(control.Camera().Window(), before.Window());
    EXPECT_TRUE(input.MouseUp(kLeft, 0, kNan, 200));
  }
  input.Wheel(kNan);
  EXPECT_EQ(control.RedrawRequests(), 0);
}

struct FlatControl : RecordingControl {
  int Width() const override { return 0; }
  int Height() const override { return 0; }
  double DeviceRatio() const override { return 0; }
};

TEST(EditStateOfAnEmptyView, NothingBreaks) {
  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  TickingClock clock;
  PointLists lists;
  ViewState view;
  FlatControl control;
  ClassGl scene{control, lists, view, prompt, clock};
  ViewInput input{scene};
  for (int state = 1; state <= 17; ++state) {
    for (const int button : {kLeft, kRight, kMiddle}) {
      input.SetEditState(state);
      input.MouseDown(button, 0, 0, 0);
      input.MouseMove(button, 0, 50, 70);
      input.MouseMove(button, 0, 90, 20);
      input.MouseUp(button, 0, 90, 20);
    }
  }
  for (const double x : control.Camera().Position()) EXPECT_TRUE(std::isfinite(x));
  for (const double x : control.Trackball().Matrix()) EXPECT_TRUE(std::isfinite(x));
  EXPECT_GT(control.Camera().Window().right, control.Camera().Window().left);
  EXPECT_EQ(input.LastNormX(), 0);
}

class FineEditStateTest : public EditStateTest {
 protected:
  FineEditStateTest() : EditStateTest(800, 800, 2) {}
};

TEST_F(FineEditStateTest, DragsGoByLogicalPixels) {
  input.SetEditState(8);
  input.MouseDown(kLeft, 0, 400, 400);
  input.MouseMove(kLeft, 0, 405, 400);
  EXPECT_EQ(control.Camera().LookAt(), (Vec3{0, 0, 0})) << "2.5 logical pixels";
  input.MouseMove(kLeft, 0, 480, 400);
  const Camera::Frame axes = control.Camera().Axes();
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NEAR(control.Camera().LookAt()[i], 40 * 0.0025 * 20 * axes.right[i], 1e-9);
  }
  EXPECT_DOUBLE_EQ(input.LastNormX(), 0.2);
}

TEST_F(EditStateTest, TheWheelZooms) {
  input.Wheel(1);
  EXPECT_NEAR(Window().right, 9.5, 1e-12);
  input.Wheel(-1);
  EXPECT_NEAR(Window().right, 10, 1e-12);
  EXPECT_EQ(control.RedrawRequests(), 2);
}

// --- trackball -------------------------------------------------------------------------------------------------------

TEST_F(EditStateTest, TheViewKeepsTurningAfterTheRelease) {
  input.SetEditState(9);
  input.MouseDown(kLeft, 0, 200, 200);
  input.MouseMove(kLeft, 0, 220, 200);
  input.MouseMove(kLeft, 0, 240, 190);
  EXPECT_FALSE(input.SpinStep()) << "not while the button is down";
  Release(kLeft, 240, 190);
  Trackball expected = control.Trackball();
  EXPECT_GT(expected.SpinAngle(), 0);
  control.ForgetRecords();
  EXPECT_TRUE(input.SpinStep());
  EXPECT_TRUE(input.SpinStep());
  expected.Update();
  expected.Update();
  EXPECT_EQ(control.Trackball().Matrix(), expected.Matrix());
  EXPECT_EQ(control.RedrawRequests(), 2);
}

TEST_F(EditStateTest, ALeftClickWithoutMovingStopsTheSpin) {
  for (const int state : {1, 6, 8, 9, 16, 17}) {
    StartSpin();
    input.SetEditState(state);
    input.MouseDown(kLeft, 0, 200, 200);
    EXPECT_TRUE(input.MouseUp(kLeft, 0, 200, 200));
    EXPECT_FALSE(control.Trackball().SpinOn()) << state;
    EXPECT_EQ(control.Trackball().SpinAngle(), 0);
    EXPECT_FALSE(input.SpinStep());
  }
}

TEST_F(EditStateTest, AClickThatTremblesStopsItToo) {
  StartSpin();
  const Matrix4 turn = control.Trackball().Matrix();
  input.MouseDown(kLeft, 0, 200, 200);
  input.MouseMove(kLeft, 0, 201, 202);
  EXPECT_TRUE(input.MouseUp(kLeft, 0, 201, 202));
  EXPECT_FALSE(input.SpinStep());
  EXPECT_EQ(control.Trackball().Matrix(), turn);
}

TEST_F(EditStateTest, ARightZoomKeepsTheSpin) {
  StartSpin();
  DragOnce(kRight, 0, -10);
  EXPECT_TRUE(input.SpinStep());
}

TEST_F(EditStateTest, TheTimerOfTheViewDrivesTheSpinAtEachTick) {
  StartSpin();
  for (int tick = 0; tick < 40; ++tick) scene.TheUpdateTimer_ThatTime();  // the plot has grown
  TimerWork work;
  work.spin = [this] { return input.SpinStep(); };
  Trackball expected = control.Trackball();
  for (int tick = 0; tick < 10; ++tick) {
    EXPECT_TRUE(scene.TheUpdateTimer_ThatTime(work));
    expected.Update();
    EXPECT_EQ(control.Trackball().Matrix(), expected.Matrix());
  }
  input.MouseDown(kLeft, 0, 200, 200);
  Release(kLeft);
  for (int tick = 0; tick < 10; ++tick) EXPECT_FALSE(scene.TheUpdateTimer_ThatTime(work));
}

TEST_F(EditStateTest, StopTurnsTheTrackballOffAndOn) {
  EXPECT_TRUE(control.Trackball().Enabled()) << "it starts on";
  EXPECT_TRUE(input.Animate());
  StartSpin();
  input.ToggleTrackball();
  EXPECT_FALSE(input.Animate());
  EXPECT_FALSE(control.Trackball().Enabled());
  EXPECT_FALSE(input.SpinStep());
  const Matrix4 turn = control.Trackball().Matrix();
  DragOnce(kLeft, 40, 0);
  EXPECT_EQ(control.Trackball().Matrix(), turn);
  input.ToggleTrackball();
  EXPECT_TRUE(input.Animate());
  EXPECT_FALSE(input.SpinStep()) << "it does not spin on by itself";
  DragOnce(kLeft, 40, 0);
  EXPECT_NE(control.Trackball().Matrix(), turn);
}

TEST_F(EditStateTest, ADoubleClickDoesAsStop) {
  input.MouseDown(kLeft, 0, 200, 200);
  EXPECT_TRUE(input.MouseUp(kLeft, 0, 200, 200));
  input.DblClick(kLeft);
  EXPECT_FALSE(input.Animate());
  EXPECT_FALSE(input.MouseUp(kLeft, 0, 200, 200)) << "its release is no second click";
  input.DblClick(kRight);
  EXPECT_FALSE(input.MouseUp(kRight, 0, 200, 200));
  EXPECT_FALSE(input.Animate());
  input.DblClick(kLeft);
  const Camera before = control.Camera();
  input.MouseMove(kLeft, 0, 260, 260);
  EXPECT_EQ(control.Camera().LookAt(), before.LookAt()) << "nor is it the start of a drag";
  EXPECT_TRUE(input.Animate());
}

TEST_F(EditStateTest, AStandardViewTakesTheTurnBack) {
  StartSpin();
  Key(73);
  EXPECT_FALSE(SceneTurned());
  EXPECT_FALSE(input.SpinStep());
}

// --- picking ---------------------------------------------------------------------------------------------------------

TEST_F(EditStateTest, APickedThingIsHeldInState1) {
  const std::vector<std::uint32_t> hit = {1, 1, 5, 9, 12};
  input.Pick(hit);
  EXPECT_EQ(input.PickName(), 12);
  const Vec3 target = control.Camera().LookAt();
  Drag(kLeft, 40, 0);
  EXPECT_TRUE(input.Dragging());
  EXPECT_EQ(control.Camera().LookAt(), target) << "names from 10 on do not move the scene";
  Release(kLeft);
  EXPECT_FALSE(input.Dragging());
  input.SetEditState(8);
  Drag(kLeft, 40, 0);
  EXPECT_FALSE(input.Dragging());
  EXPECT_NE(control.Camera().LookAt(), target);
  Release(kLeft);
  input.Pick(std::vector<std::uint32_t>{1, 1, 5, 9, 6});
  input.SetEditState(1);
  const Vec3 before = control.Camera().LookAt();
  Drag(kLeft, 40, 0);
  EXPECT_TRUE(input.Dragging());
  EXPECT_NE(control.Camera().LookAt(), before) << "a face of a cube is below 10";
  input.Pick({});
  EXPECT_EQ(input.PickName(), 0);
}

}  // namespace
}  // namespace orv::testing
