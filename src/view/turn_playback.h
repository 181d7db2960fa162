#pragma once

#include <vector>

#include "view/point_lists.h"

namespace orv {

inline constexpr int kMeanData = 0;        // AutoRotMode
inline constexpr int kVariableData = 1;    // the values of each step
inline constexpr int kTurnWithData = 2;    // and the primitives turn
inline constexpr int kReturnFromTurn = 3;  // back to the mean data and the place before the turn

// Plays the steps of a rotating primitive: rewrites the values, and while it turns the positions and outlines, in the
// lists that the scene draws. Everything is in scene units.
class TurnPlayback {
 public:
  // Another plot is shown: its lists hold frame 0.
  void Renew() {
    frame_ = 0;
    meanShown_ = false;
    turned_ = false;
    started_ = false;
    outlines_.clear();
  }

  // Brings the lists to the frame that is due. `mode` 3 becomes 0. True when the lists were changed.
  bool Advance(PointLists& lists, int& mode, double periodSeconds, double nowSeconds);

  // Brings the lists back to frame 0.
  void Restore(PointLists& lists);

  // Whether Advance would change the lists.
  bool Due(const PointLists& lists, int mode, double periodSeconds, double nowSeconds) const;

  int AutoRotFrame() const { return frame_; }

 private:
  void ShowValues(PointLists& lists, int frame) const;
  void ShowMean(PointLists& lists);
  void ShowPositions(PointLists& lists, int frame);
  void KeepOutlines(const PointLists& lists);

  int frame_ = 0;
  bool started_ = false;
  bool meanShown_ = false;
  bool turned_ = false;
  double lastFrame_ = 0;
  std::vector<std::vector<Point3>> outlines_;  // by primitive, as they stand in frame 0
  LegendRange plain_;                          // legend of the mean data
};

}  // namespace orv
