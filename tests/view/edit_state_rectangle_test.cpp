#include <gmock/gmock.h>

#include "support/input_scene.h"

// The rectangle that images are saved from.
namespace orv::testing {
namespace {

using Region = std::array<int, 4>;

class DragRectangleTest : public EditStateTest {
 protected:
  struct Shown : ViewWindow {
    void ShowRectangle(const std::optional<CaptureRegion>& rectangle) override { shown.push_back(rectangle); }
    std::vector<std::optional<CaptureRegion>> shown;
  };
  void DragOver(double x1, double y1, double x2, double y2) {
    drag.MouseDown(kLeft, ShiftBit::kShift, x1, y1);
    drag.MouseMove(kLeft, ShiftBit::kShift, x2, y2);
    EXPECT_FALSE(drag.MouseUp(kLeft, ShiftBit::kShift, x2, y2));
  }
  bool Click(double x, double y) {
    drag.MouseDown(kLeft, 0, x, y);
    return drag.MouseUp(kLeft, 0, x, y);
  }
  static Region Of(const std::optional<CaptureRegion>& region) {
    return region ? Region{region->x, region->y, region->width, region->height} : Region{};
  }

  Shown shown;
  ViewInput drag{scene, &shown};
};

TEST_F(DragRectangleTest, IsDrawnWithShiftInEveryStateAndMovesNothing) {
  const Camera before = control.Camera();
  for (int state = 1; state <= 12; ++state) {
    drag.SetEditState(state);
    DragOver(100, 50, 160, 90);
    EXPECT_EQ(Of(drag.Rectangle()), (Region{100, 310, 60, 40})) << "from the lower edge; state " << state;
  }
  EXPECT_EQ(control.Camera().Position(), before.Position());
  EXPECT_EQ(control.Camera().LookAt(), before.LookAt());
  EXPECT_EQ(control.Camera().Window(), before.Window());
  EXPECT_FALSE(SceneTurned());
  EXPECT_EQ(control.RedrawRequests(), 0) << "it stands in front of the picture";
  EXPECT_EQ(shown.shown.size(), 12U);
  EXPECT_EQ(Of(shown.shown.back()), (Region{100, 310, 60, 40}));
}

TEST_F(DragRectangleTest, GoesIntoEveryDirectionAndStaysInTheView) {
  for (const auto& [x, y] : {std::pair{40, 30}, {160, 30}, {40, 150}, {160, 150}}) {
    DragOver(100, 90, x, y);
    EXPECT_EQ(Of(drag.Rectangle()), (Region{x < 100 ? 40 : 100, y < 90 ? 310 : 250, 60, 60}));
  }
  DragOver(100, 90, 1e9, -1e9);
  EXPECT_EQ(Of(drag.Rectangle()), (Region{100, 310, 300, 90}));
  DragOver(100, 90, 180, 90.4);
  EXPECT_FALSE(drag.Rectangle()) << "without a height it is none";
}

TEST_F(DragRectangleTest, GoesByAClickByEscapeAndOnDemandOnly) {
  const auto stands = [&] { return drag.Rectangle().has_value(); };
  int key = 27;
  drag.KeyDown(key, 0);
  EXPECT_EQ(key, 27) << "there is none";
  DragOver(100, 50, 160, 90);
  drag.MouseDown(kLeft, 0, 200, 200);
  drag.MouseMove(kLeft, 0, 240, 200);
  EXPECT_FALSE(drag.MouseUp(kLeft, 0, 240, 200));
  drag.Wheel(1);
  drag.SetEditState(kZoomInState);
  EXPECT_TRUE(stands()) << "the scene moves behind it";
  EXPECT_TRUE(Click(200, 200));
  EXPECT_FALSE(stands());
  EXPECT_FALSE(shown.shown.back());
  DragOver(100, 50, 160, 90);
  drag.KeyDown(key, 0);
  EXPECT_EQ(key, 0);
  EXPECT_FALSE(stands());
  DragOver(100, 50, 160, 90);
  drag.DropRectangle();
  EXPECT_FALSE(stands());
  const std::size_t told = shown.shown.size();
  drag.DropRectangle();
  EXPECT_TRUE(Click(200, 200));
  EXPECT_EQ(shown.shown.size(), told) << "nothing more to tell";
}

TEST_F(DragRectangleTest, APickedThingDoesNotHoldIt) {
  drag.SetEditState(kSelectState);
  drag.Pick(std::vector<std::uint32_t>{1, 1, 5, 9, 12});
  DragOver(100, 50, 160, 90);
  EXPECT_TRUE(drag.Rectangle());
}

TEST_F(DragRectangleTest, ControlTurnsAlsoWithShift) {
  drag.MouseDown(kLeft, ShiftBit::kShift | ShiftBit::kControl, 100, 100);
  drag.MouseMove(kLeft, ShiftBit::kShift | ShiftBit::kControl, 140, 130);
  EXPECT_TRUE(SceneTurned());
  EXPECT_FALSE(drag.Rectangle());
}

}  // namespace
}  // namespace orv::testing
