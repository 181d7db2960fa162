#pragma once

#include <string>

#include "view/camera.h"
#include "view/trackball.h"

namespace orv {

// What the standard views depend on besides the command.
struct CameraSituation {
  double firstDraw = 0;  // 1: a plot is awaited, nothing moves
  bool plotLoaded = false;
  bool frozen = false;
  bool realIso = false;  // corners of a cube in place of the turn about the axis
};

inline constexpr int kProjections = 12;

// The standard views of the scene and the place in their cycles. Every view looks at the origin from a distance of
// about 100, is orthographic and takes the turn of the trackball back; the window stays.
class CameraCycle {
 public:
  // The next view of a cycle. Commands, in any case: "iso" the one fixed view; "isonew" a turn of eight steps about the
  // vertical axis, from both sides in turn; "isonewplus" six views from two corners; "proj" and "projinverse" the
  // twelve views along the axes, onward and back. Any other command changes nothing.
  // The vertical axis 1 or 3 is kept for later calls, 2 only when none is kept yet or SPECaxeVertical is 1.
  void CameraSet(const std::string& commande, int axeVerticalIn, int SPECaxeVertical, const CameraSituation& situation,
                 Camera& camera, Trackball& trackball);

  // View 0 .. 11 of the twelve at once; other numbers count round.
  void ShowProjection(int step, Camera& camera, Trackball& trackball);

  int ViewStep() const { return viewStep_; }
  int ViewStepPrevious() const { return viewStepPrevious_; }
  int ViewSide() const { return viewSide_; }
  int ViewAxis() const { return viewAxis_; }
  int Projection() const { return projection_; }

 private:
  void TakeAxis(int axeVerticalIn, int SPECaxeVertical);
  void StepTo(int next);
  void IsoNew(const CameraSituation& situation, Camera& camera);
  void IsoNewPlus(Camera& camera);

  int viewStep_ = 0;
  int viewStepPrevious_ = 0;
  int viewSide_ = 0;     // of the origin, 0 or 1
  int viewAxis_ = 0;     // vertical axis, 0 until set
  int signCounter_ = 0;  // corner of "isonew"
  int projection_ = 0;   // place among the twelve
};

}  // namespace orv
