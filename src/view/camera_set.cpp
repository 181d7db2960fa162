#include "view/camera_set.h"

#include <cmath>

#include "numerics/angles.h"
#include "numerics/text.h"

namespace orv {
namespace {

constexpr double kFar = 10000;
constexpr double kDistance = 100;
constexpr double kField = 180;
constexpr int kTurnSteps = 8;
constexpr int kCornerSteps = 6;

constexpr Vec3 kUpX{1, 0, 0};
constexpr Vec3 kUpY{0, 1, 0};
constexpr Vec3 kUpZ{0, 0, 1};

struct AxisView {
  Vec3 from;
  Vec3 up;
};

constexpr std::array<AxisView, kProjections> kAxisViews = {{
    {{0, 1, 0}, kUpZ},
    {{0, -1, 0}, kUpZ},
    {{1, 0, 0}, kUpY},
    {{0, 1, 0}, kUpX},
    {{-1, 0, 0}, kUpY},
    {{0, 0, 1}, kUpY},
    {{0, -1, 0}, kUpZ},
    {{0, 0, -1}, kUpY},
    {{1, 0, 0}, kUpY},
    {{-1, 0, 0}, kUpY},
    {{0, 0, 1}, kUpY},
    {{0, 0, -1}, kUpY},
}};

void Place(Camera& camera, const Vec3& up, const Vec3& position, double farPlane) {
  camera.SetUp(up);
  camera.SetLookAt({0, 0, 0});
  camera.SetPosition(position);
  camera.SetPlanes(-farPlane, farPlane);
  camera.SetFieldAngle(kField);
  camera.SetProjection(kOrthographic);
}

}  // namespace

void CameraCycle::TakeAxis(int axeVerticalIn, int SPECaxeVertical) {
  if (axeVerticalIn > 0 && axeVerticalIn != 2) viewAxis_ = axeVerticalIn;
  if (viewAxis_ == 0 || SPECaxeVertical == 1) viewAxis_ = axeVerticalIn;
}

void CameraCycle::StepTo(int next) {
  viewStepPrevious_ = viewStep_;
  viewStep_ = next;
}

void CameraCycle::CameraSet(const std::string& commande, int axeVerticalIn, int SPECaxeVertical,
                            const CameraSituation& situation, Camera& camera, Trackball& trackball) {
  if (situation.firstDraw == 1) return;
  const std::string command = UpperCase(Trim(commande));
  const bool onward = command == "PROJ";
  if (command == "ISO") {
    TakeAxis(axeVerticalIn, SPECaxeVertical);
    Place(camera, kUpZ, {kDistance, kDistance, kDistance}, kFar);
  } else if (command == "ISONEW") {
    TakeAxis(axeVerticalIn, SPECaxeVertical);
    IsoNew(situation, camera);
  } else if (command == "ISONEWPLUS") {
    TakeAxis(axeVerticalIn, SPECaxeVertical);
    IsoNewPlus(camera);
  } else if (onward || command == "PROJINVERSE") {
    TakeAxis(axeVerticalIn, SPECaxeVertical);
    ShowProjection(projection_ + (onward ? 1 : -1), camera, trackball);
  } else {
    return;
  }
  trackball.Clear();
}

void CameraCycle::IsoNew(const CameraSituation& situation, Camera& camera) {
  if (situation.plotLoaded && !situation.frozen) {
    StepTo((viewStep_ + 1) % kTurnSteps);
    viewSide_ = (viewSide_ + 1) % 2;
  }
  signCounter_ = (signCounter_ + 1) % 4;
  const double d = kDistance * (viewSide_ * 2 - 1);
  const double angle = 45 * viewStep_ * kPi / 180;
  // Across the vertical axis, first the axis that follows it.
  double first = d * std::cos(angle);
  double second = d * std::sin(angle);
  if (situation.realIso) {
    constexpr std::array<int, 4> kFirstSigns{1, -1, -1, 1};
    constexpr std::array<int, 4> kSecondSigns{1, 1, -1, -1};
    first = kDistance * kFirstSigns[static_cast<std::size_t>(signCounter_)];
    second = kDistance * kSecondSigns[static_cast<std::size_t>(signCounter_)];
  }
  const double farPlane = 100 * d;
  if (viewAxis_ == 1) {
    Place(camera, kUpX, {d, first, second}, farPlane);
  } else if (viewAxis_ == 2) {
    Place(camera, kUpY, {second, d, first}, farPlane);
  } else {
    Place(camera, kUpZ, {first, second, d}, farPlane);
  }
}

void CameraCycle::IsoNewPlus(Camera& camera) {
  StepTo((viewStep_ + 1) % kCornerSteps);
  constexpr std::array<Vec3, 3> kUps{kUpZ, kUpX, kUpY};
  const double y = viewStep_ > 2 ? -kDistance : kDistance;
  Place(camera, kUps[static_cast<std::size_t>(viewStep_ % 3)], {-kDistance, y, kDistance}, kFar);
}

void CameraCycle::ShowProjection(int step, Camera& camera, Trackball& trackball) {
  projection_ = (step % kProjections + kProjections) % kProjections;
  const AxisView& view = kAxisViews[static_cast<std::size_t>(projection_)];
  Place(camera, view.up, {view.from[0] * kDistance, view.from[1] * kDistance, view.from[2] * kDistance}, kFar);
  trackball.Clear();
}

}  // namespace orv
