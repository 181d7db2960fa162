#include "view/cell_picking.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <random>

#include "support/scripted_dialogs.h"
#include "support/view_model.h"
#include "view/offscreen_control.h"
#include "view/outline_pass.h"
#include "view/recording_control.h"

namespace orv {
namespace {

using Items = std::vector<std::uint32_t>;
constexpr std::uint32_t kMinusOne = 0xFFFFFFFFU;

TEST(HitRecords, TheNearestNameCounts) {
  EXPECT_EQ(NameOfNearestHit(Items{}), 0);
  EXPECT_EQ(NameOfNearestHit(Items{0}), 0);
  EXPECT_EQ(NameOfNearestHit(Items{1, 1, 500, 600, 3}), 3);
  EXPECT_EQ(NameOfNearestHit(Items{2, 1, 500, 600, 3, 1, 400, 700, 5}), 5);
  EXPECT_EQ(NameOfNearestHit(Items{2, 1, 400, 600, 3, 1, 400, 700, 5}), 3) << "of equal depths the first";
  EXPECT_EQ(NameOfNearestHit(Items{1, 1, kMinusOne, kMinusOne, 4}), 4) << "the farthest depth is a depth";
}

TEST(HitRecords, ANameOfMinusOneIsNone) {
  EXPECT_EQ(NameOfNearestHit(Items{1, 1, 500, 600, kMinusOne}), 0);
  EXPECT_EQ(NameOfNearestHit(Items{2, 1, 100, 600, kMinusOne, 1, 400, 700, 5}), 5);
  EXPECT_EQ(NameOfNearestHit(Items{1, 3, 500, 600, 2, 7, kMinusOne}), 7);
}

TEST(HitRecords, RecordsHaveAnyNumberOfNames) {
  EXPECT_EQ(NameOfNearestHit(Items{3, 0, 10, 20, 2, 500, 600, 8, 9, 1, 700, 800, 1}), 9);
}

TEST(HitRecords, RecordsBeyondTheEndAreLeftOut) {
  EXPECT_EQ(NameOfNearestHit(Items{5, 1, 500, 600, 3}), 3);
  EXPECT_EQ(NameOfNearestHit(Items{2, 1, 500, 600, 3, 1, 400}), 3);
  EXPECT_EQ(NameOfNearestHit(Items{2, 1, 500, 600, 3, 4, 400, 500, 1, 2}), 3);
  EXPECT_EQ(NameOfNearestHit(Items{2, 1, 500, 600, 3, kMinusOne, 400, 500, 1, 2}), 3);
}

struct StillClock : Clock {
  CivilTime Local() const override { return {}; }
  double Seconds() const override { return 0; }
};

struct PickScene {
  explicit PickScene(SceneControl& sceneControl) : control(sceneControl) { view.SidesMode = kBothSides; }
  void Start() {
    control.Attach(scene);
    control.Paint(scene);
    control.Paint(scene);
  }
  std::optional<PickedCell> Pick(double x, double y) { return PickCell(scene, x, y); }
  std::optional<PickedCell> PickAt(double x, double y, double z) {
    SceneControl::WindowPoint point;
    if (!control.Project(x, y, z, point)) return std::nullopt;
    return PickCell(scene, point.x, point.y);
  }
  int EntryAt(double x, double y, double z) {
    const auto picked = PickAt(x, y, z);
    return picked ? picked->entry : kNoEntry;
  }
  // The centre of a cell as the lists hold it now.
  int EntryAtCentre(int cell) {
    return EntryAt(lists.PointList(1, cell), lists.PointList(2, cell), lists.PointList(3, cell));
  }

  testing::ScriptedDialogs dialogs;
  ErrorPrompt prompt{dialogs};
  StillClock clock;
  PointLists lists;
  ViewState view;
  SceneControl& control;
  ClassGl scene{control, lists, view, prompt, clock};
};

class CellPickingTest : public ::testing::Test {
 protected:
  // A square cell of side 1 in the plane z, centre (x, y); its front looks up, or down.
  void AddCell(double x, double y, double z, float value, bool up = true) {
    PointLists& l = s.lists;
    const int n = ++l.NumberPoints;
    l.PointList(0, n) = value;
    l.PointList(1, n) = static_cast<float>(x);
    l.PointList(2, n) = static_cast<float>(y);
    l.PointList(3, n) = static_cast<float>(z);
    l.PointList(4, n) = kPenUp;
    const double corners[5][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}};
    for (int c = 0; c < 6; ++c) {
      const int entry = ++l.TraceCount;
      if (c == 5) {
        l.TraceList(3, entry) = kPenUp;
        continue;
      }
      const auto& corner = corners[up ? c : 4 - c];
      l.TraceList(0, entry) = static_cast<float>(x + corner[0] / 2);
      l.TraceList(1, entry) = static_cast<float>(y + corner[1] / 2);
      l.TraceList(2, entry) = static_cast<float>(z);
    }
    l.OutlineCount = l.TraceCount + 1;
    l.TraceMax = l.TraceCount;
    l.PenUpMode = 1;
    l.FactorScale = 1.01;
    l.IndexPlot = 13;
    l.FindPlotValues();
  }
  // Seen from above, +y up in the picture.
  void Start() {
    s.Start();
    LookFrom({0, 0, 100}, {0, 1, 0});
  }
  void LookFrom(const Vec3& position, const Vec3& up) {
    control.Camera().SetPosition(position);
    control.Camera().SetUp(up);
  }

