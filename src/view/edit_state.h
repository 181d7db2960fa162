#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "view/capture.h"
#include "view/class_gl.h"

namespace orv {

// Of `Button`: one of them as it goes down or up, the sum of those that are down in a move.
struct MouseButton {
  static constexpr int kLeft = 1;
  static constexpr int kRight = 2;
  static constexpr int kMiddle = 4;
};

// Of `Shift`.
struct ShiftBit {
  static constexpr int kShift = 1;
  static constexpr int kControl = 2;
  static constexpr int kAlt = 4;
};

enum class DragAction { None, Turn, Pan, Zoom, Dolly, Pitch, Yaw, Roll, Rectangle };

// A state of the view: the toolbar key that sets it, the pointer that shows it (none: the pointer stays), and what a
// drag with the left button does. A momentary state acts at once and leaves the state before it in force.
struct EditStateEntry {
  int state;
  std::string_view key;
  std::optional<int> cursor;
  DragAction left;
  bool momentary;
};

inline constexpr int kSelectState = 1;
inline constexpr int kZoomState = 6;
inline constexpr int kPanState = 8;
inline constexpr int kZoomOutState = 13;  // "zminus"
inline constexpr int kZoomInState = 14;   // "zplus"
inline constexpr int kLightBackState = 15;
inline constexpr int kStopState = 16;
inline constexpr int kFrozenStartState = 17;

// The entry of a state or of a toolbar key (lower case); nullptr for an unknown one.
const EditStateEntry* FindEditState(int state);
const EditStateEntry* FindEditState(std::string_view key);

// One coordinate of a camera that moved from `old` to `wanted`. A jump becomes the coordinate on the other side when
// that is near, else a small step outwards: this holds the camera on its way past a pole. `text` names the coordinate.
void noSteps(double old, double wanted, const std::string& text, double& out);

// What the window does for its view.
class ViewWindow {
 public:
  virtual ~ViewWindow() = default;
  virtual void CloseOptions() {}
  // "REAL_ISO" or empty.
  virtual void CaptionOfCheck3(const std::string& /*caption*/) {}
  // White takes the place of a background, and the background that it gives back.
  virtual void KeepBackground(const std::array<double, 3>& colour) { keptBackground_ = colour; }
  virtual std::array<double, 3> StoredBackground() const { return keptBackground_; }
  // The rectangle dragged for images has changed or is gone.
  virtual void ShowRectangle(const std::optional<CaptureRegion>& /*rectangle*/) {}

 private:
  std::array<double, 3> keptBackground_ = Options{}.ColourOfBackGround;
};

// Mouse and keys of the view. Places are device pixels from the left and the top; what a drag does goes by logical
// pixels. Every change asks the control for a paint.
//
// One drag does one thing, decided as its button goes down: the left button as the state tells, and turning where that
// is nothing; the right button turns in state 1, pans in state 6, else zooms; the middle button, or left with Control,
// turns; left with Shift draws a rectangle, which images are saved from until a left click or Escape takes it away.
// Nothing moves before the pointer has left a circle of 3 pixels, so that a click never moves the scene.
class ViewInput {
 public:
  // The trackball is on from here.
  explicit ViewInput(ClassGl& scene, ViewWindow* window = nullptr);

  void MouseDown(int Button, int Shift, double x, double y);
  void MouseMove(int Button, int Shift, double x, double y);
  // True when it ends a click of the left button: a press that hardly moved.
  bool MouseUp(int Button, int Shift, double x, double y);
  // In place of the second MouseDown: the trackball goes off or on.
  void DblClick(int Button);
  // A step of the zoom for each notch, upwards nearer.
  void Wheel(double notches);

  // Keys as the view gets them. A key that was used becomes 0.
  void KeyDown(int& KeyCode, int Shift);
  void KeyPress(int& KeyAscii);
  // Keys as the window gets them, before the view.
  void FormKeyDown(int& KeyCode, int Shift, bool optionsVisible);

  // The hit records of a selection.
  void Pick(std::span<const std::uint32_t> items);

  int EditState() const { return editState_; }
  // A number without an entry changes nothing.
  void SetEditState(int state);
  // The picture when there is one (200 to 212), else the standard pointer.
  void SetCursor(int Cursor, int picture = 0);
  bool Grids() const { return scene_.View().grid; }
  void SetGrids(bool shown);

  // The "stop" button: the trackball off, or on again.
  void ToggleTrackball();
  // The part of the view that images are saved from; without one they show the whole view.
  const std::optional<CaptureRegion>& Rectangle() const { return rectangle_; }
  void DropRectangle();

  // One step of the spin, for each tick of the view's timer (TimerWork::spin); true when the scene has turned.
  bool SpinStep();

  bool Animate() const { return animate_; }  // the trackball is on
  bool Dragging() const { return dragging_; }
  int PickName() const { return pickName_; }
  double LastNormX() const { return lastNorm_.x; }
  double LastNormY() const { return lastNorm_.y; }
  bool KeyFlag() const { return keyFlag_; }  // flipped by key 84

 private:
  struct Place {
    double x = 0;
    double y = 0;
  };
  struct Drag {
    int button = 0;  // 0: none
    DragAction action = DragAction::None;
    bool moved = false;
  };

  Camera& TheCamera() const { return scene_.Control().Camera(); }
  Trackball& Ball() const { return scene_.Control().Trackball(); }
  double PixelRatio() const;
  Place Normalised(const Place& place) const;
  DragAction ActionOf(int Button, int Shift) const;
  void Act(const Place& place);
  void EndDrag(const Place& place);
  void ZoomStep(bool nearer);
  void PanBy(double x, double y);
  void RollTo(const Place& norm);
  void DragRectangle(const Place& place);
  void MoveCamera(const Vec3& position);
  void TurnOnCircle(int KeyCode);
  void ShowIsometric(bool real);
  void LightBack();

  ClassGl& scene_;
  ViewWindow noWindow_;
  ViewWindow& window_;
  int editState_ = kSelectState;
  Place last_;
  Place down_;
  Place lastNorm_;
  Drag drag_;
  std::optional<CaptureRegion> rectangle_;
  int pickName_ = 0;
  bool dragging_ = false;
  bool animate_ = true;
  bool keyFlag_ = false;
};

}  // namespace orv
