#include "view/edit_state.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "numerics/angles.h"
#include "view/cell_picking.h"

namespace orv {
namespace {

constexpr std::array<EditStateEntry, 17> kEditStates = {{
    {1, "select", 0, DragAction::Pan, false},
    {2, "move", 210, DragAction::None, false},
    {3, "rotate", 211, DragAction::None, false},
    {4, "arcrotate", 203, DragAction::None, false},
    {5, "scale", 212, DragAction::None, false},
    {6, "zoom", 200, DragAction::Zoom, false},
    {7, "dolly", 202, DragAction::Dolly, false},
    {8, "pan", 201, DragAction::Pan, false},
    {9, "orbit", 207, DragAction::None, false},
    {10, "pitch", 204, DragAction::Pitch, false},
    {11, "yaw", 205, DragAction::Yaw, false},
    {12, "roll", 206, DragAction::Roll, false},
    {13, "zminus", std::nullopt, DragAction::None, true},
    {14, "zplus", std::nullopt, DragAction::None, true},
    {15, "lightback", std::nullopt, DragAction::None, true},
    {16, "stop", std::nullopt, DragAction::None, false},
    {17, "frozenstart", std::nullopt, DragAction::Pan, false},
}};

constexpr double kClickPixels = 3;
constexpr double kNearer = 0.95;
constexpr double kFarther = 1.05;
constexpr double kWindowStep = 3;
constexpr double kPanPart = 0.0025;
constexpr int kFirstHeldName = 10;  // picked things from this name on are not dragged
constexpr double kCircleStep = 0.01;
constexpr std::array<double, 3> kWhite{255, 255, 255};

constexpr int kKeyEnter = 13;
constexpr int kKeyEscape = 27;
constexpr int kKeyPageUp = 33;
constexpr int kKeyPageDown = 34;
constexpr int kKeyLeft = 37;
constexpr int kKeyUp = 38;
constexpr int kKeyRight = 39;
constexpr int kKeyDown = 40;
constexpr int kKeyI = 73;
constexpr int kKeyT = 84;

bool Finite(double x, double y) {
  return std::isfinite(x) && std::isfinite(y);
}

double Guard(double x) {
  return Clamp(x, -1, 1);
}

// The part of a rotation by `step` in a plane: `along` grows towards the radius with a step above 0; `across` comes out
// on its positive side. `reach` is what the step takes for `across`. False when there is no radius.
bool StepOnCircle(double step, double radius, double reach, double& along, double& across) {
  if (!(radius > 0)) return false;
  const double c = along / radius;
  const double s = reach / radius;
  const double cStep = Guard(std::sqrt(1 - step * step));
  const double n = Guard(c * cStep + step * s);
  const double m = Guard(std::sqrt(1 - n * n));
  along = radius * n;
  across = radius * m;
  return true;
}

double Radius(double a, double b) {
  return std::sqrt(a * a + b * b);
}

// The direction towards the camera, made perpendicular to a unit vector. Seen along that vector, what is above in the
// picture comes to lie ahead.
Vec3 PerpendicularView(const Camera::Frame& axes, const Vec3& up) {
  const double along = axes.back[0] * up[0] + axes.back[1] * up[1] + axes.back[2] * up[2];
  Vec3 flat{};
  for (std::size_t i = 0; i < 3; ++i) flat[i] = axes.back[i] - along * up[i];
  if (std::hypot(flat[0], flat[1], flat[2]) > 1e-9) return flat;
  for (std::size_t i = 0; i < 3; ++i) flat[i] = along > 0 ? -axes.up[i] : axes.up[i];
  return flat;
}

}  // namespace

const EditStateEntry* FindEditState(int state) {
  const auto* const found = std::ranges::find(kEditStates, state, &EditStateEntry::state);
  return found == kEditStates.end() ? nullptr : &*found;
}

const EditStateEntry* FindEditState(std::string_view key) {
  const auto* const found = std::ranges::find(kEditStates, key, &EditStateEntry::key);
  return found == kEditStates.end() ? nullptr : &*found;
}

void noSteps(double old, double wanted, const std::string& /*text*/, double& out) {
  const double reach = std::abs(old) * 0.1 + 1;
  if (!(std::abs(old - wanted) > reach)) {
    out = wanted;
  } else if (std::abs(old + wanted) > reach) {
    out = old * 1.05;
  } else {
    out = -wanted;
  }
}

ViewInput::ViewInput(ClassGl& scene, ViewWindow* window)
    : scene_(scene), window_(window != nullptr ? *window : noWindow_) {
  Ball().Enable(true);
}

double ViewInput::PixelRatio() const {
  const double ratio = scene_.Control().DeviceRatio();
  return ratio > 0 && std::isfinite(ratio) ? ratio : 1;
}

ViewInput::Place ViewInput::Normalised(const Place& place) const {
  const double width = scene_.Control().Width();
  const double height = scene_.Control().Height();
  if (!(width > 0) || !(height > 0)) return {};
  return {2 * place.x / width - 1, 2 * (height - place.y) / height - 1};
}

// --- mouse -----------------------------------------------------------------------------------------------------------

DragAction ViewInput::ActionOf(int Button, int Shift) const {
  DragAction action = DragAction::Turn;
  const bool plain = (Shift & ShiftBit::kControl) == 0;
  if (Button == MouseButton::kLeft && plain && (Shift & ShiftBit::kShift) != 0) return DragAction::Rectangle;
  if (Button == MouseButton::kLeft && plain) {
    action = FindEditState(editState_)->left;
    if (action == DragAction::None) action = DragAction::Turn;
  } else if (Button == MouseButton::kRight && editState_ != kSelectState) {
    action = editState_ == kZoomState ? DragAction::Pan : DragAction::Zoom;
  }
  return action == DragAction::Turn && !Ball().Enabled() ? DragAction::None : action;
}

void ViewInput::MouseDown(int Button, int Shift, double x, double y) {
  if (!Finite(x, y)) return;
  if (drag_.button == Button) EndDrag(last_);
  if (drag_.button != 0) return;
  last_ = down_ = {x, y};
  lastNorm_ = Normalised(last_);
  drag_ = {Button, ActionOf(Button, Shift), false};
  if (Button == MouseButton::kLeft) {
    Ball().Stop();
    dragging_ = pickName_ != 0 && editState_ == kSelectState && drag_.action != DragAction::Rectangle;
  }
  if (drag_.action == DragAction::Turn) Ball().Down(lastNorm_.x, lastNorm_.y);
}

void ViewInput::MouseMove(int Button, int Shift, double x, double y) {
  if (!Finite(x, y)) return;
  const Place place{x, y};
  // A release that the view was not told of.
  if (drag_.button != 0 && (Button & drag_.button) == 0) EndDrag(last_);
  if (Button == 0) {
    last_ = place;
    return;
  }
  if (drag_.button == 0) {
    MouseDown(Button & -Button, Shift, x, y);
    return;
  }
  if (!drag_.moved && std::hypot(x - down_.x, y - down_.y) < kClickPixels * PixelRatio()) return;
  drag_.moved = true;
  const bool held = drag_.button == MouseButton::kLeft && dragging_ && pickName_ >= kFirstHeldName;
  if (!held && drag_.action != DragAction::None) {
    Act(place);
    if (drag_.action != DragAction::Rectangle) scene_.Control().Redraw();
  }
  lastNorm_ = Normalised(place);
  last_ = place;
}

bool ViewInput::MouseUp(int Button, int /*Shift*/, double x, double y) {
  if (drag_.button == 0 || Button != drag_.button) return false;
  const Place place = Finite(x, y) ? Place{x, y} : last_;
  const bool moved = drag_.moved || std::hypot(place.x - down_.x, place.y - down_.y) >= kClickPixels * PixelRatio();
  EndDrag(place);
  const bool click = !moved && Button == MouseButton::kLeft;
  if (click) DropRectangle();
  return click;
}

void ViewInput::EndDrag(const Place& place) {
  const Place norm = Normalised(place);
  if (drag_.action == DragAction::Turn) Ball().Up(norm.x, norm.y);
  drag_ = {};
  dragging_ = false;
}

void ViewInput::DblClick(int Button) {
  if (drag_.button != 0) EndDrag(last_);
  drag_ = {Button, DragAction::None, true};
  if (Button == MouseButton::kLeft) ToggleTrackball();
}

void ViewInput::Wheel(double notches) {
  if (!std::isfinite(notches) || notches == 0) return;
  TheCamera().Zoom(std::pow(kNearer, notches));
  scene_.Control().Redraw();
}

void ViewInput::Act(const Place& place) {
  const double ratio = PixelRatio();
  const Place norm = Normalised(place);
  const double dollyStep = static_cast<double>(scene_.Scale().InverseScale) / 5;
  switch (drag_.action) {
    case DragAction::Turn:
      Ball().Move(norm.x, norm.y);
      break;
    case DragAction::Pan:
      PanBy((place.x - last_.x) / ratio, (place.y - last_.y) / ratio);
      break;
    case DragAction::Zoom:
      if (place.y != last_.y) ZoomStep(place.y < last_.y);
      break;
    case DragAction::Dolly:
      if (place.y != last_.y) TheCamera().Dolly(place.y < last_.y ? -dollyStep : dollyStep);
      break;
    case DragAction::Pitch:
      TheCamera().Pitch((last_.y - place.y) / ratio);
      break;
    case DragAction::Yaw:
      TheCamera().Yaw((last_.x - place.x) / ratio);
      break;
    case DragAction::Roll:
      RollTo(norm);
      break;
    case DragAction::Rectangle:
      DragRectangle(place);
      break;
    case DragAction::None:
      break;
  }
}

void ViewInput::ZoomStep(bool nearer) {
  Camera& camera = TheCamera();
  if (camera.Projection() == kOrthographic) {
    camera.Zoom(nearer ? kNearer : kFarther);
    return;
  }
  OrthoWindow window = camera.Window();
  const double k = static_cast<double>(scene_.Scale().InverseScale) / 5 * (nearer ? 1 : -1);
  const double e = window.right - window.left;
  const double f = window.top - window.bottom;
  window.left += e * k;
  window.right -= e * k;
  window.bottom += f * k;
  window.top -= f * k;
  if (window.right > window.left && window.top > window.bottom) camera.SetWindow(window);
}

void ViewInput::PanBy(double x, double y) {
  const OrthoWindow& window = TheCamera().Window();
  const double s = std::sqrt(window.left * window.left + window.right * window.right + window.bottom * window.bottom +
                             window.top * window.top);
  // The trackball turns what the camera sees: taken back, the picture moves along the screen whatever the turn is.
  const double right = x * kPanPart * s;
  const double up = -(y * kPanPart * s);
  const Matrix4& turn = scene_.Control().Trackball().Matrix();
  TheCamera().Pan(turn[0] * right + turn[1] * up, turn[4] * right + turn[5] * up, turn[8] * right + turn[9] * up);
}

// By the angle about the middle of the view; on its left half the other way round, so that upwards is
// counter-clockwise everywhere.
void ViewInput::RollTo(const Place& norm) {
  const double lengths = std::hypot(lastNorm_.x, lastNorm_.y) * std::hypot(norm.x, norm.y);
  if (!(lengths > 0)) return;
  const double cross = lastNorm_.x * norm.y - lastNorm_.y * norm.x;
  const double angle = std::asin(Guard(cross / lengths)) * 180 / kPi;
  TheCamera().Roll(norm.x < 0 ? -angle : angle);
}

// From the place of the press to the pointer, as far as it is in the view.
void ViewInput::DragRectangle(const Place& place) {
  const int width = scene_.Control().Width();
  const int height = scene_.Control().Height();
  const auto pixel = [](double at, int extent) { return static_cast<int>(std::clamp<double>(at, 0, extent)); };
  const auto [left, right] = std::minmax({pixel(down_.x, width), pixel(place.x, width)});
  const auto [top, bottom] = std::minmax({pixel(down_.y, height), pixel(place.y, height)});
  rectangle_.reset();
  if (left < right && top < bottom) rectangle_ = {left, height - bottom, right - left, bottom - top};
  window_.ShowRectangle(rectangle_);
}

void ViewInput::DropRectangle() {
  if (!rectangle_) return;
  rectangle_.reset();
  window_.ShowRectangle(rectangle_);
}

// --- keys ------------------------------------------------------------------------------------------------------------

void ViewInput::KeyDown(int& KeyCode, int Shift) {
  switch (KeyCode) {
    case kKeyI:
      ShowIsometric((Shift & ShiftBit::kShift) == 0);
      break;
    case kKeyEscape:
      if (!rectangle_) return;
      DropRectangle();
      break;
    case kKeyPageUp:
    case kKeyPageDown:
    case kKeyLeft:
    case kKeyUp:
    case kKeyRight:
    case kKeyDown:
      TurnOnCircle(KeyCode);
      break;
    default:
      return;
  }
  KeyCode = 0;
}

void ViewInput::FormKeyDown(int& KeyCode, int Shift, bool optionsVisible) {
  if (KeyCode == kKeyEnter && optionsVisible) {
    window_.CloseOptions();
    KeyCode = 0;
  } else if (KeyCode == kKeyT) {
    keyFlag_ = !keyFlag_;
    KeyCode = 0;
  } else {
    KeyDown(KeyCode, Shift);
  }
}

void ViewInput::ShowIsometric(bool real) {
  scene_.View().realIso = real;
  window_.CaptionOfCheck3(real ? "REAL_ISO" : "");
  scene_.CameraSet("ISONEW", 2, 0);
  scene_.Control().Redraw();
}

void ViewInput::TurnOnCircle(int KeyCode) {
  Vec3 position = TheCamera().Position();
  auto& [x, y, z] = position;
  const bool onward = KeyCode == kKeyLeft || KeyCode == kKeyUp || KeyCode == kKeyPageUp;
  const double step = onward ? kCircleStep : -kCircleStep;
  bool moved = false;
  if (KeyCode == kKeyLeft || KeyCode == kKeyRight) {
    moved = StepOnCircle(step, Radius(y, z), z, y, z);
  } else if (KeyCode == kKeyUp || KeyCode == kKeyDown) {
    const double side = x < 0 ? -1 : 1;
    // Near the pole the step takes the side of x alone, as if it were 1.
    const double reach = std::abs(x) > 1 || x == 0 ? x : side;
    moved = StepOnCircle(step, Radius(z, x), reach, z, x);
    x *= side;
  } else {
    moved = StepOnCircle(step, Radius(x, y), y, x, y);
  }
  if (moved) MoveCamera(position);
}

void ViewInput::MoveCamera(const Vec3& position) {
  const Vec3 old = TheCamera().Position();
  const std::array<std::string, 3> names{"x", "y", "z"};
  Vec3 out{};
  for (std::size_t i = 0; i < 3; ++i) noSteps(old[i], position[i], names[i], out[i]);
  TheCamera().SetPosition(out);
  scene_.Control().Redraw();
}

void ViewInput::KeyPress(int& KeyAscii) {
  Vec3 up{};
  if (KeyAscii == 'z') {
    up = {0, 0, 10};
  } else if (KeyAscii == 'x') {
    up = {1, 0, 0};
  } else if (KeyAscii == 'y') {
    up = {0, 1, 0};
  } else {
    return;
  }
  const double length = up[0] + up[1] + up[2];
  Camera& camera = TheCamera();
  const Vec3 direction = PerpendicularView(camera.Axes(), {up[0] / length, up[1] / length, up[2] / length});
  const Vec3& target = camera.LookAt();
  camera.SetUp(up);
  // The camera remembers from where it came to its look-at point.
  camera.SetPosition({target[0] + direction[0], target[1] + direction[1], target[2] + direction[2]});
  camera.SetPosition({0, 0, 0});
  scene_.Control().Redraw();
  KeyAscii = 0;
}

// --- states ----------------------------------------------------------------------------------------------------------

void ViewInput::Pick(std::span<const std::uint32_t> items) {
  pickName_ = NameOfNearestHit(items);
}

void ViewInput::SetEditState(int state) {
  const EditStateEntry* const entry = FindEditState(state);
  if (entry == nullptr) return;
  if (!entry->momentary) {
    editState_ = state;
    if (entry->cursor) SetCursor(0, *entry->cursor);
    return;
  }
  if (state == kZoomOutState) TheCamera().Zoom(kWindowStep);
  if (state == kZoomInState) TheCamera().Zoom(1 / kWindowStep);
  if (state == kLightBackState) LightBack();
  scene_.Control().Redraw();
}

void ViewInput::SetCursor(int Cursor, int picture) {
  scene_.Control().Cursor(picture != 0 ? picture : Cursor);
}

void ViewInput::SetGrids(bool shown) {
  scene_.View().grid = shown;
  scene_.Control().Redraw();
}

void ViewInput::LightBack() {
  std::array<double, 3>& background = scene_.View().options.ColourOfBackGround;
  if (background != kWhite) {
    window_.KeepBackground(background);
    background = kWhite;
  } else {
    background = window_.StoredBackground();
  }
}

void ViewInput::ToggleTrackball() {
  animate_ = !animate_;
  if (!animate_) Ball().Stop();
  Ball().Enable(animate_);
  Ball().Update();
  scene_.Control().Redraw();
}

bool ViewInput::SpinStep() {
  Trackball& ball = Ball();
  if (!ball.Enabled() || !ball.SpinOn() || ball.TrackDown()) return false;
  ball.Update();
  scene_.Control().Redraw();
  return true;
}

}  // namespace orv
