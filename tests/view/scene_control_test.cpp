#include "view/scene_control.h"

#include <gmock/gmock.h>

#include "view/recording_control.h"

namespace orv {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const Rgba kWhite{1, 1, 1, 1};

// Keeps the order of what was raised and does what a test asks for.
class Events : public GlEvents {
 public:
  void init() override { raised.emplace_back("init"); }
  void InitGL() override { raised.emplace_back("InitGL"); }
  void Reshape(int width, int height, int& result) override {
    raised.push_back("Reshape " + std::to_string(width) + " " + std::to_string(height));
    result = -1;
  }
  void Draw() override {
    raised.emplace_back("Draw");
    if (draw) draw();
  }
  void DrawGDI() override {
    raised.emplace_back("DrawGDI");
    if (drawGDI) drawGDI();
  }
  void Painted() override { raised.emplace_back("Painted"); }

  std::vector<std::string> raised;
  std::function<void()> draw, drawGDI;
};

std::optional<FontFile> NoFonts(const std::string&, bool, bool) {
  return std::nullopt;
}

class SceneControlTest : public ::testing::Test {
 protected:
  void SetUp() override {
    control_.SceneRange(10);
    control_.Camera().SetPosition({0, 0, 10});
    control_.Camera().SetLookAt({0, 0, 0});
    control_.Camera().SetUp({0, 1, 0});
  }
  RecordingControl control_{400, 200};
  RecordingGl& gl_ = control_.Recording();
  Events events_;
};

TEST_F(SceneControlTest, RaisesItsEventsInOrder) {
  control_.Attach(events_);
  EXPECT_THAT(events_.raised, ElementsAre("init", "InitGL", "Reshape 400 200"));
  EXPECT_TRUE(control_.RedrawAsked());
  events_.raised.clear();
  control_.PaintAnew(events_);
  EXPECT_THAT(events_.raised, ElementsAre("Draw", "DrawGDI", "Painted"));
  EXPECT_FALSE(control_.RedrawAsked());
  events_.raised.clear();
  control_.Resize(300, 150, 2);
  control_.Resize(300, 150, 2);
  EXPECT_EQ(control_.RedrawRequests(), 1);
  control_.PaintAnew(events_);
  EXPECT_THAT(events_.raised, ElementsAre("Reshape 300 150", "Draw", "DrawGDI", "Painted"));
  EXPECT_EQ(control_.DeviceRatio(), 2);
}

TEST_F(SceneControlTest, ClearsAndLoadsMatricesBeforeDrawing) {
  Matrix4 modelview{};
  events_.draw = [&] {
    EXPECT_EQ(gl_.Count(GlOperation::Clear), 1U);
    EXPECT_EQ(gl_.Calls()[1].names[0], GLuint{GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT});
    EXPECT_EQ(gl_.State().projection, control_.Camera().ProjectionMatrix());
    modelview = gl_.State().modelview;
  };
  control_.PaintAnew(events_);
  EXPECT_THAT(gl_.ViewportInForce(), ElementsAre(0, 0, 400, 200));
  EXPECT_EQ(modelview, control_.Camera().ViewMatrix());
  EXPECT_THAT(gl_.Errors(), IsEmpty());
}

TEST_F(SceneControlTest, TheTrackballTurnsAboutTheLookAtPoint) {
  control_.Camera().SetPosition({3, 0, 10});
  control_.Camera().SetLookAt({3, 0, 0});
  control_.Trackball().Enable(true);
  control_.Trackball().Down(0, 0);
  control_.Trackball().Move(0.5, 0);  // to the right: about the upward axis of the screen
  const Matrix4 turned = control_.ModelviewMatrix();
  const std::array<double, 4> centre = Transform(turned, {3, 0, 0, 1});
  EXPECT_NEAR(centre[0], 0, 1e-12);
  EXPECT_NEAR(centre[2], -10, 1e-12);
  const std::array<double, 4> front = Transform(turned, {3, 0, 1, 1});
  EXPECT_GT(front[0], 0.1);  // what stood in front follows the pointer
  EXPECT_NEAR(front[1], 0, 1e-12);
}

TEST_F(SceneControlTest, ASceneRangeWithinDrawHoldsAtOnce) {
  SceneControl::WindowPoint point;
  events_.draw = [&] {
    control_.SceneRange(20);
    EXPECT_EQ(gl_.State().projection, control_.Camera().ProjectionMatrix());
    ASSERT_TRUE(control_.Project(20, 0, 0, point));
  };
  control_.PaintAnew(events_);
  EXPECT_NEAR(point.x, 300, 1e-9);
  control_.SceneRange(0);
  control_.SceneRange(-1);
  control_.SceneRange(std::nan(""));
  EXPECT_EQ(control_.SceneRange(), 20);
}

TEST_F(SceneControlTest, ProjectsToPixelsFromTheTopLeft) {
  SceneControl::WindowPoint point;
  ASSERT_TRUE(control_.Project(0, 0, 0, point));
  EXPECT_NEAR(point.x, 200, 1e-9);
  EXPECT_NEAR(point.y, 100, 1e-9);
  EXPECT_NEAR(point.depth, 0.5, 0.01);
  SceneControl::WindowPoint nearer;
  ASSERT_TRUE(control_.Project(-10, 10, 5, nearer));
  EXPECT_NEAR(nearer.x, 100, 1e-9);
  EXPECT_NEAR(nearer.y, 0, 1e-9);
  EXPECT_LT(nearer.depth, point.depth);
}

TEST_F(SceneControlTest, PointsBehindThePlanesOrTheCameraAreNotShown) {
  SceneControl::WindowPoint point;
  EXPECT_FALSE(control_.Project(0, 0, 20000, point));
  EXPECT_FALSE(control_.Project(0, 0, -20000, point));
  EXPECT_FALSE(control_.Project(std::nan(""), 0, 0, point));
  control_.Camera().SetProjection(kPerspective);
  EXPECT_TRUE(control_.Project(0, 0, 0, point));
  EXPECT_FALSE(control_.Project(0, 0, 30, point));  // its eye stands where 45 degrees take in the window
}

TEST_F(SceneControlTest, SceneTextsKeepTheirHeightUnderZoom) {
  const FontHandle font = control_.FontSet("DejaVu Sans", false, false, 9);
  // 20 scene units on 200 pixels.
  EXPECT_NEAR(control_.TextPixels(font, 3), 30, 1e-9);
  control_.Camera().Zoom(0.1);
  EXPECT_NEAR(control_.TextPixels(font, 3), 30, 1e-9);
  EXPECT_NEAR(control_.TextPixels(font, 0.25), 12, 1e-9);  // 9 points
  control_.Resize(400, 200, 2);
  EXPECT_NEAR(control_.TextPixels(font, 0.25), 24, 1e-9);
}

TEST_F(SceneControlTest, SceneTextsBeginAtTheirPoint) {
  const FontHandle font = control_.FontSet("DejaVu Sans", false, false, 9);
  events_.draw = [&] {
    control_.Text3D(font, "H", 5, 5, 0, 3, kWhite);
    control_.Text3D(font, "", 5, 5, 0, 3, kWhite);
    control_.Text3D(font, "far", 0, 0, -1e6, 3, kWhite);
    control_.Text3D(font, "aside", 1000, 0, 0, 3, kWhite);
  };
  control_.PaintAnew(events_);
  ASSERT_THAT(gl_.Pictures(), SizeIs(1));
  const DrawnPicture& picture = gl_.Pictures()[0];
  EXPECT_NEAR(picture.x, 250, 4);                  // the letter's own margin and the border
  EXPECT_NEAR(picture.y + picture.height, 50, 5);  // the baseline
  EXPECT_NEAR(picture.height, 0.73 * 30 + 8, 3);   // capitals
  EXPECT_NEAR(picture.depth, 0.5, 0.01);
  EXPECT_THAT(control_.SceneTexts(), SizeIs(4));
  EXPECT_EQ(control_.SceneTexts()[0].fontName, "DejaVu Sans");
  EXPECT_TRUE(control_.HasSceneText("aside"));
  EXPECT_FALSE(control_.HasSceneText("H "));
}

TEST_F(SceneControlTest, OneHandleForOneFont) {
  const FontHandle font = control_.FontSet("Arial", false, false, 9);
  EXPECT_EQ(control_.FontSet("Arial", false, false, 9), font);
  EXPECT_NE(control_.FontSet("Arial", false, false, 6), font);
  EXPECT_NE(control_.FontSet("Arial", true, false, 9), font);
  events_.draw = [&] { control_.Text3D(99, "no such font", 0, 0, 0, 1, kWhite); };
  control_.PaintAnew(events_);
  EXPECT_THAT(gl_.Pictures(), IsEmpty());
}

TEST_F(SceneControlTest, TheOverlayCountsLogicalPixelsFromTheTop) {
  control_.Resize(400, 200, 2);
  events_.drawGDI = [&] {
    control_.ForeColor({1, 0, 0, 1});
    control_.FontSize(7);
    control_.StatusPrint("H", 21, 30);
    control_.StatusSquare(8, 28, 8, 4);
  };
  control_.PaintAnew(events_);
  ASSERT_THAT(gl_.Pictures(), SizeIs(1));
  EXPECT_NEAR(gl_.Pictures()[0].x, 42, 4);
  EXPECT_GE(gl_.Pictures()[0].y, 60);
  EXPECT_LE(gl_.Pictures()[0].y + gl_.Pictures()[0].height, 60 + 7 * 4.0 / 3 * 2 * 1.25);
  EXPECT_EQ(gl_.Pictures()[0].depth, 0);
  ASSERT_THAT(gl_.Rectangles(), SizeIs(1));
  EXPECT_EQ(gl_.Rectangles()[0].x, 16);
  EXPECT_EQ(gl_.Rectangles()[0].y, 56);
  EXPECT_EQ(gl_.Rectangles()[0].width, 16);
  EXPECT_EQ(gl_.Rectangles()[0].height, 8);
  EXPECT_EQ(gl_.Rectangles()[0].colour, (Rgba{1, 0, 0, 1}));
  ASSERT_THAT(control_.OverlayTexts(), SizeIs(1));
  EXPECT_EQ(control_.OverlayTexts()[0].column, 21);
  EXPECT_EQ(control_.OverlayTexts()[0].points, 7);
  EXPECT_EQ(control_.OverlayTexts()[0].colour, (Rgba{1, 0, 0, 1}));
  EXPECT_TRUE(control_.HasOverlayText("H"));
  ASSERT_THAT(control_.OverlaySquares(), SizeIs(1));
  EXPECT_EQ(control_.OverlaySquares()[0].line, 28);
}

TEST_F(SceneControlTest, OverlayWidthsAreLogical) {
  control_.FontSize(10);
  const double width = control_.StatusWidth("Density");
  control_.Resize(400, 200, 2);
  EXPECT_THAT(control_.StatusWidth("Density"), DoubleNear(width, 0.5));
  control_.FontSize(20);
  EXPECT_THAT(control_.StatusWidth("Density"), DoubleNear(2 * width, 1));
}

TEST_F(SceneControlTest, LightsStayInTheScene) {
  Light light;
  light.position = {10, 30, 150, 1};
  light.enabled = true;
  control_.Lights(0, light);
  control_.Lights(8, light);
  control_.Lights(-1, light);
  EXPECT_TRUE(gl_.State().On(GL_LIGHT0));
  control_.PaintAnew(events_);
  // The position again behind the matrices of this paint.
  bool matrices = false;
  bool position = false;
  for (const GlCall& call : gl_.Calls()) {
    matrices = matrices || call.operation == GlOperation::LoadMatrix;
    if (call.operation == GlOperation::Light && call.names[1] == GL_POSITION) {
      position = true;
      EXPECT_TRUE(matrices);
      EXPECT_THAT(call.values, ElementsAre(10, 30, 150, 1));
      EXPECT_EQ(call.names[0], GLuint{GL_LIGHT0});
    }
  }
  EXPECT_TRUE(position);
  light.enabled = false;
  control_.Lights(0, light);
  EXPECT_FALSE(gl_.State().On(GL_LIGHT0));
}

TEST_F(SceneControlTest, OnlyTheFirstMaterialIsInForce) {
  SurfaceMaterial material;
  material.shininess = 60;
  control_.Materials(0, material);
  EXPECT_EQ(gl_.Count(GlOperation::Material), 4U);
  material.shininess = 5;
  control_.Materials(13, material);
  EXPECT_EQ(gl_.Count(GlOperation::Material), 4U);
  EXPECT_EQ(control_.MaterialIn(0).shininess, 60);
  EXPECT_EQ(control_.MaterialIn(13).shininess, 5);
}

TEST_F(SceneControlTest, TheGridIsATenthOfTheRangeInAPlane) {
  events_.draw = [&] { control_.DrawGrid(); };
  control_.PaintAnew(events_);
  ASSERT_THAT(gl_.Primitives(), SizeIs(1));
  const DrawnPrimitive& grid = gl_.Primitives()[0];
  EXPECT_EQ(grid.primitive, GLenum{GL_LINES});
  ASSERT_THAT(grid.vertices, SizeIs(2 * 2 * 21));
  EXPECT_EQ(grid.vertices[0].position, (Vertex{-10, -10, 0}));
  EXPECT_EQ(grid.vertices[4].position, (Vertex{-9, -10, 0}));
  EXPECT_EQ(grid.vertices.back().position, (Vertex{10, 10, 0}));
  for (const DrawnVertex& vertex : grid.vertices) {
    EXPECT_EQ(vertex.position.z, 0);
    EXPECT_LT(vertex.colour.alpha, 0.5);
  }
  EXPECT_TRUE(grid.state.On(GL_BLEND));
  EXPECT_FALSE(grid.state.On(GL_LIGHTING));
}

TEST_F(SceneControlTest, KeepsWhatItIsTold) {
  control_.DoubleBuffer(true);
  control_.PickDepth(64);
  control_.Cursor(11);
  control_.Cursor(0);
  EXPECT_TRUE(control_.DoubleBuffered());
  EXPECT_EQ(control_.PickDepth(), 64);
  EXPECT_EQ(control_.Cursor(), 0);
  EXPECT_THAT(control_.Cursors(), ElementsAre(11, 0));
}

TEST_F(SceneControlTest, ARedrawAskedForWhilePaintingStays) {
  events_.draw = [&] { control_.Redraw(); };
  control_.PaintAnew(events_);
  EXPECT_TRUE(control_.RedrawAsked());
  EXPECT_EQ(control_.RedrawRequests(), 1);
}

TEST(SceneControlFontsTest, MissingFontsAreToldOnceAndLeaveTheRestAlone) {
  RecordingControl control(100, 100, 1, NoFonts);
  Events events;
  const FontHandle font = control.FontSet("Arial", false, false, 9);
  control.FontSet("Comic Sans MS", false, false, 9);
  std::vector<std::string> told;
  control.LogTo([&](const std::string& message) { told.push_back(message); });
  events.draw = [&] {
    control.Text3D(font, "text", 0, 0, 0, 1, kWhite);
    control.DrawGrid();
  };
  events.drawGDI = [&] {
    control.StatusPrint("text", 1, 1);
    EXPECT_EQ(control.StatusWidth("text"), 0);
  };
  control.PaintAnew(events);
  EXPECT_THAT(told, ElementsAre("Texts are left out of the view: no font was found on this system."));
  EXPECT_THAT(control.Recording().Pictures(), IsEmpty());
  EXPECT_THAT(control.Recording().Primitives(), SizeIs(1));
}

TEST(SceneControlSizeTest, SizesAndRatiosAreBroughtIntoRange) {
  RecordingControl control(0, -5, 0);
  EXPECT_EQ(control.Width(), 1);
  EXPECT_EQ(control.Height(), 1);
  EXPECT_EQ(control.DeviceRatio(), 1);
  control.Resize(10, 0, std::nan(""));
  EXPECT_EQ(control.Height(), 1);
  EXPECT_EQ(control.DeviceRatio(), 1);
}

}  // namespace
}  // namespace orv