  RecordingControl control{640, 480};
  PickScene s{control};
};

TEST_F(CellPickingTest, TheCellUnderThePointer) {
  AddCell(-2, 0, 0, 0.25F);
  AddCell(2, 0, 0, 0.75F);
  Start();
  const auto left = s.PickAt(s.lists.PointList(1, 0), s.lists.PointList(2, 0), 0);
  ASSERT_TRUE(left.has_value());
  EXPECT_EQ(left->entry, 0);
  EXPECT_EQ(left->value, 0.25F);
  EXPECT_NEAR(left->position[0], s.lists.PointList(1, 0), 1e-6);
  EXPECT_NEAR(left->position[2], 0, 1e-6);
  EXPECT_EQ(s.EntryAtCentre(1), 1);
  EXPECT_FALSE(s.PickAt(0, 0, 0).has_value()) << "between them is nothing";
  EXPECT_FALSE(s.Pick(0, 0).has_value());
}

TEST_F(CellPickingTest, TheNearestOnTheLineOfSight) {
  AddCell(0, 0, 0, 0.1F);
  AddCell(0, 0, 2, 0.2F);
  AddCell(0, 0, 1, 0.3F);
  Start();
  EXPECT_EQ(s.EntryAt(0, 0, 0), 1);
  LookFrom({0, 0, -100}, {0, 1, 0});
  EXPECT_EQ(s.EntryAt(0, 0, 0), 0) << "seen from below with both sides";
}

TEST_F(CellPickingTest, OnlyTheSideThatIsShownIsPicked) {
  AddCell(0, 0, 0, 0.1F);
  AddCell(0, 0, 2, 0.2F, false);
  Start();
  s.view.SidesMode = kRectoSide;
  EXPECT_EQ(s.EntryAt(0, 0, 0), 0) << "the upper one shows its back: it is culled";
  s.view.SidesMode = kVersoSide;
  EXPECT_EQ(s.EntryAt(0, 0, 0), 1);
  s.view.SidesMode = kBothSides;
  EXPECT_EQ(s.EntryAt(0, 0, 0), 1);
  LookFrom({0, 0, -100}, {0, 1, 0});
  s.view.SidesMode = kRectoSide;
  EXPECT_EQ(s.EntryAt(0, 0, 0), 1);
  s.view.SidesMode = kVersoSide;
  EXPECT_EQ(s.EntryAt(0, 0, 0), 0);
}

TEST_F(CellPickingTest, CellsThatAreNotDrawnYetAreNotPicked) {
  AddCell(-2, 0, 0, 0.1F);
  AddCell(0, 0, 0, 0.2F);
  AddCell(2, 0, 0, 0.3F);
  Start();
  s.lists.TraceMax = 11;
  EXPECT_EQ(s.EntryAtCentre(0), 0);
  EXPECT_EQ(s.EntryAtCentre(1), 1);
  EXPECT_EQ(s.EntryAtCentre(2), kNoEntry);
  s.lists.TraceMin = 1;  // rounds up to whole outlines
  EXPECT_EQ(s.EntryAtCentre(0), kNoEntry);
  s.lists.TraceMin = s.lists.TraceMax = 0;
  EXPECT_EQ(s.EntryAtCentre(1), kNoEntry);
  s.lists.TraceMax = kNoEntry;
  EXPECT_EQ(s.EntryAtCentre(0), kNoEntry);
}

TEST_F(CellPickingTest, DotsArePickedWithinFourPixels) {
  AddCell(-2, 0, 0, 0.1F);
  AddCell(2, 0, 0, 0.2F, false);
  Start();
  SceneControl::WindowPoint dot;
  ASSERT_TRUE(control.Project(s.lists.PointList(1, 1), 0, 0, dot));
  for (const int mode : {kDots, kDotsAndBorders}) {
    s.view.SidesMode = mode;
    EXPECT_EQ(s.Pick(dot.x + 3, dot.y - 2)->entry, 1) << "dots have no side";
    EXPECT_FALSE(s.Pick(dot.x + 4, dot.y + 1).has_value());
    EXPECT_EQ(s.EntryAtCentre(0), 0);
  }
  int previous = 0;
  s.scene.ChangeCURRINDEXI(0, previous);
  EXPECT_EQ(s.EntryAtCentre(1), kNoEntry) << "not drawn yet";
  EXPECT_EQ(s.EntryAtCentre(0), 0);
  s.scene.ChangeCURRINDEXI(1, previous);
  s.scene.ChangeCURRINDEXMINI(1, previous);
  EXPECT_EQ(s.EntryAtCentre(0), kNoEntry);
  s.scene.ChangeCURRINDEXI(-1, previous);
  s.scene.ChangeCURRINDEXMINI(-1, previous);
  EXPECT_EQ(s.EntryAtCentre(1), kNoEntry) << "an empty plot";
}

TEST_F(CellPickingTest, OfTwoDotsTheCloserOneAndOfEqualOnesTheNearer) {
  AddCell(0, 0, 0, 0.1F);
  AddCell(0, 0, 2, 0.2F);
  AddCell(0.02, 0, 4, 0.3F);
  Start();
  s.view.SidesMode = kDots;
  SceneControl::WindowPoint first;
  SceneControl::WindowPoint third;
  ASSERT_TRUE(control.Project(0, 0, 0, first));
  ASSERT_TRUE(control.Project(s.lists.PointList(1, 2), 0, 0, third));
  ASSERT_GT(third.x - first.x, 0.5);
  ASSERT_LT(third.x - first.x, 4);
  EXPECT_EQ(s.Pick(first.x, first.y)->entry, 1);
  EXPECT_EQ(s.Pick(third.x, third.y)->entry, 2);
}

TEST_F(CellPickingTest, PointsBehindTheCellsAreNoCells) {
  AddCell(0, 0, 0, 0.1F);
  const int axis = ++s.lists.NumberPoints;
  s.lists.PointList(1, axis) = 3;
  s.lists.PointList(4, axis) = kPenUp;
  Start();
  s.view.SidesMode = kDots;
  EXPECT_EQ(s.EntryAtCentre(0), 0);
  EXPECT_EQ(s.EntryAtCentre(axis), kNoEntry);
}

TEST_F(CellPickingTest, NothingOutsideTheViewAndOfOtherPlots) {
  AddCell(0, 0, 0, 0.1F);
  EXPECT_FALSE(s.Pick(320, 240).has_value()) << "nothing was drawn yet";
  Start();
  ASSERT_TRUE(s.Pick(320, 240).has_value());
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(s.Pick(-1, 240).has_value());
  EXPECT_FALSE(s.Pick(320, 481).has_value());
  EXPECT_FALSE(s.Pick(nan, 240).has_value());
  s.lists.PenUpMode = 0;
  EXPECT_FALSE(s.Pick(320, 240).has_value());
  FillCurve(s.lists, 50);
  control.Paint(s.scene);
  EXPECT_FALSE(s.PickAt(s.lists.PointList(1, 20), s.lists.PointList(2, 20), s.lists.PointList(3, 20)).has_value());
  s.lists.Clear();
  control.Paint(s.scene);
  EXPECT_FALSE(s.Pick(320, 240).has_value());
}

TEST_F(CellPickingTest, CollapsedCellsAndCornersThatAreNoNumbersAreMissed) {
  AddCell(0, 0, 0, 0.1F);
  AddCell(0, 0, 1, 0.2F);
  AddCell(0, 0, 2, 0.3F);
  Start();
  for (int i = 0; i < 5; ++i) {
    s.lists.TraceList(0, 6 + i) = 0;  // a line
    s.lists.TraceList(0, 12 + i) = std::numeric_limits<float>::quiet_NaN();
  }
  EXPECT_EQ(s.EntryAt(0, 0, 0), 0);
}

// Every triangle that was drawn, cut plainly in device coordinates.
int PlainPick(const RecordingControl& control, double x, double y, int trianglesOfCell) {
  const double dx = 2 * x / control.Width() - 1;
  const double dy = 1 - 2 * y / control.Height();
  double nearest = 2;
  int cell = kNoEntry;
  int number = 0;
  for (const DrawnPrimitive& drawn : const_cast<RecordingControl&>(control).Recording().PrimitivesOf(GL_TRIANGLES)) {
    for (std::size_t i = 0; i + 2 < drawn.vertices.size(); i += 3, ++number) {
      const auto a = drawn.OnDevice(i);
      const auto b = drawn.OnDevice(i + 1);
      const auto c = drawn.OnDevice(i + 2);
      const auto area = [](double ax, double ay, double bx, double by) { return ax * by - ay * bx; };
      const double whole = area(b[0] - a[0], b[1] - a[1], c[0] - a[0], c[1] - a[1]);
      if (whole <= 0) continue;  // clockwise: culled
      const double u = area(dx - a[0], dy - a[1], c[0] - a[0], c[1] - a[1]) / whole;
      const double v = area(b[0] - a[0], b[1] - a[1], dx - a[0], dy - a[1]) / whole;
      if (u < 0 || v < 0 || u + v > 1) continue;
      const double depth = a[2] + u * (b[2] - a[2]) + v * (c[2] - a[2]);
      if (depth < -1 || depth > 1 || depth >= nearest) continue;
      nearest = depth;
      cell = number / trianglesOfCell;
    }
  }
  return cell;
}

TEST_F(CellPickingTest, WhatIsPickedIsWhatIsDrawn) {
  FillSheet(s.lists, 24, 18);
  s.Start();
  std::mt19937 random(5);
  std::uniform_real_distribution<double> part(0, 1);
  int hits = 0;
  for (int n = 0; n < 400; ++n) {
    if (n % 20 == 0) {
      const auto coordinate = [&] { return 200 * part(random) - 100; };
      LookFrom({coordinate(), coordinate(), coordinate()}, {coordinate(), coordinate(), coordinate()});
      control.Camera().SetLookAt({part(random), part(random), part(random)});
      control.Camera().SetProjection(n % 40 == 0 ? kPerspective : kOrthographic);
      control.Trackball().Enable(true);
      control.Trackball().Down(0, 0);
      control.Trackball().Move(part(random), part(random));
      control.Trackball().Up(0, 0);
      control.Trackball().Stop();
      s.view.SidesMode = kRectoSide + n / 20 % 3;
      control.PaintAnew(s.scene);
      ASSERT_FALSE(control.Recording().PrimitivesOf(GL_TRIANGLES).empty());
    }
    const double x = 160 + 320 * part(random);
    const double y = 100 + 280 * part(random);
    const int expected = PlainPick(control, x, y, s.view.SidesMode == kBothSides ? 4 : 2);
    const auto picked = s.Pick(x, y);
    EXPECT_EQ(picked ? picked->entry : kNoEntry, expected) << n << " mode " << s.view.SidesMode;
    if (!picked) continue;
    ++hits;
    SceneControl::WindowPoint back;
    ASSERT_TRUE(control.Project(picked->position[0], picked->position[1], picked->position[2], back));
    EXPECT_NEAR(back.x, x, 1e-5);
    EXPECT_NEAR(back.y, y, 1e-5);
  }
  EXPECT_GT(hits, 60);
}

TEST(CellPickingOffscreen, ThePixelHasTheColourOfThePickedCell) {
  OffscreenControl::Made made = OffscreenControl::Make({500, 400, 1, 1});
  ASSERT_NE(made.control, nullptr) << made.message;
  PickScene s(*made.control);
  FillSheet(s.lists, 20, 16);
  s.view.options.Check1[3] = s.view.options.Check1[4] = 1;
  s.view.ScaleMode = 5;
  s.Start();
  s.control.Camera().SetPosition({40, -60, 90});
  s.control.Paint(s.scene);
  const Image image = made.control->Picture();
  const ColourScale scale{s.view.ColorStyle, 0};
  int picked = 0;
  int alike = 0;
  for (int y = 5; y < 400; y += 13) {
    for (int x = 150; x < 500; x += 11) {
      const auto cell = s.Pick(x + 0.5, y + 0.5);
      if (!cell) continue;
      ++picked;
      const auto expected = scale.Bytes(cell->value, s.lists.PlotValueMin, s.lists.PlotValueMax);
      const auto* const pixel =
          image.rgb.data() +
          (static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) + static_cast<std::size_t>(x)) * 3;
      bool same = true;
      for (std::size_t c = 0; c < 3; ++c) same = same && std::abs(pixel[c] - expected[c]) <= 2;
      alike += same ? 1 : 0;
    }
  }
  EXPECT_GT(picked, 100);
  EXPECT_GT(alike, picked * 95 / 100) << "but for axes and dots";
}

}  // namespace
}  // namespace orv
