#include "view/axes.h"

#include <cmath>
#include <gtest/gtest.h>

#include "view/recording_gl.h"
#include "view/view_state.h"

namespace orv {
namespace {

constexpr Rgba kYellow{1, 1, 0, 1};

std::vector<DrawnPrimitive> Drawn(SceneAxes& axes, RecordingGl& gl, const Options& options, double radius) {
  gl.StartPaint();
  axes.Draw(gl, options, radius);
  EXPECT_TRUE(gl.Errors().empty());
  return gl.Primitives();
}

TEST(SceneAxes, ThreeLinesFromTheOrigin) {
  RecordingGl gl;
  SceneAxes axes;
  Options options;
  options.LengthAxisFactor = 2;
  options.ColourOfAxis = {128, 64, 0};
  const auto drawn = Drawn(axes, gl, options, 3);
  ASSERT_EQ(drawn.size(), 1U);
  EXPECT_EQ(drawn[0].primitive, static_cast<GLenum>(GL_LINES));
  EXPECT_NE(drawn[0].list, 0U);
  const auto& v = drawn[0].vertices;
  ASSERT_EQ(v.size(), 6U);
  const Rgba grey{0.5F, 0.25F, 0, 1};
  for (const std::size_t start : {0U, 2U, 4U}) EXPECT_EQ(v[start].position, (Vertex{0, 0, 0}));
  EXPECT_EQ(v[1], (DrawnVertex{{0, 0, 6}, grey}));
  EXPECT_EQ(v[3], (DrawnVertex{{0, 6, 0}, grey}));
  EXPECT_EQ(v[5], (DrawnVertex{{6, 0, 0}, kYellow}));
  EXPECT_EQ(v[4].colour, kYellow);
}

TEST(SceneAxes, NoColourAxisX) {
  RecordingGl gl;
  SceneAxes axes;
  Options options;
  options.Check1[1] = 1;
  const auto drawn = Drawn(axes, gl, options, 3);
  ASSERT_EQ(drawn.size(), 1U);
  EXPECT_EQ(drawn[0].vertices[5].colour, OptionColour(options.ColourOfAxis));
}

TEST(SceneAxes, NoPlotAxis) {
  RecordingGl gl;
  SceneAxes axes;
  Options options;
  ASSERT_EQ(Drawn(axes, gl, options, 3).size(), 1U);
  options.Check1[3] = 1;
  EXPECT_TRUE(Drawn(axes, gl, options, 3).empty());
  options.Check1[3] = 0;
  EXPECT_EQ(Drawn(axes, gl, options, 3).size(), 1U);
}

TEST(SceneAxes, FactorOfZeroStandsForOnePointOne) {
  RecordingGl gl;
  SceneAxes axes;
  Options options;
  options.LengthAxisFactor = 0;
  EXPECT_FLOAT_EQ(Drawn(axes, gl, options, 10).at(0).vertices[5].position.x, 11);
}

TEST(SceneAxes, ListIsKeptUntilItsLookChanges) {
  RecordingGl gl;
  SceneAxes axes;
  Options options;
  Drawn(axes, gl, options, 3);
  EXPECT_EQ(gl.Count(GlOperation::NewList), 1U);
  Drawn(axes, gl, options, 3);
  EXPECT_EQ(gl.Count(GlOperation::NewList), 0U);
  EXPECT_EQ(gl.Count(GlOperation::CallList), 1U);
  Drawn(axes, gl, options, 4);
  EXPECT_EQ(gl.Count(GlOperation::NewList), 1U);
  EXPECT_EQ(gl.Count(GlOperation::DeleteLists), 1U);
  options.ColourOfAxis = {1, 2, 3};
  Drawn(axes, gl, options, 4);
  EXPECT_EQ(gl.Count(GlOperation::NewList), 1U);
  EXPECT_TRUE(Drawn(axes, gl, options, std::nan("")).empty());
}

TEST(SceneAxes, LineFromTheCentreInTheMatrixInForce) {
  RecordingGl gl;
  SceneAxes axes;
  Options options;
  options.ThicknessLinePlot = 3;
  gl.PushMatrix();
  gl.Translate(1, 2, 3);
  axes.AddAxisFromCenter(gl, options, 7, 1, 0, 1, 0.5, 1, 0, 4, 5, 6);
  gl.PopMatrix();
  EXPECT_TRUE(gl.Errors().empty());
  ASSERT_EQ(gl.Primitives().size(), 1U);
  const DrawnPrimitive& line = gl.Primitives()[0];
  EXPECT_EQ(line.primitive, static_cast<GLenum>(GL_LINE_STRIP));
  EXPECT_NE(line.list, 0U);
  EXPECT_EQ(line.state.lineWidth, 7);
  ASSERT_EQ(line.vertices.size(), 2U);
  EXPECT_EQ(line.vertices[0], (DrawnVertex{{0, 0, 0}, {1, 0, 1, 1}}));
  EXPECT_EQ(line.vertices[1], (DrawnVertex{{4, 5, 6}, {0.5F, 1, 0, 0.6F}}));
  EXPECT_EQ(line.InEye(1), (std::array<double, 3>{5, 7, 9}));
  EXPECT_EQ(gl.State().lineWidth, 3);
}

TEST(SceneAxes, EachLineIsDrawnOnce) {
  RecordingGl gl;
  SceneAxes axes;
  const Options options;
  for (const double x : {1.0, 2.0, 3.0}) axes.AddAxisFromCenter(gl, options, 1, 1, 1, 1, 1, 1, 1, x, 0, 0);
  axes.AddAxisFromCenter(gl, options, 1, 1, 1, 1, 1, 1, 1, std::nan(""), 0, 0);
  ASSERT_EQ(gl.Primitives().size(), 3U);
  EXPECT_EQ(gl.Primitives()[2].vertices[1].position.x, 3);
  gl.StartPaint();
  axes.Draw(gl, options, 5);
  EXPECT_EQ(gl.Primitives().size(), 1U);
}

TEST(SceneAxes, ReleaseGivesTheListsBack) {
  RecordingGl gl;
  SceneAxes axes;
  const Options options;
  axes.Draw(gl, options, 5);
  axes.AddAxisFromCenter(gl, options, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0);
  ASSERT_TRUE(gl.HasList(1));
  ASSERT_TRUE(gl.HasList(2));
  axes.Release(gl);
  EXPECT_FALSE(gl.HasList(1));
  EXPECT_FALSE(gl.HasList(2));
  axes.Draw(gl, options, 5);
  EXPECT_TRUE(gl.Errors().empty());
}

TEST(OctantColours, PositiveCoordinatesLight) {
  RecordingGl gl;
  gl.Begin(GL_POINTS);
  glVertex3fColor(gl, 1, -1, 0);
  glVertex3fColor(gl, 0, 0.1, 2);
  gl.End();
  const auto& v = gl.Primitives().at(0).vertices;
  EXPECT_EQ(v[0], (DrawnVertex{{1, -1, 0}, {1, 0, 0, 1}}));
  EXPECT_EQ(v[1].colour, (Rgba{0, 1, 1, 1}));
}

}  // namespace
}  // namespace orv
