#pragma once

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/edit_state.h"
#include "view/recording_control.h"

// A view under mouse and keys, for tests of what they do.
namespace orv::testing {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr int kLeft = MouseButton::kLeft;
inline constexpr int kRight = MouseButton::kRight;
inline constexpr int kMiddle = MouseButton::kMiddle;

struct WatchedWindow : ViewWindow {
  void CloseOptions() override { ++closed; }
  void CaptionOfCheck3(const std::string& caption) override { captions.push_back(caption); }
  int closed = 0;
  std::vector<std::string> captions;
};

struct TickingClock : Clock {
  CivilTime Local() const override { return {}; }
  double Seconds() const override { return 0; }
};

// A view of 400 x 400 pixels on a sheet, window -10 .. 10.
class EditStateTest : public ::testing::Test {
 protected:
  EditStateTest() : EditStateTest(400, 400, 1) {}
  EditStateTest(int width, int height, double ratio) : control(width, height, ratio) {
    FillSheet(lists, 4, 4);
    control.Attach(scene);
    control.Paint(scene);
    input.SetEditState(kSelectState);
    control.ForgetRecords();
  }

  // Press at the middle, move there by pixels.
  void Drag(int Button, double dx, double dy, int Shift = 0) {
    input.MouseDown(Button, Shift, 200, 200);
    input.MouseMove(Button, Shift, 200 + dx, 200 + dy);
  }
  void Release(int Button, double x = 200, double y = 200) { input.MouseUp(Button, 0, x, y); }
  // Press, move and release: one drag.
  void DragOnce(int Button, double dx, double dy, int Shift = 0) {
    Drag(Button, dx, dy, Shift);
    Release(Button, 200 + dx, 200 + dy);
  }
  int Key(int KeyCode, int Shift = 0) {
    input.KeyDown(KeyCode, Shift);
    return KeyCode;
  }
  int Press(int KeyAscii) {
    input.KeyPress(KeyAscii);
    return KeyAscii;
  }
  void Stand(const Vec3& position) { control.Camera().SetPosition(position); }
  const Vec3& Position() { return control.Camera().Position(); }
  void ExpectPosition(const Vec3& expected, double tolerance = 1e-9) {
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(Position()[i], expected[i], tolerance) << "component " << i;
  }
  OrthoWindow Window() { return control.Camera().Window(); }
  bool SceneTurned() { return control.Trackball().Matrix() != IdentityMatrix(); }
  void StartSpin() {
    input.SetEditState(9);
    DragOnce(kLeft, 40, 0);
    ASSERT_TRUE(control.Trackball().SpinOn());
  }

  ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  TickingClock clock;
  PointLists lists;
  ViewState view;
  RecordingControl control;
  WatchedWindow window;
  ClassGl scene{control, lists, view, prompt, clock};
  ViewInput input{scene, &window};
};

}  // namespace orv::testing
